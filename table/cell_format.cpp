#include "table/cell_format.h"

#include <algorithm>

#include "table/gdb.h"
#include "table/number.h"
#include "table/text_sink.h"

namespace {

constexpr int largestNumber = 9999;

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

/// Whether printf prints the text itself, but for zeros at its end, with so many decimals: a plain
/// decimal such as -12.345 that has no more of them, and not more digits with the zeros than
/// survive the way through a double.
bool printsAsItStands(std::string_view text, std::size_t precision, std::size_t& decimals) {
  constexpr std::size_t exactDigits = 15;
  const std::string_view digits = text.substr(text.substr(0, 1) == "-" ? 1 : 0);
  const std::size_t point = digits.find('.');
  if (point == std::string_view::npos || point == 0 || (point > 1 && digits[0] == '0')) {
    return false;
  }
  for (std::size_t at = 0; at < digits.size(); ++at) {
    if (at != point && !GDB::isDigit(digits[at])) {
      return false;
    }
  }
  decimals = digits.size() - point - 1;
  return decimals > 0 && decimals <= precision && point + precision <= exactDigits;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
/// `format` is one checked conversion for a value of this type.
template <class Value>
std::string printedValue(const std::string& format, Value value) {
  return formatted(format.c_str(), value);
}
#pragma GCC diagnostic pop

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
  readFlags();
  blank_ = before_ + std::string(width_, ' ') + after_;
}

void CellFormat::readFlags() {
  std::size_t at = 1;
  left_ = printf_[at] == '-';
  at += left_ ? 1 : 0;
  const bool zeroFlag = printf_[at] == '0';
  width_ = static_cast<std::size_t>(std::max(takeNumber(printf_, at), 0));
  if (printf_[at] == '.') {
    ++at;
    precision_ = std::max(takeNumber(printf_, at), 0);
  }
  plain_ = !zeroFlag && at + 1 == printf_.size() && (kind_ != Kind::integer || precision_ < 0);
}

void CellFormat::append(std::string& out, std::string_view cell) const {
  if (kind_ == Kind::none) {
    return;
  }
  if (kind_ == Kind::text) {
    appendText(out, cell);
  } else {
    appendNumber(out, cell);
  }
}

void CellFormat::appendText(std::string& out, std::string_view cell) const {
  // As in printf, a text ends at its first NUL byte.
  const std::string_view text = cell.substr(0, cell.find('\0'));
  if (plain_) {
    appendPadded(out, precision_ < 0 ? text : text.substr(0, static_cast<std::size_t>(precision_)));
  } else {
    out += before_ + printedValue(printf_, std::string(text).c_str()) + after_;
  }
}

void CellFormat::appendNumber(std::string& out, std::string_view cell) const {
  if (kind_ == Kind::integer) {
    const int value = parseInt(cell);
    if (plain_) {
      IntText text;
      appendPadded(out, intText(value, text));
    } else {
      out += before_ + printedValue(printf_, value) + after_;
    }
    return;
  }
  if (appendAsItStands(out, cell)) {
    return;
  }
  const double value = parseDouble(cell);
  FixedText text;
  const std::string_view fixed =
      plain_ && precision_ >= 0 ? fixedText(value, precision_, text) : std::string_view();
  if (fixed.empty()) {
    out += before_ + printedValue(printf_, value) + after_;
  } else {
    appendPadded(out, fixed);
  }
}

/// Most cells of a shift table: to read and print their numbers would take twice as long.
bool CellFormat::appendAsItStands(std::string& out, std::string_view cell) const {
  const std::size_t precision = static_cast<std::size_t>(std::max(precision_, 0));
  std::size_t decimals = 0;
  if (!plain_ || !printsAsItStands(cell, precision, decimals)) {
    return false;
  }
  FixedText text;
  char* const end = text.data() + cell.copy(text.data(), text.size());
  std::fill_n(end, precision - decimals, '0');
  appendPadded(out, {text.data(), cell.size() + precision - decimals});
  return true;
}

void CellFormat::appendPadded(std::string& out, std::string_view text) const {
  if (text.size() > width_) {
    out.append(before_).append(text).append(after_);
    return;
  }
  const std::size_t field = out.size() + before_.size();
  out += blank_;
  text.copy(&out[left_ ? field : field + width_ - text.size()], text.size());
}
