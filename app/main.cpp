#include <cstdio>
#include <ctime>
#include <stdexcept>

#include "app/citrans.h"
#include "app/command_line.h"

namespace {

/// Processor-clock ticks per second, as POSIX fixes them.
constexpr double ticksPerSecond = 1000000.0;

void run(int argc, char** argv) {
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
  citrans.out(formatted("\n Running time: %g seconds\n", seconds));
}

/// Hands over what was printed on standard output, and says so on standard error when any of it was
/// lost, on a full disk for instance.
void finishOutput() {
  const bool flushed = std::fflush(stdout) == 0;
  if (!flushed || std::ferror(stdout) != 0) {
    toStandardError("\tCan't write standard output\n");
  }
}

} // namespace

int main(int argc, char** argv) {
  int status = 0;
  try {
    run(argc, argv);
  } catch (const RunEnd& end) {
    toStandardError(end.message());
    status = end.status();
  } catch (const std::out_of_range&) {
    // Kept: a line that ends before what is sought in it ends the run abnormally. What was printed
    // until then is not lost.
    finishOutput();
    throw;
  }
  finishOutput();
  return status;
}
