#pragma once

#include <map>
#include <string>
#include <vector>

namespace derive {

/// One row of an input file, with its place for messages.
struct TextRow {
  std::size_t line;
  std::vector<std::string> cells;
};

/// An input table whose every row is checked, for data that must not lose a row in silence: the
/// program's own reader skips what does not fit.
class TextTable {
 public:
  /// Reads a file in the program's table format (VARS and FORMAT lines, then rows).
  /// Throws ToolError with file and line for a missing file, a row with another number of cells
  /// than there are columns, or a missing column.
  static TextTable readTable(const std::string& path, const std::vector<std::string>& columns);

  /// Reads a file of tab-separated columns whose first line that does not begin with "#" names
  /// them. Throws like `readTable`.
  static TextTable readTsv(const std::string& path, const std::vector<std::string>& columns);

  const std::vector<TextRow>& rows() const { return rows_; }
  const std::string& text(const TextRow& row, const std::string& column) const;
  /// A whole cell as a finite number; throws ToolError with file and line for any other text.
  double number(const TextRow& row, const std::string& column) const;
  /// A whole cell as an integer, likewise.
  int integer(const TextRow& row, const std::string& column) const;

  /// Throws ToolError about this row: "file:line: what".
  [[noreturn]] void refuse(const TextRow& row, const std::string& what) const;
  /// Throws ToolError about the file as a whole, at its last line.
  [[noreturn]] void refuseFile(const std::string& what) const;

 private:
  explicit TextTable(std::string path) : path_(std::move(path)) {}
  void setColumns(std::vector<std::string> names);
  void requireColumns(const std::vector<std::string>& columns, std::size_t line) const;
  void addRow(std::size_t line, std::vector<std::string> cells);

  std::string path_;
  std::size_t lastLine_ = 1;
  std::size_t columnCount_ = 0;
  std::map<std::string, std::size_t> columns_;
  std::vector<TextRow> rows_;
};

} // namespace derive
