#include "tools/derive/file_set.h"

#include <cstdio>
#include <filesystem>
#include <unistd.h>
#include <vector>

#include "table/file_io.h"
#include "tools/common/tool.h"

namespace derive {
namespace {

struct Pending {
  std::string beside;
  std::string path;
};

[[noreturn]] void giveUp(const std::vector<Pending>& files, const std::string& path) {
  for (const Pending& file : files) {
    std::remove(file.beside.c_str());
  }
  throw ToolError(ToolStatus::cannotWrite, path + ": cannot write");
}

} // namespace

void writeFilesTogether(const std::string& folder,
                        const std::map<std::string, std::string>& textByName) {
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  std::vector<Pending> files;
  for (const auto& [name, text] : textByName) {
    const std::string path = folder + "/" + name;
    files.push_back({path + ".part" + std::to_string(getpid()), path});
    OutputFile file(files.back().beside);
    file.buffer().append(text);
    if (!file.close()) {
      giveUp(files, path);
    }
  }
  for (const Pending& file : files) {
    if (std::rename(file.beside.c_str(), file.path.c_str()) != 0) {
      giveUp(files, file.path);
    }
  }
}

} // namespace derive
