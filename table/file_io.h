#pragma once

#include <optional>
#include <string>
#include <string_view>

/// All bytes of a regular file, a pipe or a device; nothing when it cannot be opened. Empty for a
/// directory; what was read before the first read error otherwise.
std::optional<std::string> readWholeFile(const std::string& path);

/// Takes the next line off `rest`, without its newline. A last line without a newline counts.
/// \return false when nothing is left
bool takeLine(std::string_view& rest, std::string_view& line);

/// A file being written: text is gathered and handed to the system in large pieces.
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
  std::string& buffer() { return buffer_; }
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
  std::string buffer_;
};
