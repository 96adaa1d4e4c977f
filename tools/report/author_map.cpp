#include <algorithm>
#include <climits>
#include <cstdlib>

#include "table/file_io.h"
#include "tools/common/tool.h"
#include "tools/report/inputs.h"

namespace {

/// The cells of a tab-separated line; a carriage return at its end is dropped.
std::vector<std::string> cellsOf(std::string_view line) {
  if (!line.empty() && line.back() == '\r') {
    line.remove_suffix(1);
  }
  std::vector<std::string> cells(1);
  for (const char c : line) {
    if (c == '\t') {
      cells.emplace_back();
    } else {
      cells.back() += c;
    }
  }
  return cells;
}

std::size_t columnOf(const std::vector<std::string>& header, const char* name,
                     const std::string& path) {
  const auto found = std::find(header.begin(), header.end(), name);
  if (found == header.end()) {
    throw ToolError(ToolStatus::badData, atLine(path, 1, std::string("no column ") + name));
  }
  return static_cast<std::size_t>(found - header.begin());
}

int residueNumber(const std::string& text, const std::string& path, std::size_t line) {
  char* end = nullptr;
  const long value = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || value < INT_MIN || value > INT_MAX) {
    throw ToolError(ToolStatus::badData,
                    atLine(path, line, "resid is not a whole number: " + text));
  }
  return static_cast<int>(value);
}

} // namespace

std::map<int, std::string> readAuthorMap(const NamedText& map) {
  const std::string& path = map.name;
  std::string_view rest = map.text;
  std::string_view line;
  takeLine(rest, line);
  const std::vector<std::string> header = cellsOf(line);
  const std::size_t resid = columnOf(header, "resid", path);
  const std::size_t author = columnOf(header, "author", path);

  std::map<int, std::string> authors;
  for (std::size_t number = 2; takeLine(rest, line); ++number) {
    const std::vector<std::string> cells = cellsOf(line);
    if (cells.size() == 1 && cells[0].empty()) {
      continue;
    }
    if (cells.size() <= std::max(resid, author)) {
      throw ToolError(ToolStatus::badData, atLine(path, number, "too few columns"));
    }
    const int residue = residueNumber(cells[resid], path, number);
    // Residues without an author number keep that of the table.
    const bool known = !cells[author].empty() && cells[author] != "." && cells[author] != "?";
    if (known && !authors.emplace(residue, cells[author]).second) {
      throw ToolError(ToolStatus::badData,
                      atLine(path, number, "resid given twice: " + cells[resid]));
    }
  }
  return authors;
}
