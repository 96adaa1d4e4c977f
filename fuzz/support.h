#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// What the fuzz targets share. A target is one `LLVMFuzzerTestOneInput` that aborts, through
/// `require`, when what it tests does not hold; libFuzzer or replay.cpp provides `main`.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzzing {

/// Ends the process, with `what` on the real standard error, unless `holds`.
void require(bool holds, const char* what);

/// A file without a name in any directory, in memory, that programs open by `path()`.
class MemoryFile {
 public:
  MemoryFile();
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  const std::string& path() const { return path_; }
  void write(std::string_view text) const;
  std::string read() const;

 private:
  int descriptor_;
  std::string path_;
};

/// How the tested code came to its end.
enum class End {
  returned,
  refused,   ///< through `endRun`
  outOfRange ///< std::out_of_range, the one exception that input may raise
};

struct Outcome {
  End end = End::returned;
  int status = 0;       ///< of `endRun`
  std::string messages; ///< what went to standard output and standard error
};

/// Runs the code with `endRun` caught and both streams captured. Any other exception passes.
Outcome run(const std::function<void()>& code);

/// Whether the messages hold nothing that a terminal would obey: no control byte but the line
/// ends and tabs of the program, and no byte of a C1 control in UTF-8.
bool plainMessages(std::string_view messages);

/// The file's lines as the readers see them: without newlines, a last one without newline too.
std::vector<std::string> linesOf(std::string_view text);

} // namespace fuzzing
