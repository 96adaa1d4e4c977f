#include "tests/unit/support.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <unistd.h>

#include "table/run_end.h"

namespace {

/// A new folder, removed with all it holds when the process ends.
struct Scratch {
  std::filesystem::path path;
  Scratch() {
    std::string name = (std::filesystem::temp_directory_path() / "citrans-unit-XXXXXX").string();
    path = mkdtemp(name.data());
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
};

} // namespace

std::string scratchPath(const std::string& name) {
  static const Scratch scratch;
  return (scratch.path / name).string();
}

std::string writeFile(const std::string& name, const std::string& content) {
  std::ofstream(scratchPath(name), std::ios::binary) << content;
  return scratchPath(name);
}

std::string readFile(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

Outcome outcomeOf(const std::function<void()>& work) {
  Outcome outcome;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  try {
    work();
  } catch (const RunEnd& end) {
    toStandardError(end.message());
    outcome.status = end.status();
  }
  outcome.out = testing::internal::GetCapturedStdout();
  outcome.err = testing::internal::GetCapturedStderr();
  return outcome;
}
