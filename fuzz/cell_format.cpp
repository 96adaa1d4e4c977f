#include "fuzz/support.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "app/citrans.h"
#include "table/cell_format.h"
#include "table/gdb.h"
#include "table/number.h"

namespace {

using fuzzing::require;

/// Longest width and precision that print as they stand.
constexpr long largestNumber = 9999;

int clampedInt(const std::string& text) {
  const long value = std::strtol(text.c_str(), nullptr, 10);
  return static_cast<int>(std::min<long>(std::max<long>(value, INT_MIN), INT_MAX));
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
template <class Value>
std::string printed(const std::string& format, Value value) {
  const int size = std::snprintf(nullptr, 0, format.c_str(), value);
  std::string text(static_cast<std::size_t>(std::max(size, 0)) + 1, '\0');
  std::snprintf(text.data(), text.size(), format.c_str(), value);
  text.pop_back();
  return text;
}
#pragma GCC diagnostic pop

/// The rules for one conversion, each as it is written down.
bool validConversion(const std::string& piece) {
  const std::string text = GDB::simplifyWhiteSpace(piece);
  const auto count = [&text](char c) { return std::count(text.begin(), text.end(), c); };
  const bool oneStart = count('%') == 1 && text[0] == '%';
  const bool oneLetter = (count('s') == 1 || count('d') == 1 || count('f') == 1);
  const bool known = text.find_first_not_of("%sdf-.0123456789") == std::string::npos;
  return oneStart && oneLetter && known && text.find_first_of("sdf") == text.size() - 1;
}

bool hasLongNumber(const std::string& piece) {
  for (std::size_t at = piece.find_first_of("123456789"); at != std::string::npos;) {
    const std::size_t end = std::min(piece.find_first_not_of("0123456789", at), piece.size());
    if (end - at > 4 || std::atol(piece.c_str() + at) > largestNumber) {
      return true;
    }
    at = piece.find_first_of("123456789", end);
  }
  return false;
}

/// printf of the piece as it stands, or, with a number beyond the limit, only its size bounded.
void requirePrinted(const std::string& piece, const std::string& cell) {
  std::string out = "x";
  CellFormat(piece).append(out, cell);
  if (hasLongNumber(piece)) {
    require(out.size() <= 3 * (largestNumber + piece.size() + cell.size()) + 400, "bounded output");
    return;
  }
  const std::string format = "x" + piece;
  switch (GDB::simplifyWhiteSpace(piece).back()) {
  case 's':
    require(out == printed(format, cell.c_str()), "%s as printf prints it");
    break;
  case 'd':
    require(out == printed(format, clampedInt(cell)), "%d as printf prints it");
    break;
  default:
    require(out == printed(format, std::strtod(cell.c_str(), nullptr)), "%f as printf prints it");
  }
}

void requireNumbers(const std::string& cell) {
  const double expected = std::strtod(cell.c_str(), nullptr);
  const double value = parseDouble(cell);
  // The very bits, those of -0 and nan too. NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
  require(std::memcmp(&value, &expected, sizeof value) == 0, "numbers as strtod reads them");
  require(parseInt(cell) == clampedInt(cell), "integers as strtol reads them, clamped");
  if (cell.size() >= sizeof(float)) {
    float single = 0;
    std::memcpy(&single, cell.data(), sizeof single);
    char text[64];
    require(CITRANS::ftoa(single, text, 'g', 6) == printed("%.6g", static_cast<double>(single)),
            "six digits as printf prints them");
  }
}

/// All lines joined as one FORMAT, for one column more than there are blanks in it.
void requireFormatParsed(const std::string& text, int conversions) {
  GDB table;
  std::string names;
  for (int i = 0; i < conversions; ++i) {
    names += "V" + std::to_string(i) + " ";
  }
  table.VARS_str_parser(names);
  const fuzzing::Outcome outcome = fuzzing::run([&] { table.FORMAT_str_parser(text); });
  require(fuzzing::plainMessages(outcome.messages), "plain messages");
  if (outcome.end == fuzzing::End::returned && conversions > 0) {
    require(table.isVarString(0) + table.isVarInt(0) + table.isVarFloat(0) == 1, "one kind");
  } else {
    require(conversions == 0 || outcome.messages.find("\tBad format syntax '%") == 0, "message");
  }
}

} // namespace

/// First line a column's conversion, the rest a cell: printed as the C library prints it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzzing::textOf(data, size));
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string piece = text.substr(0, end);
  const std::string cell = text.substr(std::min(end + 1, text.size()));
  require(GDB::checkFormat(piece) == validConversion(piece), "valid conversions");
  // A stored piece begins with its "%" and holds no NUL.
  if (GDB::checkFormat(piece) && piece[0] == '%') {
    requirePrinted(piece, cell);
  }
  requireNumbers(cell);
  requireFormatParsed(piece, GDB::contains(piece, '%'));
  return 0;
}
