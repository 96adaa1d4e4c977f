#include "tools/common/output.h"

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

#include "table/file_io.h"
#include "tools/common/tool.h"

namespace {

void writeStandardOutput(const std::string& text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (std::fflush(stdout) != 0 || !written) {
    throw ToolError(ToolStatus::cannotWrite, "cannot write standard output");
  }
}

/// Whether something stands at the path that a file must not replace: a device, a pipe, a folder.
bool isNoPlainFile(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

bool writeTo(const std::string& path, const std::string& text) {
  OutputFile file(path);
  file.buffer().append(text);
  return file.close();
}

} // namespace

void writeWholeFile(const std::string& path, const std::string& text) {
  if (path == "-") {
    writeStandardOutput(text);
    return;
  }
  const bool direct = isNoPlainFile(path);
  const std::string beside = direct ? path : path + ".part" + std::to_string(getpid());
  const bool written = writeTo(beside, text);
  if (!written || (!direct && std::rename(beside.c_str(), path.c_str()) != 0)) {
    if (!direct) {
      std::remove(beside.c_str());
    }
    throw ToolError(ToolStatus::cannotWrite, path + ": cannot write");
  }
}
