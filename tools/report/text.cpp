#include "tools/report/text.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <map>

namespace {

constexpr char replacement[] = "\xEF\xBF\xBD";
constexpr char minus[] = "\xE2\x88\x92";

/// Continuation bytes that a lead byte asks for; -1 for a byte that leads nothing.
int continuationBytes(unsigned char lead) {
  if (lead < 0x80) {
    return 0;
  }
  if (lead >= 0xC2 && lead <= 0xDF) {
    return 1;
  }
  if (lead >= 0xE0 && lead <= 0xEF) {
    return 2;
  }
  return lead >= 0xF0 && lead <= 0xF4 ? 3 : -1;
}

/// Whether the second byte of a longer character is one that XML allows: no overlong forms, no
/// surrogates, nothing above U+10FFFF.
bool acceptsSecond(unsigned char lead, unsigned char second) {
  switch (lead) {
  case 0xE0:
    return second >= 0xA0;
  case 0xED:
    return second <= 0x9F;
  case 0xF0:
    return second >= 0x90;
  case 0xF4:
    return second <= 0x8F;
  default:
    return true;
  }
}

/// Length in bytes of the valid character at `at`; 0 when there is none.
std::size_t characterLength(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const int more = continuationBytes(byte(at));
  if (more < 0 || at + static_cast<std::size_t>(more) >= text.size()) {
    return 0;
  }
  const std::size_t length = static_cast<std::size_t>(more) + 1;
  for (std::size_t i = at + 1; i < at + length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) {
      return 0;
    }
  }
  return length == 1 || acceptsSecond(byte(at), byte(at + 1)) ? length : 0;
}

/// Characters that show nothing and change how the text around them is shown: controls of the
/// second set, marks and overrides of direction, line and paragraph separators, the byte-order
/// mark.
bool isInvisible(std::string_view character) {
  if (character.size() == 2) {
    return (character[0] == '\xC2' && static_cast<unsigned char>(character[1]) < 0xA0) ||
           character == "\xD8\x9C";
  }
  const std::string_view start = character.substr(0, 2);
  if (character.size() != 3 || (start != "\xE2\x80" && start != "\xE2\x81")) {
    return character == "\xEF\xBB\xBF";
  }
  const unsigned char last = static_cast<unsigned char>(character[2]);
  return start == "\xE2\x80" ? (last >= 0x8B && last <= 0x8F) || (last >= 0xA8 && last <= 0xAE)
                             : last >= 0xA0 && last <= 0xAF;
}

const char* entityFor(char c) {
  switch (c) {
  case '&':
    return "&amp;";
  case '<':
    return "&lt;";
  case '>':
    return "&gt;";
  case '"':
    return "&quot;";
  case '\'':
    return "&#39;";
  default:
    return nullptr;
  }
}

/// Decimal digits raised, as in powers of ten.
std::string raised(int number) {
  static const char* const digits[] = {"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
  std::string text;
  for (const char c : std::to_string(number)) {
    text += digits[c - '0'];
  }
  return text;
}

} // namespace

std::string escaped(std::string_view text) {
  std::string safe;
  safe.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = characterLength(text, at);
    const bool control = length == 1 && static_cast<unsigned char>(text[at]) < 0x20 &&
                         text[at] != '\t' && text[at] != '\n';
    if (length == 0 || control || text[at] == '\x7f' || isInvisible(text.substr(at, length))) {
      safe += replacement;
      at += std::max<std::size_t>(length, 1);
      continue;
    }
    if (const char* const entity = length == 1 ? entityFor(text[at]) : nullptr) {
      safe += entity;
    } else {
      safe += text.substr(at, length);
    }
    at += length;
  }
  return safe;
}

std::string plainDecimal(double value, int decimals) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
  std::string text(buffer);
  if (text.find_first_of("123456789") == std::string::npos && text[0] == '-') {
    text.erase(0, 1);
  }
  return text;
}

std::string decimal(double value, int decimals) {
  if (!std::isfinite(value)) {
    return "n/a";
  }
  const std::string text = plainDecimal(value, decimals);
  return text[0] == '-' ? minus + text.substr(1) : text;
}

std::string signedDecimal(double value, int decimals) {
  const std::string text = decimal(value, decimals);
  const bool positive = value > 0 && text.find_first_of("123456789") != std::string::npos;
  return (positive ? "+" : "") + text;
}

std::string printedText(double value, const std::string& printed) {
  return std::isfinite(value) ? printed : "n/a";
}

std::string oddsText(double logRatio) {
  if (!std::isfinite(logRatio)) {
    return "n/a";
  }
  const double power = std::fabs(logRatio) / std::log(10.0);
  if (power < 1) {
    return decimal(std::pow(10, power), 1) + " to 1";
  }
  if (power < 3) {
    return decimal(std::pow(10, power), 0) + " to 1";
  }
  int exponent = static_cast<int>(std::floor(power));
  double front = std::round(std::pow(10, power - exponent));
  if (front >= 10) {
    front = 1;
    ++exponent;
  }
  return (front > 1 ? decimal(front, 0) + " × " : std::string()) + "10" + raised(exponent) +
         " to 1";
}

std::string residueType(const std::string& oneLetterName) {
  static const std::map<std::string, const char*> types = {
      {"A", "Ala"}, {"C", "Cys"}, {"c", "Cys"}, {"D", "Asp"}, {"E", "Glu"}, {"F", "Phe"},
      {"G", "Gly"}, {"H", "His"}, {"h", "His"}, {"I", "Ile"}, {"K", "Lys"}, {"L", "Leu"},
      {"M", "Met"}, {"N", "Asn"}, {"P", "Pro"}, {"p", "Pro"}, {"Q", "Gln"}, {"R", "Arg"},
      {"S", "Ser"}, {"T", "Thr"}, {"V", "Val"}, {"W", "Trp"}, {"Y", "Tyr"}};
  const auto found = types.find(oneLetterName);
  return found == types.end() ? "Xaa" : found->second;
}

std::string shortened(const std::string& text, std::size_t longest) {
  std::size_t count = 0;
  std::size_t cut = 0;
  for (std::size_t at = 0; at < text.size(); ++count) {
    cut = count + 1 == longest ? at : cut;
    at += std::max<std::size_t>(characterLength(text, at), 1);
  }
  return count <= longest ? text : text.substr(0, cut) + "…";
}

std::string atomLabel(const std::string& atom) {
  return atom == "C" ? "C′" : atom;
}

std::string counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string joined(const std::vector<std::string>& items) {
  std::string text;
  for (std::size_t i = 0; i < items.size(); ++i) {
    text += i == 0 ? "" : i + 1 == items.size() ? " and " : ", ";
    text += items[i];
  }
  return text;
}

bool isPath(const std::string& text) {
  for (const char* start : {"/", "./", "../", "~/"}) {
    if (text.rfind(start, 0) == 0) {
      return true;
    }
  }
  const std::string name = lastPart(text);
  const std::size_t point = name.rfind('.');
  const std::string ending = point == std::string::npos ? "" : name.substr(point + 1);
  const auto is = [](int (*kind)(int)) {
    return [kind](char c) { return kind(static_cast<unsigned char>(c)) != 0; };
  };
  return std::any_of(ending.begin(), ending.end(), is(std::isalpha)) &&
         std::all_of(ending.begin(), ending.end(), is(std::isalnum));
}

std::string lastPart(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos || slash + 1 == path.size() ? path : path.substr(slash + 1);
}
