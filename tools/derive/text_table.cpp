#include "tools/derive/text_table.h"

#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

#include "table/file_io.h"
#include "table/gdb.h"
#include "tools/common/tool.h"

namespace derive {
namespace {

std::string readOrRefuse(const std::string& path) {
  const std::optional<std::string> text = readWholeFile(path);
  if (!text) {
    throw ToolError(ToolStatus::inputMissing, path + ": cannot read");
  }
  return *text;
}

std::vector<std::string> splitTabs(std::string_view line) {
  if (!line.empty() && line.back() == '\r') {
    line.remove_suffix(1);
  }
  std::vector<std::string> cells;
  while (true) {
    const std::size_t tab = line.find('\t');
    cells.emplace_back(line.substr(0, tab));
    if (tab == std::string_view::npos) {
      return cells;
    }
    line.remove_prefix(tab + 1);
  }
}

} // namespace

TextTable TextTable::readTable(const std::string& path, const std::vector<std::string>& columns) {
  const std::string text = readOrRefuse(path);
  TextTable table(path);
  bool rowsBegun = false;
  std::string_view rest = text;
  std::string_view line;
  for (std::size_t number = 1; takeLine(rest, line); ++number) {
    table.lastLine_ = number;
    std::vector<std::string> cells = GDB::split_WhiteSpace(std::string(line));
    if (cells.empty() || cells.front().empty() || cells.front() == "REMARK" ||
        cells.front() == "DATA") {
      continue;
    }
    if (cells.front() == "VARS") {
      cells.erase(cells.begin());
      table.setColumns(std::move(cells));
      table.requireColumns(columns, number);
    } else if (cells.front() == "FORMAT") {
      rowsBegun = true;
    } else if (rowsBegun) {
      table.addRow(number, std::move(cells));
    }
  }
  table.requireColumns(columns, table.lastLine_);
  return table;
}

TextTable TextTable::readTsv(const std::string& path, const std::vector<std::string>& columns) {
  const std::string text = readOrRefuse(path);
  TextTable table(path);
  std::string_view rest = text;
  std::string_view line;
  for (std::size_t number = 1; takeLine(rest, line); ++number) {
    table.lastLine_ = number;
    if (line.empty() || line.front() == '#') {
      continue;
    }
    if (table.columnCount_ == 0) {
      table.setColumns(splitTabs(line));
      table.requireColumns(columns, number);
    } else {
      table.addRow(number, splitTabs(line));
    }
  }
  table.requireColumns(columns, table.lastLine_);
  return table;
}

void TextTable::setColumns(std::vector<std::string> names) {
  columns_.clear();
  columnCount_ = names.size();
  for (std::size_t i = 0; i < names.size(); ++i) {
    columns_[names[i]] = i;
  }
}

void TextTable::requireColumns(const std::vector<std::string>& columns, std::size_t line) const {
  for (const std::string& column : columns) {
    if (columns_.count(column) == 0) {
      throw ToolError(ToolStatus::badData, atLine(path_, line, "no column " + column));
    }
  }
}

void TextTable::addRow(std::size_t line, std::vector<std::string> cells) {
  rows_.push_back({line, std::move(cells)});
  const std::size_t found = rows_.back().cells.size();
  if (found != columnCount_) {
    refuse(rows_.back(), std::to_string(found) + " cells in a table of " +
                             std::to_string(columnCount_) + " columns");
  }
}

const std::string& TextTable::text(const TextRow& row, const std::string& column) const {
  return row.cells[columns_.at(column)];
}

double TextTable::number(const TextRow& row, const std::string& column) const {
  const std::string& cell = text(row, column);
  double value = 0;
  const char* end = cell.data() + cell.size();
  const auto result = std::from_chars(cell.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) {
    refuse(row, column + " is no number: '" + cell + "'");
  }
  return value;
}

int TextTable::integer(const TextRow& row, const std::string& column) const {
  const std::string& cell = text(row, column);
  int value = 0;
  const char* end = cell.data() + cell.size();
  const auto result = std::from_chars(cell.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end) {
    refuse(row, column + " is no integer: '" + cell + "'");
  }
  return value;
}

void TextTable::refuse(const TextRow& row, const std::string& what) const {
  throw ToolError(ToolStatus::badData, atLine(path_, row.line, what));
}

void TextTable::refuseFile(const std::string& what) const {
  throw ToolError(ToolStatus::badData, atLine(path_, lastLine_, what));
}

} // namespace derive
