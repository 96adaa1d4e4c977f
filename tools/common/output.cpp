#include "tools/common/output.h"

#include <cstdio>
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

} // namespace

void writeWholeFile(const std::string& path, const std::string& text) {
  if (path == "-") {
    writeStandardOutput(text);
    return;
  }
  const std::string beside = path + ".part" + std::to_string(getpid());
  OutputFile file(beside);
  file.buffer() = text;
  if (!file.close() || std::rename(beside.c_str(), path.c_str()) != 0) {
    std::remove(beside.c_str());
    throw ToolError(ToolStatus::cannotWrite, path + ": cannot write");
  }
}
