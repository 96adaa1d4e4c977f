#include "tools/batch/progress.h"

#include <cstdio>
#include <unistd.h>

namespace {
constexpr std::chrono::milliseconds terminalPause(100);
constexpr std::chrono::milliseconds filePause(10000);
} // namespace

Progress::Progress(std::size_t total, bool quiet)
    : total_(total), quiet_(quiet), terminal_(isatty(STDERR_FILENO) != 0),
      start_(std::chrono::steady_clock::now()), shown_(start_) {}

void Progress::step(bool failed) {
  ++done_;
  failed_ += failed ? 1 : 0;
  const auto now = std::chrono::steady_clock::now();
  if (!quiet_ && now - shown_ >= (terminal_ ? terminalPause : filePause)) {
    shown_ = now;
    print(terminal_ ? "\r" : "\n");
  }
}

void Progress::finish() {
  if (!quiet_) {
    print("\n");
  }
}

void Progress::print(const char* end) const {
  const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start_;
  const double rate = spent.count() > 0 ? static_cast<double>(done_) / spent.count() : 0;
  const double left = rate > 0 ? static_cast<double>(total_ - done_) / rate : 0;
  std::fprintf(stderr, "%zu of %zu entries, %zu failed, %.1f a second, %.0f s left   %s", done_,
               total_, failed_, rate, left, end);
}
