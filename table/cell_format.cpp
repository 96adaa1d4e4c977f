#include "table/cell_format.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>

#include "table/gdb.h"
#include "table/number.h"

namespace {

constexpr int largestNumber = 9999;
/// A decimal of so many digits survives the way through a double and back unchanged.
constexpr std::size_t maxExactDigits = 15;

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
/// `format` is one checked conversion for a value of this type.
template <class Value>
void appendPrintf(TextBuffer& out, const char* format, Value value) {
  const int size = std::snprintf(nullptr, 0, format, value);
  if (size > 0) {
    // The closing NUL falls into the spare bytes.
    const std::size_t room = static_cast<std::size_t>(size) + 1;
    std::snprintf(out.extend(room - 1), room, format, value);
  }
}
#pragma GCC diagnostic pop

/// Takes the digits at `at`; -1 when there are none.
int takeNumber(const std::string& text, std::size_t& at) {
  int number = -1;
  for (; at < text.size() && GDB::isDigit(text[at]); ++at) {
    number = std::min(std::max(number, 0) * 10 + (text[at] - '0'), largestNumber);
  }
  return number;
}

/// A copy with every run of digits cut to `largestNumber`; leading zeros stay, they are a flag.
std::string withShortNumbers(const std::string& conversion) {
  std::string cut;
  for (std::size_t at = 0; at < conversion.size();) {
    if (conversion[at] == '0' || !GDB::isDigit(conversion[at])) {
      cut += conversion[at++];
    } else {
      cut += std::to_string(takeNumber(conversion, at));
    }
  }
  return cut;
}

/// A plain decimal such as -12.345, taken apart.
struct Decimal {
  bool negative = false;
  std::string_view whole;
  std::string_view fraction;
};

bool readDecimal(std::string_view text, Decimal& decimal) {
  decimal.negative = !text.empty() && text.front() == '-';
  text.remove_prefix(decimal.negative ? 1 : 0);
  std::size_t point = text.size();
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '.' && point == text.size()) {
      point = at;
    } else if (!GDB::isDigit(text[at])) {
      return false;
    }
  }
  decimal.whole = text.substr(0, point);
  decimal.fraction = text.substr(std::min(point + 1, text.size()));
  const bool hasDigits = !decimal.whole.empty() || !decimal.fraction.empty();
  while (!decimal.whole.empty() && decimal.whole.front() == '0') {
    decimal.whole.remove_prefix(1);
  }
  return hasDigits;
}

/// Which way printf rounds a fraction cut after `precision` digits. A decimal of at most
/// `maxExactDigits` digits lies on the same side of the half-way point as its double; on that point
/// itself it need not, so a tie is left to printf.
enum class Rounding { none, down, up, unknown };

Rounding roundingOf(std::string_view fraction, std::size_t precision) {
  if (fraction.size() <= precision) {
    return Rounding::none;
  }
  const std::string_view rest = fraction.substr(precision);
  if (rest.front() != '5') {
    return rest.front() > '5' ? Rounding::up : Rounding::down;
  }
  return rest.find_first_not_of('0', 1) == std::string_view::npos ? Rounding::unknown
                                                                  : Rounding::up;
}

/// Adds 1 in the last place of a decimal in text form; false when it would need another digit.
bool increase(char* text, std::size_t size) {
  for (std::size_t at = size; at-- > 0;) {
    if (text[at] == '.') {
      continue;
    }
    if (text[at] != '9') {
      ++text[at];
      return true;
    }
    text[at] = '0';
  }
  return false;
}

/// The decimal with exactly `precision` digits after the point, as printf would print its double,
/// into `out`, which has room for its digits, a sign, a zero and a point. Returns the size; 0 when
/// that is not certain or takes more digits than a double holds.
std::size_t writeDecimal(const Decimal& decimal, std::size_t precision, char* out) {
  const Rounding rounding = roundingOf(decimal.fraction, precision);
  const std::size_t fraction = std::max(decimal.fraction.size(), precision);
  if (rounding == Rounding::unknown || decimal.whole.size() + fraction > maxExactDigits) {
    return 0;
  }
  const char* const start = out;
  if (decimal.negative) {
    *out++ = '-';
  }
  char* const digits = out;
  if (decimal.whole.empty()) {
    *out++ = '0';
  }
  out += decimal.whole.copy(out, decimal.whole.size());
  if (precision > 0) {
    *out++ = '.';
    const std::size_t kept = decimal.fraction.copy(out, precision);
    out = std::fill_n(out + kept, precision - kept, '0');
  }
  if (rounding == Rounding::up && !increase(digits, static_cast<std::size_t>(out - digits))) {
    return 0;
  }
  return static_cast<std::size_t>(out - start);
}

} // namespace

CellFormat::CellFormat(const std::string& piece) {
  if (GDB::contains(piece, 's') == 1) {
    kind_ = Kind::text;
  } else if (GDB::contains(piece, 'd') == 1) {
    kind_ = Kind::integer;
  } else if (GDB::contains(piece, 'f') == 1) {
    kind_ = Kind::fixed;
  } else {
    return;
  }
  const std::size_t start = piece.find('%');
  const std::size_t end = piece.find_last_of("sdf") + 1;
  before_ = piece.substr(0, start);
  after_ = piece.substr(end);
  printf_ = withShortNumbers(piece.substr(start, end - start));
  readFlags(printf_);
}

void CellFormat::readFlags(const std::string& conversion) {
  std::size_t at = 1;
  left_ = conversion[at] == '-';
  at += left_ ? 1 : 0;
  const bool zeroFlag = conversion[at] == '0';
  width_ = std::max(takeNumber(conversion, at), 0);
  if (conversion[at] == '.') {
    ++at;
    precision_ = std::max(takeNumber(conversion, at), 0);
  }
  plain_ = !zeroFlag && at + 1 == conversion.size();
}

void CellFormat::append(TextBuffer& out, std::string_view cell) const {
  switch (kind_) {
  case Kind::text:
    appendText(out, cell);
    break;
  case Kind::integer:
    appendInteger(out, cell);
    break;
  case Kind::fixed:
    appendFixed(out, cell);
    break;
  case Kind::none:
    break;
  }
}

void CellFormat::appendText(TextBuffer& out, std::string_view cell) const {
  // As in printf, a text ends at its first NUL byte.
  const auto* const end = std::find(cell.begin(), cell.end(), '\0');
  const std::string_view text = cell.substr(0, static_cast<std::size_t>(end - cell.begin()));
  if (plain_) {
    appendPadded(out, precision_ < 0 ? text : text.substr(0, static_cast<std::size_t>(precision_)));
  } else {
    appendPrinted(out, std::string(text).c_str());
  }
}

void CellFormat::appendInteger(TextBuffer& out, std::string_view cell) const {
  const int value = parseInt(cell);
  if (plain_ && precision_ < 0) {
    char digits[16];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, value);
    appendPadded(out, {digits, static_cast<std::size_t>(end.ptr - digits)});
  } else {
    appendPrinted(out, value);
  }
}

void CellFormat::appendFixed(TextBuffer& out, std::string_view cell) const {
  Decimal decimal;
  if (plain_ && precision_ >= 0 && readDecimal(cell, decimal)) {
    char text[maxExactDigits + 4];
    const std::size_t size = writeDecimal(decimal, static_cast<std::size_t>(precision_), text);
    if (size > 0) {
      appendPadded(out, {text, size});
      return;
    }
  }
  appendPrinted(out, parseDouble(cell));
}

template <class Value>
void CellFormat::appendPrinted(TextBuffer& out, Value value) const {
  out.append(before_);
  appendPrintf(out, printf_.c_str(), value);
  out.append(after_);
}

void CellFormat::appendPadded(TextBuffer& out, std::string_view text) const {
  const std::size_t size = std::max(static_cast<std::size_t>(width_), text.size());
  const std::size_t whole = before_.size() + size + after_.size();
  char* const piece = out.extend(whole);
  // A known number of blanks takes no call; what lies behind the piece is written over later.
  std::memset(piece, ' ', TextBuffer::spare);
  if (whole > TextBuffer::spare) {
    std::memset(piece + TextBuffer::spare, ' ', whole - TextBuffer::spare);
  }
  char* const field = piece + before_.size();
  before_.copy(piece, before_.size());
  text.copy(left_ ? field : field + size - text.size(), text.size());
  after_.copy(field + size, after_.size());
}
