#include "tools/report/files.h"

#include <filesystem>

#include "table/file_io.h"
#include "tools/common/tool.h"

std::string shiftTableName(const std::string& summary) {
  return summary.substr(0, summary.rfind('.')) + "AdjCS.tab";
}

NamedText readText(const std::string& path) {
  std::error_code error;
  std::optional<std::string> text;
  if (!std::filesystem::is_directory(path, error)) {
    text = readWholeFile(path == "-" ? "/dev/stdin" : path);
  }
  if (!text) {
    throw ToolError(ToolStatus::inputMissing, path + ": cannot read");
  }
  return {path == "-" ? "standard input" : path, std::move(*text)};
}

void makeFolder(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error) {
    throw ToolError(ToolStatus::cannotWrite, path + ": cannot make the folder");
  }
}
