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

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
/// `format` is one checked conversion for a value of this type.
template <class Value>
std::string printedValue(const std::string& format, Value value) {
  return printed(format.c_str(), value);
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
  out += before_;
  if (kind_ == Kind::text) {
    appendText(out, cell);
  } else {
    appendNumber(out, cell);
  }
  out += after_;
}

void CellFormat::appendText(std::string& out, std::string_view cell) const {
  // As in printf, a text ends at its first NUL byte.
  const std::string_view text = cell.substr(0, cell.find('\0'));
  if (plain_) {
    appendPadded(out, precision_ < 0 ? text : text.substr(0, static_cast<std::size_t>(precision_)));
  } else {
    out += printedValue(printf_, std::string(text).c_str());
  }
}

void CellFormat::appendNumber(std::string& out, std::string_view cell) const {
  if (kind_ == Kind::integer) {
    const int value = parseInt(cell);
    if (plain_) {
      IntText text;
      appendPadded(out, intText(value, text));
    } else {
      out += printedValue(printf_, value);
    }
    return;
  }
  const double value = parseDouble(cell);
  FixedText text;
  const std::string_view fixed =
      plain_ && precision_ >= 0 ? fixedText(value, precision_, text) : std::string_view();
  if (fixed.empty()) {
    out += printedValue(printf_, value);
  } else {
    appendPadded(out, fixed);
  }
}

void CellFormat::appendPadded(std::string& out, std::string_view text) const {
  const std::size_t blanks = width_ > text.size() ? width_ - text.size() : 0;
  out.append(left_ ? 0 : blanks, ' ').append(text).append(left_ ? blanks : 0, ' ');
}
