#pragma once

#include <string>
#include <vector>

/// How a child process ended.
struct ProcessEnd {
  int status = 0; ///< exit status, when it exited
  int signal = 0; ///< the signal that ended it, or 0
};

/// What `exec` takes: pointers to the arguments, which must outlive them, and a null pointer.
std::vector<char*> argumentPointers(const std::vector<std::string>& arguments);

/// A signal by number and name, as messages say it.
std::string signalText(int signal);

/// Runs a program in the current folder and waits for it.
///
/// \param arguments  the program's path, then its arguments
/// \param outputFile, errorFile  where its two streams go; created or truncated
/// \param seconds  after which SIGALRM ends it; 0 for no limit
/// A program that cannot be started ends with status 127.
ProcessEnd runProcess(const std::vector<std::string>& arguments, const std::string& outputFile,
                      const std::string& errorFile, unsigned seconds);

/// A program beside this one, or its bare name, to be found along PATH.
std::string programBeside(const std::string& name);
