#include "table/file_io.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t firstBufferSize = std::size_t{16} * 1024;

/// Room for a regular file and one byte more, so that its end is seen without growing.
std::size_t expectedSize(int descriptor) {
  struct stat status {};
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0) {
    return static_cast<std::size_t>(status.st_size) + 1;
  }
  return firstBufferSize;
}

void grow(FileText& text, std::size_t& capacity) {
  const std::size_t larger = capacity * 2;
  std::unique_ptr<char[]> bytes(new char[larger]);
  std::memcpy(bytes.get(), text.bytes.get(), text.size);
  text.bytes = std::move(bytes);
  capacity = larger;
}

} // namespace

bool readWholeFile(const std::string& path, FileText& text) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) {
    return false;
  }
  std::size_t capacity = expectedSize(descriptor);
  text.bytes.reset(new char[capacity]);
  text.size = 0;
  for (;;) {
    if (text.size == capacity) {
      grow(text, capacity);
    }
    const ssize_t got = read(descriptor, text.bytes.get() + text.size, capacity - text.size);
    if (got > 0) {
      text.size += static_cast<std::size_t>(got);
    } else if (got == 0 || errno != EINTR) {
      break;
    }
  }
  ::close(descriptor);
  return true;
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
  const char* next = buffer_.view().data();
  std::size_t left = buffer_.size();
  while (good_ && left > 0) {
    const ssize_t put = write(descriptor_, next, left);
    if (put >= 0) {
      next += put;
      left -= static_cast<std::size_t>(put);
    } else if (errno != EINTR) {
      good_ = false;
    }
  }
  buffer_.cut(0);
}
