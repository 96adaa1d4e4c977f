#pragma once

#include <chrono>
#include <cstddef>

/// A line on standard error that says how far a batch is: entries done, entries that failed, rate
/// and time left. On a terminal the line is renewed ten times a second; elsewhere a new one is
/// written every ten seconds. Nothing when quiet. Not for use by several threads at once.
class Progress {
 public:
  Progress(std::size_t total, bool quiet);

  /// One more entry is done.
  void step(bool failed);
  /// The last state, for good.
  void finish();

 private:
  void print(const char* end) const;

  std::size_t total_;
  std::size_t done_ = 0;
  std::size_t failed_ = 0;
  bool quiet_;
  bool terminal_;
  std::chrono::steady_clock::time_point start_;
  std::chrono::steady_clock::time_point shown_;
};
