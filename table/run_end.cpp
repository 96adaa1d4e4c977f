#include "table/run_end.h"

#include <cstdio>
#include <cstdlib>

namespace {
RunEndHandler installedHandler = nullptr;
}

void endRun(int status) {
  if (installedHandler != nullptr) {
    installedHandler(status);
  }
  finishOutput();
  std::exit(status);
}

void finishOutput() {
  const bool flushed = std::fflush(stdout) == 0;
  if (!flushed || std::ferror(stdout) != 0) {
    std::fputs("\tCan't write standard output\n", stderr);
  }
}

RunEndHandler setRunEndHandler(RunEndHandler handler) {
  RunEndHandler before = installedHandler;
  installedHandler = handler;
  return before;
}
