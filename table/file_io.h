#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "table/text_buffer.h"

/// A whole file in memory.
struct FileText {
  std::unique_ptr<char[]> bytes;
  std::size_t size = 0;

  std::string_view view() const { return {bytes.get(), size}; }
};

/// Reads a regular file, a pipe or a device to its end.
///
/// \param text  out: the bytes; empty for a directory and from the first read error on
/// \return false when the file cannot be opened
bool readWholeFile(const std::string& path, FileText& text);

/// Takes the next line off `rest`, without its newline. A last line without a newline counts.
/// \return false when nothing is left
bool takeLine(std::string_view& rest, std::string_view& line);

/// A file being written: bytes are gathered and handed to the system in large pieces.
class OutputFile {
 public:
  /// Creates or truncates the file.
  explicit OutputFile(const std::string& path);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// False once opening or any write has failed.
  bool good() const { return good_; }

  /// The gathered text, to append to; call `flushIfLarge` between appends.
  TextBuffer& buffer() { return buffer_; }
  void flushIfLarge() {
    if (buffer_.size() >= flushSize) {
      flush();
    }
  }

  /// Writes what is left and closes. \return true when every byte reached the system
  bool close();

 private:
  static constexpr std::size_t flushSize = std::size_t{64} * 1024;

  void flush();

  int descriptor_;
  bool good_;
  TextBuffer buffer_;
};
