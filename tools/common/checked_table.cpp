#include "tools/common/checked_table.h"

#include <filesystem>

#include "table/run_end.h"
#include "tools/common/plain_number.h"
#include "tools/common/tool.h"

CheckedTable::CheckedTable(const GDB& table, const std::string& name)
    : table_(table), name_(table.fileName().empty() ? name : table.fileName()) {}

double CheckedTable::number(std::size_t row, const char* column) const {
  const std::string_view text = table_.cell(row, column);
  const std::optional<double> value = plainNumber(text);
  if (!value) {
    refuse(std::string(column) + " is no number: '" + std::string(text) + "'");
  }
  return *value;
}

void CheckedTable::refuse(const std::string& what) const {
  throw ToolError(ToolStatus::badData, name_ + ": " + what);
}

GDB readTableFile(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(path, ignored)) {
    try {
      return GDB(path);
    } catch (const RunEnd&) {
      // What the core says of it is not the one line of these programs.
    }
  }
  throw ToolError(ToolStatus::inputMissing, path + ": cannot read the file");
}
