#include "tools/common/output.h"

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

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

/// Where a text goes first: beside its file, or at once to what has no beside.
std::string firstPath(const std::string& path) {
  return isNoPlainFile(path) ? path : path + ".part" + std::to_string(getpid());
}

void writeTo(const std::string& path, const Output& output) {
  OutputFile file(path);
  file.buffer().append(output.text);
  if (!file.close()) {
    throw ToolError(ToolStatus::cannotWrite, output.path + ": cannot write");
  }
}

/// Removes, unless told otherwise, what was written beside.
class Unfinished {
 public:
  Unfinished() = default;
  ~Unfinished() {
    for (const auto& [beside, path] : files_) {
      std::remove(beside.c_str());
    }
  }
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;

  void add(const std::string& beside, const std::string& path) {
    files_.emplace_back(beside, path);
  }

  void finish() {
    for (const auto& [beside, path] : files_) {
      if (std::rename(beside.c_str(), path.c_str()) != 0) {
        throw ToolError(ToolStatus::cannotWrite, path + ": cannot write");
      }
    }
    files_.clear();
  }

 private:
  std::vector<std::pair<std::string, std::string>> files_;
};

} // namespace

void writeWholeFiles(const std::vector<Output>& outputs) {
  Unfinished files;
  std::vector<const Output*> last;
  for (const Output& output : outputs) {
    const std::string first = output.path == "-" ? output.path : firstPath(output.path);
    if (first == output.path) {
      last.push_back(&output);
      continue;
    }
    files.add(first, output.path);
    writeTo(first, output);
  }
  for (const Output* output : last) {
    if (output->path == "-") {
      writeStandardOutput(output->text);
    } else {
      writeTo(output->path, *output);
    }
  }
  files.finish();
}

void writeWholeFile(const std::string& path, const std::string& text) {
  writeWholeFiles({{path, text}});
}
