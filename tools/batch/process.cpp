#include "tools/batch/process.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int cannotStart = 127;

/// Between fork and exec of a program with threads, only plain system calls are safe.
[[noreturn]] void becomeChild(char* const* arguments, const char* outputFile, const char* errorFile,
                              unsigned seconds) {
  const int flags = O_WRONLY | O_CREAT | O_TRUNC;
  const int input = open("/dev/null", O_RDONLY);
  const int output = open(outputFile, flags, 0666);
  const int error = open(errorFile, flags, 0666);
  if (input < 0 || output < 0 || error < 0 || dup2(input, 0) < 0 || dup2(output, 1) < 0 ||
      dup2(error, 2) < 0) {
    _exit(cannotStart);
  }
  alarm(seconds); // outlives exec
  execvp(arguments[0], arguments);
  _exit(cannotStart);
}

} // namespace

std::vector<char*> argumentPointers(const std::vector<std::string>& arguments) {
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) {
    // What `exec` asks for; it changes no argument.
    pointers.push_back(const_cast<char*>(argument.c_str())); // NOLINT(*-const-cast)
  }
  pointers.push_back(nullptr);
  return pointers;
}

std::string signalText(int signal) {
  return "signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
}

ProcessEnd runProcess(const std::vector<std::string>& arguments, const std::string& outputFile,
                      const std::string& errorFile, unsigned seconds) {
  const std::vector<char*> pointers = argumentPointers(arguments);
  const pid_t child = fork();
  if (child == 0) {
    becomeChild(pointers.data(), outputFile.c_str(), errorFile.c_str(), seconds);
  }
  ProcessEnd end;
  end.status = cannotStart;
  int status = 0;
  while (child > 0 && waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) {
      return end;
    }
  }
  if (child > 0) {
    end.status = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
    end.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  }
  return end;
}

std::string programBeside(const std::string& name) {
  char self[4096];
  const ssize_t size = readlink("/proc/self/exe", self, sizeof self);
  if (size > 0 && static_cast<std::size_t>(size) < sizeof self) {
    std::string path(self, static_cast<std::size_t>(size));
    path.replace(path.rfind('/') + 1, std::string::npos, name);
    if (access(path.c_str(), X_OK) == 0) {
      return path;
    }
  }
  return name;
}
