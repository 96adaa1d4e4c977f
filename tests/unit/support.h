#pragma once

#include <functional>
#include <optional>
#include <string>

#include "table/gdb.h"

/// Writes a file into a folder of this process's own. \return its path
std::string writeFile(const std::string& name, const std::string& content);
/// A path in that folder.
std::string scratchPath(const std::string& name);
std::string readFile(const std::string& path);

/// How a piece of work went.
struct Outcome {
  std::optional<int> status; ///< with which it ended the run, if it did
  std::string out;           ///< standard output
  std::string err;           ///< standard error
};

/// Does the work; the end of a run is printed as the program prints it.
Outcome outcomeOf(const std::function<void()>& work);
