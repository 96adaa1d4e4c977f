#include "fuzz/support.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <strings.h>

#include "table/gdb.h"

namespace {

using fuzzing::require;

bool isKeyword(const std::string& token) {
  const char* const keywords[] = {"REMARK", "DATA", "VARS", "FORMAT"};
  return std::any_of(std::begin(keywords), std::end(keywords), [&](const char* keyword) {
    return token.size() == std::strlen(keyword) && strcasecmp(token.c_str(), keyword) == 0;
  });
}

/// Columns with a format, or formats left from a FORMAT line before the last VARS line.
std::size_t formatCount(const GDB& table) {
  int count = 0;
  while (table.isVarString(count) || table.isVarInt(count) || table.isVarFloat(count)) {
    ++count;
  }
  return static_cast<std::size_t>(count);
}

/// Whether a written table can be read back as it was. The format cannot keep cells that run
/// together or print as nothing, rows that begin with a keyword, columns of one name or without a
/// format of their own, and sequences whose last line has no letters.
bool keeps(const GDB& table, const std::string& written) {
  const std::vector<std::string> lines = fuzzing::linesOf(written);
  for (std::size_t i = lines.size() - table.rowCount(); i < lines.size(); ++i) {
    const std::vector<std::string> tokens = GDB::split_WhiteSpace(lines[i]);
    if (tokens.size() != table.columnCount() || tokens[0].empty() || isKeyword(tokens[0])) {
      return false;
    }
  }
  const std::set<std::string> names(table.columnNames().begin(), table.columnNames().end());
  return names.size() == table.columnCount() && formatCount(table) == names.size() &&
         std::find(lines.begin(), lines.end(), "DATA SEQUENCE ") == lines.end();
}

/// Whether a sequence was cut into lines that, read as items of their own, are cut again: full
/// lines, and those that a cut left with a blank at an end.
bool cutsSequence(const std::string& written) {
  const std::string start = "DATA SEQUENCE ";
  const std::vector<std::string> lines = fuzzing::linesOf(written);
  return std::any_of(lines.begin(), lines.end(), [&start](const std::string& line) {
    return line.rfind(start, 0) == 0 && (line.size() == start.size() + 55 || line.back() == ' ' ||
                                         line.compare(start.size(), 1, " ") == 0);
  });
}

} // namespace

/// Any bytes as a table file: what is written is read back the same and written the same again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzzing::textOf(data, size));
  GDB first;
  if (fuzzing::run([&] { first.loadText(text); }).end != fuzzing::End::returned) {
    return 0;
  }
  const std::string written = first.text();
  if (!keeps(first, written)) {
    return 0;
  }
  GDB second;
  const fuzzing::Outcome loaded = fuzzing::run([&] { second.loadText(written); });
  require(loaded.end == fuzzing::End::returned, "what was written can be read");
  require(second.remarks() == first.remarks(), "the same remarks");
  require(second.columnNames() == first.columnNames(), "the same columns");
  require(second.rowCount() == first.rowCount(), "the same rows");
  require(second.residueNames() == first.residueNames(), "the same sequence");
  require(cutsSequence(written) || second.text() == written, "what was read is written the same");
  return 0;
}
