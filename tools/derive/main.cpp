#include <cstdio>

#include "tools/common/tool.h"
#include "tools/derive/command.h"

int main(int argc, char** argv) {
  return runTool(derive::program, derive::runCommand, argc, argv);
}
