#include "tests/unit/support.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <unistd.h>

#include "table/run_end.h"

namespace {

struct RunEnded {
  int status;
};

[[noreturn]] void throwRunEnded(int status) {
  throw RunEnded{status};
}

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

void loadText(GDB& table, const std::string& text) {
  table.loadGDB(writeFile("loaded.tab", text));
}

std::string savedText(const GDB& table) {
  table.saveGDB(scratchPath("saved.tab"));
  return readFile(scratchPath("saved.tab"));
}

Outcome outcomeOf(const std::function<void()>& work) {
  Outcome outcome;
  const RunEndHandler before = setRunEndHandler(throwRunEnded);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  try {
    work();
  } catch (const RunEnded& end) {
    outcome.status = end.status;
  }
  outcome.out = testing::internal::GetCapturedStdout();
  outcome.err = testing::internal::GetCapturedStderr();
  setRunEndHandler(before);
  return outcome;
}
