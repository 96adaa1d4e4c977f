#include "tools/report/table_file.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

#include "table/file_io.h"
#include "tools/common/tool.h"

namespace {

std::string upperCase(std::string text) {
  for (char& c : text) {
    c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  return text;
}

bool isKeyword(const std::string& word) {
  return word == "REMARK" || word == "DATA" || word == "VARS" || word == "FORMAT";
}

/// citrans puts a sequence line without letters after each line of exactly 55, and such a line
/// reads back as the letters of its keyword: it is left out.
std::string withoutEmptySequences(std::string_view text) {
  std::string kept;
  kept.reserve(text.size());
  for (std::string_view line; takeLine(text, line);) {
    const std::vector<std::string> words = GDB::split_WhiteSpace(std::string(line));
    if (words.size() != 2 || upperCase(words[0]) != "DATA" || words[1] != "SEQUENCE") {
      kept += line;
      kept += '\n';
    }
  }
  return kept;
}

} // namespace

TableFile::TableFile(const NamedText& source) : name_(source.name) {
  findRows(source.text);
  table_.loadText(withoutEmptySequences(source.text));
}

void TableFile::findRows(std::string_view text) {
  std::size_t line = 0;
  std::size_t columns = 0;
  bool formatSeen = false;
  for (std::string_view lineText; takeLine(text, lineText);) {
    ++line;
    const std::vector<std::string> words = GDB::split_WhiteSpace(std::string(lineText));
    const std::string first = upperCase(words[0]);
    if (formatSeen && words.size() == columns && !first.empty()) {
      rowLines_.push_back(line);
    } else if (formatSeen && !first.empty() && !isKeyword(first)) {
      skippedLines_.push_back(line);
    }
    if ((first == "REMARK" || first == "DATA") && words.size() == 1 &&
        (first == "DATA" || lineText.size() == first.size())) {
      throw ToolError(ToolStatus::badData, atLine(name_, line, "nothing after " + first));
    }
    if (first == "VARS") {
      columns = words.size() - 1;
      rowLines_.clear();
    } else if (first == "FORMAT") {
      formatSeen = true;
      rowLines_.clear();
    }
  }
  if (columns == 0 || !formatSeen) {
    throw ToolError(ToolStatus::badData, name_ + ": no table (no VARS and FORMAT lines)");
  }
}

bool TableFile::hasColumn(const std::string& column) const {
  const std::vector<std::string>& names = table_.columnNames();
  return std::find(names.begin(), names.end(), column) != names.end();
}

void TableFile::requireColumn(const std::string& column) const {
  if (!hasColumn(column)) {
    throw ToolError(ToolStatus::badData, name_ + ": no column " + column);
  }
}

void TableFile::refuse(std::size_t row, const std::string& column, const char* wanted) const {
  const std::string what =
      column + " is not " + wanted + ": " + std::string(table_.cell(row, column));
  const std::size_t line = row < rowLines_.size() ? rowLines_[row] : 0;
  throw ToolError(ToolStatus::badData, atLine(name_, line, what));
}

int TableFile::wholeNumber(std::size_t row, const std::string& column) const {
  const std::string text(table_.cell(row, column));
  char* end = nullptr;
  const long value = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || value < INT_MIN || value > INT_MAX) {
    refuse(row, column, "a whole number");
  }
  return static_cast<int>(value);
}

double TableFile::number(std::size_t row, const std::string& column) const {
  const std::string text(table_.cell(row, column));
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0') {
    refuse(row, column, "a number");
  }
  return value;
}
