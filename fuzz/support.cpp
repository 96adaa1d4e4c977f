#include "fuzz/support.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

#include "table/run_end.h"

namespace fuzzing {

namespace {

struct RunEnded {
  int status;
};

/// Sends the two standard streams into a memory file, and back again when it goes.
class CapturedStreams {
 public:
  explicit CapturedStreams(const MemoryFile& into) : into_(into) {
    into_.write("");
    std::FILE* const file = std::fopen(into_.path().c_str(), "a");
    require(file != nullptr, "the memory file of the messages opens");
    redirect(fileno(file), fileno(file));
    std::fclose(file);
  }
  ~CapturedStreams() { restore(); }
  CapturedStreams(const CapturedStreams&) = delete;
  CapturedStreams& operator=(const CapturedStreams&) = delete;

  std::string take() {
    restore();
    return into_.read();
  }

 private:
  void redirect(int out, int err) {
    std::fflush(stdout);
    savedOut_ = dup(STDOUT_FILENO);
    savedErr_ = dup(STDERR_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
  }
  void restore() {
    if (savedErr_ < 0) {
      return;
    }
    std::fflush(stdout);
    dup2(savedOut_, STDOUT_FILENO);
    dup2(savedErr_, STDERR_FILENO);
    close(savedOut_);
    close(savedErr_);
    savedErr_ = -1;
  }

  const MemoryFile& into_;
  int savedOut_ = -1;
  int savedErr_ = -1;
};

} // namespace

void require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
  }
}

MemoryFile::MemoryFile()
    : descriptor_(memfd_create("citrans-fuzz", MFD_CLOEXEC)),
      path_("/proc/self/fd/" + std::to_string(descriptor_)) {
  require(descriptor_ >= 0, "a memory file can be made");
}

MemoryFile::~MemoryFile() {
  close(descriptor_);
}

void MemoryFile::write(std::string_view text) const {
  require(ftruncate(descriptor_, 0) == 0, "the memory file can be emptied");
  const ssize_t put = pwrite(descriptor_, text.data(), text.size(), 0);
  require(put == static_cast<ssize_t>(text.size()), "the memory file holds the text");
}

std::string MemoryFile::read() const {
  const off_t size = lseek(descriptor_, 0, SEEK_END);
  std::string text(static_cast<std::size_t>(size), '\0');
  require(pread(descriptor_, text.data(), text.size(), 0) == size, "the memory file can be read");
  return text;
}

Outcome run(const std::function<void()>& code) {
  static const MemoryFile messages;
  setRunEndHandler([](int status) { throw RunEnded{status}; });
  Outcome outcome;
  CapturedStreams streams(messages);
  try {
    code();
  } catch (const RunEnded& ended) {
    outcome.end = End::refused;
    outcome.status = ended.status;
  } catch (const std::out_of_range&) {
    outcome.end = End::outOfRange;
  }
  outcome.messages = streams.take();
  return outcome;
}

bool plainMessages(std::string_view messages) {
  for (std::size_t at = 0; at < messages.size(); ++at) {
    const unsigned char c = static_cast<unsigned char>(messages[at]);
    const bool ours = c == '\n' || c == '\t';
    const unsigned char next =
        at + 1 < messages.size() ? static_cast<unsigned char>(messages[at + 1]) : 0;
    const bool c1 = c == 0xC2 && next >= 0x80 && next < 0xA0;
    const bool quotedReturn = c == '\r' && next == '\'';
    if ((c < 0x20 && !ours && !quotedReturn) || c == 0x7F || c1) {
      return false;
    }
  }
  return true;
}

std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

} // namespace fuzzing
