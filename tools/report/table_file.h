#pragma once

#include <string>
#include <vector>

#include "table/gdb.h"
#include "tools/report/inputs.h"

/// A table file that knows the line of each of its rows, so that a bad cell can be pointed at.
class TableFile {
 public:
  /// Reads a table. Throws ToolError(badData) for a text without VARS and FORMAT lines, and for a
  /// bare REMARK or DATA line.
  explicit TableFile(const NamedText& source);

  const GDB& table() const { return table_; }
  /// The name for messages.
  const std::string& name() const { return name_; }
  /// Lines after the FORMAT line that are neither rows nor empty nor a keyword's, so not read.
  const std::vector<std::size_t>& skippedLines() const { return skippedLines_; }

  bool hasColumn(const std::string& column) const;
  /// Throws ToolError(badData) unless the table has the column.
  void requireColumn(const std::string& column) const;

  /// A cell that must be a whole number or a number ("nan" is one). Throws ToolError(badData) with
  /// the row's line when it is something else.
  int wholeNumber(std::size_t row, const std::string& column) const;
  double number(std::size_t row, const std::string& column) const;

 private:
  void findRows(std::string_view text);
  [[noreturn]] void refuse(std::size_t row, const std::string& column, const char* wanted) const;

  std::string name_;
  GDB table_;
  std::vector<std::size_t> rowLines_;
  std::vector<std::size_t> skippedLines_;
};
