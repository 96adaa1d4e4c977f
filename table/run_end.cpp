#include "table/run_end.h"

#include <cstdlib>

namespace {
RunEndHandler installedHandler = nullptr;
}

void endRun(int status) {
  if (installedHandler != nullptr) {
    installedHandler(status);
  }
  std::exit(status);
}

RunEndHandler setRunEndHandler(RunEndHandler handler) {
  RunEndHandler before = installedHandler;
  installedHandler = handler;
  return before;
}
