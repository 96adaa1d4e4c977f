#include <algorithm>
#include <cmath>

#include "fuzz/support.h"
#include "table/number.h"
#include "tools/common/tool.h"
#include "tools/import/import.h"

namespace {

using fuzzing::require;

constexpr char name[] = "deposition";

void requireOneLine(const std::string& line) {
  require(!line.empty() && std::none_of(line.begin(), line.end(),
                                        [](char c) { return static_cast<unsigned char>(c) < ' '; }),
          "what is said is one line");
}

/// The sequence of a table.
std::string lettersOf(const std::vector<std::string>& lines) {
  constexpr char start[] = "DATA SEQUENCE ";
  std::string letters;
  for (const std::string& line : lines) {
    if (line.rfind(start, 0) == 0) {
      letters += line.substr(sizeof start - 1);
    }
  }
  letters.erase(std::remove(letters.begin(), letters.end(), ' '), letters.end());
  return letters;
}

/// Rows of a table: residues in order, with their letter, and one shift for each atom.
void requireRows(const std::vector<std::string>& lines, const std::string& letters) {
  int last = 1;
  std::size_t rows = 0;
  for (const std::string& line : lines) {
    if (line.empty() || (line[0] != ' ' && (line[0] < '0' || line[0] > '9'))) {
      continue;
    }
    const int residue = parseInt(line);
    require(residue >= last && residue <= static_cast<int>(letters.size()), "residues rise");
    rows = residue == last ? rows + 1 : 1;
    require(rows <= tableAtoms.size(), "an atom has one shift");
    last = residue;
    const std::size_t letter = line.find(letters[static_cast<std::size_t>(residue) - 1]);
    require(letter != std::string::npos, "a row has the letter of its residue");
    const double shift = parseDouble(line.substr(line.rfind(' ')));
    require(shift > 0 && shift < 250, "a shift is possible");
  }
}

void requireImported(const Imported& imported) {
  const std::vector<std::string> lines = fuzzing::linesOf(imported.table);
  const std::string letters = lettersOf(lines);
  require(!letters.empty() &&
              letters.find_first_not_of("ACDEFGHIKLMNPQRSTVWXYc") == std::string::npos,
          "a table has a sequence of known letters");
  requireRows(lines, letters);
  require(fuzzing::linesOf(imported.map).size() == letters.size() + 1,
          "the map has a line for each residue");
  std::for_each(imported.remarks.begin(), imported.remarks.end(), requireOneLine);
  std::for_each(imported.warnings.begin(), imported.warnings.end(), requireOneLine);
}

} // namespace

/// Any bytes as a deposition: a table with a map, or one line that says why not; and its contents.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(fuzzing::textOf(data, size));
  try {
    require(!depositionContents(bytes, name).empty(), "a deposition has contents");
    requireImported(importDeposition(bytes, name, {"", "", "", true}));
  } catch (const ToolError& error) {
    requireOneLine(error.what());
    require(std::string(error.what()).rfind(name, 0) == 0, "a message names the file");
  }
  return 0;
}
