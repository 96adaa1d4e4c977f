/// Runs two commands in alternation and prints one row of the table of ratios.
///
///   bench_pair NAME AIM RUNS COMMAND... -- COMMAND...
///   bench_pair NAME AIM BYTES COMMAND...
///
/// An aim of 0 is none. The first form prints the median wall-clock times in milliseconds and their
/// ratio; the second, for one command, the peak memory, the size of its input and their ratio.
/// Standard output of the commands goes to /dev/null; a command that fails ends the measurement.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <vector>

namespace {

struct Run {
  double milliseconds;
  double peakBytes;
};

Run run(char* const* command, const posix_spawn_file_actions_t& actions) {
  const auto start = std::chrono::steady_clock::now();
  pid_t child = 0;
  int status = 0;
  rusage usage{};
  if (posix_spawnp(&child, command[0], &actions, nullptr, command, environ) != 0 ||
      wait4(child, &status, 0, &usage) < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    std::fprintf(stderr, "bench_pair: %s failed\n", command[0]);
    std::exit(1);
  }
  const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - start;
  return {spent.count(), static_cast<double>(usage.ru_maxrss) * 1024};
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t half = values.size() / 2;
  return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

void printRow(const char* name, double first, double second, const char* unit, double aim) {
  const double ratio = first / second;
  std::printf("%-46s %10.2f %10.2f %-3s %8.3f", name, first, second, unit, ratio);
  if (aim > 0) {
    std::printf(" %6g   %s", aim, ratio <= aim ? "met" : "MISSED");
  }
  std::puts("");
}

} // namespace

int main(int argc, char** argv) {
  if (argc < 5) {
    std::fputs("usage: bench_pair NAME AIM RUNS COMMAND... -- COMMAND...\n", stderr);
    return 2;
  }
  const double aim = std::strtod(argv[2], nullptr);
  const long runs = std::strtol(argv[3], nullptr, 10);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int stream : {1, 2}) {
    posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
  }
  char** const second = std::find_if(argv + 4, argv + argc,
                                     [](const char* word) { return std::strcmp(word, "--") == 0; });
  if (second == argv + argc) {
    const double megabyte = 1e6;
    printRow(argv[1], run(argv + 4, actions).peakBytes / megabyte,
             static_cast<double>(runs) / megabyte, "MB", aim);
    return 0;
  }
  *second = nullptr;
  std::vector<double> times[2];
  for (long i = 0; i < runs; ++i) {
    times[0].push_back(run(argv + 4, actions).milliseconds);
    times[1].push_back(run(second + 1, actions).milliseconds);
  }
  printRow(argv[1], median(times[0]), median(times[1]), "ms", aim);
  return 0;
}
