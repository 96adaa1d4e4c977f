#include <cstdio>
#include <ctime>

#include "app/citrans.h"
#include "app/command_line.h"
#include "table/run_end.h"

namespace {
/// Processor-clock ticks per second, as POSIX fixes them.
constexpr double ticksPerSecond = 1000000.0;
} // namespace

int main(int argc, char** argv) {
  CITRANS citrans;
  citrans.printInfo();
  if (argc == 1) {
    citrans.printSyntax();
  }
  const CITRANS::Options options = readCommandLine(citrans, argc, argv);

  const std::clock_t start = std::clock();
  citrans.setArgs(options);
  citrans.runPredict();
  const double seconds = static_cast<double>(std::clock() - start) / ticksPerSecond;
  std::printf("\n Running time: %g seconds\n", seconds);
  finishOutput();
  return 0;
}
