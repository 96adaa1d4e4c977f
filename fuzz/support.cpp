#include "fuzz/support.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "table/run_end.h"

namespace fuzzing {

std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size}; // NOLINT(*-reinterpret-cast)
}

const std::uint8_t* bytesOf(std::string_view text) {
  return reinterpret_cast<const std::uint8_t*>(text.data()); // NOLINT(*-reinterpret-cast)
}

void require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
  }
}

Outcome run(const std::function<void()>& code) {
  Outcome outcome;
  try {
    code();
  } catch (const RunEnd& ended) {
    outcome = {End::refused, ended.status(), ended.message()};
  } catch (const std::out_of_range&) {
    outcome.end = End::outOfRange;
  }
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
