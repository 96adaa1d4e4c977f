#include "fuzz/support.h"

#include <algorithm>
#include <cstdlib>
#include <map>

#include "table/gdb.h"

namespace {

using fuzzing::require;

/// The reader's grammar once more, line by line and without thought of speed, to compare with.
struct Model {
  std::vector<std::string> remarks, items, columns, formats;
  std::map<int, std::map<std::string, std::string>> rows;
  int nextRow = 1;
  bool formatSeen = false;
  bool refused = false;
  bool outOfRange = false;

  bool ended() const { return refused || outOfRange; }

  void readLine(const std::string& line) {
    const std::string simple = GDB::simplifyWhiteSpace(line);
    const std::vector<std::string> tokens = GDB::split(" ", simple);
    if (tokens.empty()) {
      return;
    }
    if (formatSeen && tokens.size() == columns.size()) {
      for (std::size_t i = 0; i < tokens.size(); ++i) {
        rows[nextRow][columns[i]] = tokens[i];
      }
      ++nextRow;
    }
    std::string keyword = tokens[0];
    std::transform(keyword.begin(), keyword.end(), keyword.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? char(c - 32) : c; });
    const std::size_t size = keyword.size();
    if (keyword == "REMARK") {
      cut(line, size + 1, remarks);
    } else if (keyword == "DATA") {
      cut(simple, size + 1, items);
    } else if (keyword == "VARS") {
      columns = GDB::split(" ", simple.substr(size));
      rows.clear();
    } else if (keyword == "FORMAT") {
      readFormat(line.substr(size));
    }
  }

  void cut(const std::string& text, std::size_t from, std::vector<std::string>& into) {
    outOfRange = from > text.size();
    if (!outOfRange) {
      into.push_back(text.substr(from));
    }
  }

  void readFormat(const std::string& text) {
    formats.clear();
    rows.clear();
    formatSeen = true;
    std::vector<std::string> pieces;
    for (const char c : text) {
      if (c == '%') {
        pieces.emplace_back();
      }
      if (!pieces.empty()) {
        pieces.back() += c;
      }
    }
    if (pieces.empty() || pieces.size() != columns.size()) {
      return;
    }
    for (const std::string& piece : pieces) {
      if (!GDB::checkFormat(piece)) {
        refused = true;
        return;
      }
      formats.push_back(piece);
    }
  }
};

void requireSameRows(const GDB& table, const Model& model) {
  require(table.rowCount() == model.rows.size(), "as many rows");
  std::size_t position = 0;
  for (const auto& [number, row] : model.rows) {
    require(table.rowNumber(position) == number, "the same row numbers");
    for (const auto& [column, text] : row) {
      require(table.cell(position, column) == text, "the same cells");
    }
    ++position;
  }
}

/// Each cell is found under its column by value, at the first row that holds it.
void requireLookup(const GDB& table, const Model& model) {
  if (model.rows.empty() || model.columns.empty()) {
    return;
  }
  const std::string& column = model.columns.front();
  const std::string& other = model.columns.back();
  const auto& wanted = model.rows.rbegin()->second;
  const auto first = std::find_if(model.rows.begin(), model.rows.end(), [&](const auto& row) {
    return row.second.at(column) == wanted.at(column) && row.second.at(other) == wanted.at(other);
  });
  const std::size_t found = table.findRow(column, wanted.at(column), other, wanted.at(other));
  require(found != GDB::noRow && table.rowNumber(found) == first->first, "first match");
  require(table.getEntry(column, wanted.at(column), other, wanted.at(other), 1) == first->second,
          "the row as a map");
}

void requireSequence(const GDB& table) {
  const std::string sequence = table.getData("SEQUENCE");
  const std::size_t letters =
      sequence.size() - static_cast<std::size_t>(GDB::contains(sequence, ' '));
  const std::size_t stored = table.residueNames().size();
  const long long places = 2147483647LL - table.firstResidue() + 1;
  require(static_cast<long long>(stored) == std::min(static_cast<long long>(letters), places),
          "a residue for every letter, as far as numbers reach");
  require(stored == 0 || table.residueNames().begin()->first == table.firstResidue(),
          "the first residue has the number of the header");
}

} // namespace

/// Any bytes as a table file: the reader finds what the grammar says, and ends as it says.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(fuzzing::textOf(data, size));
  Model model;
  for (const std::string& line : fuzzing::linesOf(text)) {
    if (!model.ended()) {
      model.readLine(line);
    }
  }
  GDB table;
  const fuzzing::Outcome outcome = fuzzing::run([&] { table.loadText(std::string(text)); });
  require((outcome.end == fuzzing::End::refused) == model.refused, "refused for its FORMAT");
  require((outcome.end == fuzzing::End::outOfRange) == model.outOfRange,
          "lone REMARK and DATA lines, and nothing else, are out of range");
  require(fuzzing::plainMessages(outcome.messages), "plain messages");
  require(table.remarks() == model.remarks, "the same remarks");
  require(table.dataItems() == model.items, "the same header items");
  require(table.columnNames() == model.columns, "the same columns");
  requireSameRows(table, model);
  if (!model.ended()) {
    requireLookup(table, model);
    requireSequence(table);
  }
  return 0;
}
