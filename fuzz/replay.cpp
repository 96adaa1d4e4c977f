#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/support.h"

/// Feeds files, and all files of folders, to one fuzz target, so that the seeds are an ordinary
/// test with any compiler. Ends with status 1 when there is none to feed.
int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  std::vector<fs::path> files;
  for (int i = 1; i < argc; ++i) {
    if (fs::is_directory(argv[i])) {
      std::copy_if(fs::directory_iterator(argv[i]), {}, std::back_inserter(files),
                   [](const fs::path& path) { return fs::is_regular_file(path); });
    } else {
      files.emplace_back(argv[i]);
    }
  }
  std::sort(files.begin(), files.end());
  for (const fs::path& path : files) {
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    // On standard output at once: the last name shown is the seed that did not pass.
    std::printf("%s (%zu bytes)\n", path.c_str(), text.size());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(fuzzing::bytesOf(text), text.size());
  }
  std::printf("%zu seeds\n", files.size());
  return files.empty() ? 1 : 0;
}
