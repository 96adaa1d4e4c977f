#pragma once

#include <CLI/CLI.hpp>

#include "tools/common/tool.h"

/// Reads a companion program's options; for programs that are built with CLI11.
///
/// \return false after --help or --version, which print on standard output: there is nothing more
///         to do then
/// Throws ToolError(usage) for options that the program does not take.
inline bool parseOptions(CLI::App& app, int argc, char** argv) {
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error);
      return false;
    }
    throw ToolError(ToolStatus::usage, error.what());
  }
  return true;
}
