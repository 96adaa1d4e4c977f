#include "tools/common/file_identity.h"

#include <filesystem>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/common/tool.h"

namespace fs = std::filesystem;

namespace {

/// As many links in a row as the system itself follows.
constexpr int longestChainOfLinks = 40;

/// The name of the file that a name leads to, which need not exist.
fs::path followed(fs::path path) {
  std::error_code error;
  for (int i = 0; i < longestChainOfLinks && fs::is_symlink(path, error); ++i) {
    const fs::path target = fs::read_symlink(path, error);
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  const fs::path absolute = fs::absolute(path, error);
  const fs::path canonical = fs::weakly_canonical(absolute, error);
  return error ? absolute.lexically_normal() : canonical;
}

/// What tells files apart: where it lies on its device for one that exists, else its full name.
/// Empty for a device or a connection, which many can share.
std::string identityOf(const std::string& name, int stream) {
  struct stat status {};
  const bool exists = name == "-" ? fstat(stream, &status) == 0 : stat(name.c_str(), &status) == 0;
  if (!exists) {
    return name == "-" ? "" : followed(name).string();
  }
  if (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode) || S_ISSOCK(status.st_mode)) {
    return "";
  }
  return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

} // namespace

void requireDistinctFiles(const std::vector<std::string>& inputs,
                          const std::vector<std::string>& outputs) {
  std::map<std::string, const std::string*> known;
  for (const std::string& input : inputs) {
    if (!input.empty()) {
      known.emplace(identityOf(input, STDIN_FILENO), &input);
    }
  }
  std::map<std::string, const std::string*> written;
  for (const std::string& output : outputs) {
    const std::string identity = output.empty() ? "" : identityOf(output, STDOUT_FILENO);
    if (identity.empty()) {
      continue;
    }
    const auto input = known.find(identity);
    if (input != known.end()) {
      throw ToolError(ToolStatus::usage, output + ": this output is the input " + *input->second);
    }
    const auto [other, added] = written.emplace(identity, &output);
    if (!added) {
      throw ToolError(ToolStatus::usage,
                      output + ": this output is the same file as the output " + *other->second);
    }
  }
}

bool isSameFile(const std::string& one, const std::string& other) {
  const std::string identity = identityOf(one, STDIN_FILENO);
  return !identity.empty() && identity == identityOf(other, STDIN_FILENO);
}
