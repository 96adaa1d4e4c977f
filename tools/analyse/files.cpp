#include "tools/analyse/files.h"

#include "table/file_io.h"
#include "tools/common/tool.h"

namespace analyse {

TableTexts tablesIn(const std::string& folder) {
  TableTexts tables = builtInTables();
  for (auto& [name, text] : tables) {
    const std::string path = folder + "/" + name;
    std::optional<std::string> found = readWholeFile(path);
    if (!found) {
      throw ToolError(ToolStatus::inputMissing, path + ": cannot read (see --tab)");
    }
    text = std::move(*found);
  }
  return tables;
}

} // namespace analyse
