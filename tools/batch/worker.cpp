#include "tools/batch/worker.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

#include "tools/batch/entry_json.h"
#include "tools/batch/process.h"
#include "tools/common/tool.h"

namespace {

constexpr int cannotStart = 127;

/// Between fork and exec of a program with threads, only plain system calls are safe.
[[noreturn]] void becomeWorker(char* const* arguments, int input, int output) {
  std::signal(SIGPIPE, SIG_DFL);
  if (dup2(input, STDIN_FILENO) >= 0 && dup2(output, STDOUT_FILENO) >= 0) {
    execvp(arguments[0], arguments);
  }
  _exit(cannotStart);
}

[[noreturn]] void refuseToStart() {
  throw ToolError(ToolStatus::cannotWrite, "cannot start a process for the entries");
}

} // namespace

Worker::~Worker() {
  stop();
}

void Worker::start() {
  // Closed in every other process, so that the end of this one is seen.
  int down[2];
  int up[2];
  if (pipe2(down, O_CLOEXEC) != 0) {
    refuseToStart();
  }
  if (pipe2(up, O_CLOEXEC) != 0) {
    close(down[0]);
    close(down[1]);
    refuseToStart();
  }
  const std::vector<char*> arguments = argumentPointers(command_);
  process_ = fork();
  if (process_ == 0) {
    becomeWorker(arguments.data(), down[0], up[1]);
  }
  close(down[0]);
  close(up[1]);
  toProcess_ = down[1];
  fromProcess_ = up[0];
  if (process_ < 0) {
    stop();
    refuseToStart();
  }
}

void Worker::stop() {
  for (int* const end : {&toProcess_, &fromProcess_}) {
    if (*end >= 0) {
      close(*end);
      *end = -1;
    }
  }
  while (process_ > 0 && waitpid(process_, &endStatus_, 0) < 0 && errno == EINTR) {
  }
  process_ = -1;
}

/// A path ends with a NUL byte, which none can hold.
bool Worker::ask(const std::string& path) const {
  std::string_view left(path.c_str(), path.size() + 1);
  while (!left.empty()) {
    const ssize_t put = write(toProcess_, left.data(), left.size());
    if (put > 0) {
      left.remove_prefix(static_cast<std::size_t>(put));
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

bool Worker::answer(std::string& line) const {
  char piece[4096];
  for (;;) {
    const ssize_t got = read(fromProcess_, piece, sizeof piece);
    if (got > 0) {
      line.append(piece, static_cast<std::size_t>(got));
      if (line.back() == '\n') {
        return true;
      }
    } else if (got == 0 || errno != EINTR) {
      return false;
    }
  }
}

EntryResult Worker::run(const Entry& entry) {
  if (process_ < 0) {
    start();
  }
  EntryResult result;
  std::string line;
  if (ask(entry.path) && answer(line)) {
    result = fromJson(nlohmann::json::parse(line));
  } else {
    stop();
    if (!WIFSIGNALED(endStatus_)) {
      throw ToolError(ToolStatus::cannotWrite,
                      entry.path + ": the process that ran it ended by itself");
    }
    result.status = "crashed";
    result.message = signalText(WTERMSIG(endStatus_));
  }
  result.entry = entry;
  return result;
}
