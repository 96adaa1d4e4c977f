#include "tools/common/program_tables.h"

#include <cstdlib>
#include <filesystem>
#include <strings.h>

#include "app/citrans.h"
#include "table/file_io.h"

std::string tableFolder(const std::string& given) {
  if (!given.empty()) {
    return given;
  }
  std::string usual = CITRANS().tabDir;
  if (std::getenv("CITRANS_DIR") != nullptr || std::filesystem::exists(usual)) {
    return usual;
  }
  std::error_code error;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::filesystem::path installed = self.parent_path().parent_path() / "share/citrans/tab";
  return std::filesystem::exists(installed, error) ? installed.string() : usual;
}

bool isProgramTable(std::string_view text) {
  bool vars = false;
  bool format = false;
  for (std::string_view line; takeLine(text, line) && !(vars && format);) {
    const std::string keyword =
        GDB::split(" ", GDB::simplifyWhiteSpace(std::string(line.substr(0, 80)) + " ."))[0];
    vars = vars || strcasecmp(keyword.c_str(), "VARS") == 0;
    format = format || strcasecmp(keyword.c_str(), "FORMAT") == 0;
  }
  return vars && format;
}
