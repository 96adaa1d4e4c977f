#include "tools/batch/worker_pool.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <mutex>
#include <thread>

#include "table/gdb.h"
#include "tools/batch/worker.h"
#include "tools/common/tool.h"

namespace {

volatile std::sig_atomic_t stopSignal = 0;

void noteSignal(int signal) {
  stopSignal = signal;
}

/// A folder of its own below TMPDIR, removed with all it holds.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::error_code error;
    path_ = (std::filesystem::temp_directory_path(error) / "citrans-batch.XXXXXX").string();
    // The program's command line takes no path with white space, nor one with " -".
    if (error || path_.find_first_of(" \t\n\v\f\r") != std::string::npos ||
        mkdtemp(path_.data()) == nullptr) {
      throw ToolError(ToolStatus::cannotWrite, path_ + ": cannot make a scratch folder");
    }
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

/// What the workers of one batch share.
struct Shared {
  const std::vector<Entry>& entries;
  const PoolSettings& pool;
  Journal& journal;
  Progress& progress;
  std::vector<EntryResult>& results;
  std::atomic<std::size_t> next{0};
  std::atomic<bool> stop{false};
  std::mutex mutex; // guards journal, progress and error
  std::exception_ptr error;
};

void finishEntry(Shared& shared, std::size_t at, const EntryResult& result, bool isNew) {
  const std::lock_guard<std::mutex> lock(shared.mutex);
  if (isNew) {
    shared.journal.add(result);
  }
  shared.results[at] = result;
  const bool failed = result.status != "ok";
  shared.progress.step(failed);
  if (failed && shared.pool.failFast) {
    shared.stop = true;
  }
}

void runEntries(Shared& shared) {
  const ScratchFolder scratch;
  std::vector<std::string> command = shared.pool.command;
  command.push_back(scratch.path());
  Worker worker(command);
  while (!shared.stop && stopSignal == 0) {
    const std::size_t at = shared.next++;
    if (at >= shared.entries.size()) {
      return;
    }
    const Entry& entry = shared.entries[at];
    const EntryResult* const known = shared.journal.find(entry);
    const EntryResult result = known != nullptr ? *known : worker.run(entry);
    // A signal from the terminal reaches the children too: what they did then is no result.
    if (known == nullptr && stopSignal != 0) {
      return;
    }
    finishEntry(shared, at, result, known == nullptr);
  }
}

void work(Shared& shared) {
  try {
    runEntries(shared);
  } catch (...) {
    const std::lock_guard<std::mutex> lock(shared.mutex);
    shared.error = std::current_exception();
    shared.stop = true;
  }
}

} // namespace

bool runAll(const std::vector<Entry>& entries, const PoolSettings& pool, Journal& journal,
            Progress& progress, std::vector<EntryResult>& results) {
  std::signal(SIGINT, noteSignal);
  std::signal(SIGTERM, noteSignal);
  std::signal(SIGPIPE, SIG_IGN); // a worker that died is seen by its result
  results.assign(entries.size(), EntryResult());
  Shared shared{entries, pool, journal, progress, results, {}, {}, {}, {}};
  std::vector<std::thread> workers;
  for (unsigned i = 0; i < pool.workers; ++i) {
    workers.emplace_back(work, std::ref(shared));
  }
  for (std::thread& worker : workers) {
    worker.join();
  }
  if (shared.error) {
    std::rethrow_exception(shared.error);
  }
  progress.finish();
  return !shared.stop && stopSignal == 0;
}

int stoppedBySignal() {
  return stopSignal;
}
