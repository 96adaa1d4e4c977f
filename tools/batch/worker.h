#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

#include "tools/batch/entry.h"

/// A process that runs one entry after the other, with the database read once, so that an entry
/// that crashes or hangs is one row and not the end of the batch. Started when first asked, and
/// again when it has died.
class Worker {
 public:
  /// \param command  this program with its settings, and --serve with a scratch folder
  explicit Worker(std::vector<std::string> command) : command_(std::move(command)) {}
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  /// The result of one entry; its status is "crashed" when the process died over it. Throws
  /// ToolError(cannotWrite) when the process cannot be started or ended by itself.
  EntryResult run(const Entry& entry);

 private:
  void start();
  void stop();
  bool ask(const std::string& path) const;
  bool answer(std::string& line) const;

  std::vector<std::string> command_;
  pid_t process_ = -1;
  int toProcess_ = -1;
  int fromProcess_ = -1;
  int endStatus_ = 0; ///< of the last process, as `waitpid` gives it
};
