#include "tools/common/tool.h"

#include <cstdio>

#include "table/run_end.h"

#ifndef CITRANS_VERSION
#define CITRANS_VERSION "unknown"
#endif

namespace {

int fail(const std::string& program, const char* message, ToolStatus status) {
  std::fprintf(stderr, "%s: %s\n", program.c_str(), message);
  return static_cast<int>(status);
}

} // namespace

std::string atLine(const std::string& file, std::size_t line, const std::string& what) {
  return file + ":" + std::to_string(line) + ": " + what;
}

std::string versionLine(const std::string& program) {
  return program + " " CITRANS_VERSION;
}

int runTool(const std::string& program, int (*body)(int argc, char** argv), int argc, char** argv) {
  try {
    return body(argc, argv);
  } catch (const ToolError& error) {
    return fail(program, error.what(), error.status());
  } catch (const RunEnd& refusal) {
    std::fputs(refusal.what(), stderr); // the core's own line about the file that it refuses
    return static_cast<int>(ToolStatus::badData);
  } catch (const std::exception& error) {
    return fail(program, error.what(), ToolStatus::badData);
  }
}
