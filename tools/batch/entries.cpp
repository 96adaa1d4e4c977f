#include "tools/batch/entries.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <sys/stat.h>

#include "table/file_io.h"
#include "tools/common/file_identity.h"
#include "tools/common/tool.h"

namespace fs = std::filesystem;

namespace {

Entry describe(const std::string& path) {
  Entry entry;
  entry.path = path;
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) {
    entry.size = status.st_size;
    entry.modified = status.st_mtime;
  }
  return entry;
}

bool isHidden(const fs::path& path) {
  return path.filename().string().front() == '.';
}

std::vector<std::string> filesBelow(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code error;
  fs::recursive_directory_iterator at(folder, error);
  for (const fs::recursive_directory_iterator end; !error && at != end; at.increment(error)) {
    if (isHidden(at->path())) {
      at.disable_recursion_pending();
    } else if (at->is_regular_file(error)) {
      files.push_back(at->path().string());
    }
  }
  if (error) {
    throw ToolError(ToolStatus::inputMissing, folder + ": " + error.message());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::string> pathsListedIn(const std::string& listFile) {
  const std::optional<std::string> text = readWholeFile(listFile == "-" ? "/dev/stdin" : listFile);
  if (!text) {
    throw ToolError(ToolStatus::inputMissing, listFile + ": cannot read the list");
  }
  std::vector<std::string> paths;
  std::string_view rest = *text;
  for (std::string_view line; takeLine(rest, line);) {
    if (!line.empty() && line.back() == '\r') {
      line.remove_suffix(1);
    }
    if (!line.empty() && line.front() != '#') {
      paths.emplace_back(line);
    }
  }
  return paths;
}

} // namespace

std::vector<Entry> collectEntries(const std::vector<std::string>& paths,
                                  const std::string& listFile,
                                  const std::vector<std::string>& own) {
  std::vector<std::string> named = paths;
  if (!listFile.empty()) {
    const std::vector<std::string> listed = pathsListedIn(listFile);
    named.insert(named.end(), listed.begin(), listed.end());
  }
  std::vector<Entry> entries;
  std::set<std::string> known;
  const auto add = [&](const std::string& path) {
    if (known.insert(path).second) {
      entries.push_back(describe(path));
    }
  };
  for (const std::string& path : named) {
    std::error_code error;
    if (fs::is_directory(path, error)) {
      for (const std::string& file : filesBelow(path)) {
        if (std::none_of(own.begin(), own.end(),
                         [&file](const std::string& name) { return isSameFile(name, file); })) {
          add(file);
        }
      }
    } else {
      add(path);
    }
  }
  return entries;
}
