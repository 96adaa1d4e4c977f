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

/// The bytes of a fuzzer as text, and a text as its bytes.
std::string_view textOf(const std::uint8_t* data, std::size_t size);
const std::uint8_t* bytesOf(std::string_view text);

/// Ends the process, with `what` on the real standard error, unless `holds`.
void require(bool holds, const char* what);

/// How the tested code came to its end.
enum class End {
  returned,
  refused,   ///< as a `RunEnd`
  outOfRange ///< std::out_of_range, the one exception that input may raise
};

struct Outcome {
  End end = End::returned;
  int status = 0;       ///< of the `RunEnd`
  std::string messages; ///< its message
};

/// Runs the code and catches its end. Any other exception passes.
Outcome run(const std::function<void()>& code);

/// Whether the messages hold nothing that a terminal would obey: no control byte but the line
/// ends and tabs of the program, and no byte of a C1 control in UTF-8.
bool plainMessages(std::string_view messages);

/// The file's lines as the readers see them: without newlines, a last one without newline too.
std::vector<std::string> linesOf(std::string_view text);

} // namespace fuzzing
