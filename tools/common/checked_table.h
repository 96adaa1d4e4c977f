#pragma once

#include <cstddef>
#include <string>

#include "table/gdb.h"

/// A table of the database that only companion programs read, with cells that have to be right.
/// What is wrong is a ToolError(badData) that begins with the file, or the name where a table was
/// read from memory.
class CheckedTable {
 public:
  /// \param table  must outlive this
  CheckedTable(const GDB& table, const std::string& name);

  /// The value of a cell that has to be a plain decimal number.
  double number(std::size_t row, const char* column) const;
  [[noreturn]] void refuse(const std::string& what) const;

 private:
  const GDB& table_;
  std::string name_;
};

/// The table of a file. Throws ToolError(inputMissing) when it cannot be read.
GDB readTableFile(const std::string& path);
