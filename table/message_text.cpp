#include "table/message_text.h"

#include <algorithm>
#include <cstdint>

namespace {

struct Character {
  std::uint32_t code;
  std::size_t size; ///< bytes; 1 for a byte that begins no UTF-8 sequence, its own code
};

std::uint32_t byteAt(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]);
}

/// The UTF-8 sequence at the start of a text. Overlong and cut ones are single bytes.
Character firstCharacter(std::string_view text) {
  constexpr std::uint32_t smallest[] = {0, 0x80, 0x800, 0x10000};
  const std::uint32_t first = byteAt(text, 0);
  const std::size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC0 ? 1 : 0;
  if (more == 0 || first >= 0xF8 || text.size() <= more) {
    return {first, 1};
  }
  std::uint32_t code = first & (0x3FU >> more);
  for (std::size_t i = 1; i <= more; ++i) {
    if ((byteAt(text, i) & 0xC0U) != 0x80) {
      return {first, 1};
    }
    code = code << 6 | (byteAt(text, i) & 0x3FU);
  }
  return code < smallest[more] ? Character{first, 1} : Character{code, more + 1};
}

bool isObeyed(const Character& c) {
  struct Range {
    std::uint32_t first;
    std::uint32_t last;
  };
  constexpr Range obeyed[] = {{0, 8}, {10, 31}, {0x7F, 0x9F}, {0x2028, 0x202E}, {0x2066, 0x2069}};
  return std::any_of(std::begin(obeyed), std::end(obeyed), [&c](const Range& range) {
    return c.code >= range.first && c.code <= range.last;
  });
}

} // namespace

std::string messageText(std::string_view text) {
  constexpr char digits[] = "0123456789abcdef";
  std::string shown;
  while (!text.empty()) {
    const Character c = firstCharacter(text);
    for (std::size_t i = 0; i < c.size; ++i) {
      if (isObeyed(c)) {
        shown += "\\x";
        shown += digits[byteAt(text, i) >> 4];
        shown += digits[byteAt(text, i) & 0xFU];
      } else {
        shown += text[i];
      }
    }
    text.remove_prefix(c.size);
  }
  return shown;
}
