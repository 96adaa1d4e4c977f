#include "table/file_io.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Room for a regular file and one byte more, so that its end is seen without growing.
std::size_t expectedSize(int descriptor) {
  constexpr std::size_t unknown = std::size_t{16} * 1024;
  struct stat status {};
  const bool known = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  return known && status.st_size > 0 ? static_cast<std::size_t>(status.st_size) + 1 : unknown;
}

} // namespace

std::optional<std::string> readWholeFile(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) {
    return std::nullopt;
  }
  std::string text(expectedSize(descriptor), '\0');
  std::size_t size = 0;
  for (;;) {
    if (size == text.size()) {
      text.resize(2 * size);
    }
    const ssize_t got = read(descriptor, text.data() + size, text.size() - size);
    if (got > 0) {
      size += static_cast<std::size_t>(got);
    } else if (got == 0 || errno != EINTR) {
      break;
    }
  }
  ::close(descriptor);
  text.resize(size);
  return text;
}

bool takeLine(std::string_view& rest, std::string_view& line) {
  if (rest.empty()) {
    return false;
  }
  const std::size_t end = rest.find('\n');
  line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return true;
}

OutputFile::OutputFile(const std::string& path)
    : descriptor_(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)),
      good_(descriptor_ >= 0) {}

OutputFile::~OutputFile() {
  close();
}

bool OutputFile::close() {
  if (descriptor_ >= 0) {
    flush();
    good_ = ::close(descriptor_) == 0 && good_;
    descriptor_ = -1;
  }
  return good_;
}

void OutputFile::flush() {
  std::string_view left = buffer_;
  while (good_ && !left.empty()) {
    const ssize_t put = write(descriptor_, left.data(), left.size());
    if (put >= 0) {
      left.remove_prefix(static_cast<std::size_t>(put));
    } else if (errno != EINTR) {
      good_ = false;
    }
  }
  buffer_.clear();
}
