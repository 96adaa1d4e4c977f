#pragma once

#include <stdexcept>
#include <string>

/// What all companion programs share: statuses, one-line errors, the version.

/// Exit statuses; those above 1 are the BSD ones for the same faults.
enum class ToolStatus {
  done = 0,
  usage = 1,
  badData = 65,
  inputMissing = 66,
  cannotWrite = 73,
};

/// A fault that ends a companion program. The message is one line without the program's name; one
/// about a place in a file begins with "file:line: ".
class ToolError : public std::runtime_error {
 public:
  ToolError(ToolStatus status, const std::string& message)
      : std::runtime_error(message), status_(status) {}
  ToolStatus status() const { return status_; }

 private:
  ToolStatus status_;
};

/// "file:line: what", the form of every message about a place in a file.
std::string atLine(const std::string& file, std::size_t line, const std::string& what);

/// "NAME VERSION", the answer to --version.
std::string versionLine(const std::string& program);

/// Runs `body` and turns a ToolError, or any other exception, into one line on standard error and
/// its exit status. While it runs, a file that the core refuses is a ToolError too.
int runTool(const std::string& program, int (*body)(int argc, char** argv), int argc, char** argv);
