// Number conversions have fast paths; the C library is what they must agree with.
#include "table/number.h"

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>

#include "app/citrans.h"
#include "table/cell_format.h"

namespace {

std::uint64_t bitsOf(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

/// Texts of up to 20 characters that look like numbers, or nearly.
std::string randomNumberText(std::mt19937& random) {
  static constexpr char letters[] = "0123456789012345678901234567890123456789..--+ eExXinfa\t";
  std::string text(random() % 21, ' ');
  for (char& c : text) {
    c = letters[random() % (sizeof letters - 1)];
  }
  // Half of them plain decimals, as tables hold.
  return random() % 2 != 0 ? text
                           : std::to_string(static_cast<int>(random()) / 1000) + "." +
                                 std::to_string(random() % 10000);
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
template <class Value>
std::string printed(const std::string& format, Value value) {
  char text[512];
  std::snprintf(text, sizeof text, format.c_str(), value);
  return text;
}
#pragma GCC diagnostic pop

std::string cellText(const std::string& piece, const std::string& cell) {
  std::string text;
  CellFormat(piece).append(text, cell);
  return text;
}

std::string sixDigits(float value) {
  char text[64];
  return CITRANS::ftoa(value, text, 'g', 6);
}

} // namespace

TEST(Number, IntegersFollowStrtolAndClampTo32Bits) {
  const struct {
    const char* text;
    int value;
  } rows[] = {{"", 0},
              {"12", 12},
              {" \t+7x9", 7},
              {"-5.9", -5},
              {"- 5", 0},
              {"--5", 0},
              {"2a", 2},
              {"x2", 0},
              {"0x10", 0},
              {"2147483647", INT_MAX},
              {"2147483648", INT_MAX},
              {"-2147483648", INT_MIN},
              {"-2147483649", INT_MIN},
              {"99999999999999999999999", INT_MAX},
              {"-99999999999999999999999", INT_MIN}};
  for (const auto& row : rows) {
    EXPECT_EQ(parseInt(row.text), row.value) << "'" << row.text << "'";
  }
}

TEST(Number, DecimalsHaveTheVeryBitsOfStrtod) {
  std::mt19937 random(1);
  std::vector<std::string> texts = {"",      "-",     ".",   "-0",   "5.",  "-.5",
                                    "1e5",   "0x1p3", "inf", "-nan", " 7 ", "999999999999999",
                                    "1e-400"};
  texts.emplace_back("1.00000017881393432617187499"); // rounds to another float without the double
  texts.emplace_back("9007199254740993");             // 2^53 + 1
  for (int i = 0; i < 100000; ++i) {
    texts.push_back(randomNumberText(random));
  }
  for (const std::string& text : texts) {
    double expected = std::strtod(text.c_str(), nullptr);
    if (std::isnan(expected)) { // not every C library keeps its sign
      expected = std::copysign(expected, trimmed(text).front() == '-' ? -1.0 : 1.0);
    }
    ASSERT_EQ(bitsOf(parseDouble(text)), bitsOf(expected)) << "'" << text << "'";
    ASSERT_TRUE(std::isnan(expected) || parseFloat(text) == static_cast<float>(expected)) << text;
  }
}

TEST(Number, StoredNumbersAreThoseOfPrintf) {
  std::mt19937 random(2);
  const float limits[] = {0.0F,
                          -0.0F,
                          1e-4F,
                          9.9999999e-5F,
                          99999.95F,
                          999999.4F,
                          999999.5F,
                          1e6F,
                          0.5F,
                          9999.0F,
                          100000.5F,
                          262144.5F, // ties, to even
                          std::numeric_limits<float>::infinity(),
                          std::numeric_limits<float>::quiet_NaN(),
                          std::numeric_limits<float>::max(),
                          std::numeric_limits<float>::min()};
  std::vector<float> values(std::begin(limits), std::end(limits));
  for (const float value : limits) {
    values.push_back(std::nextafter(value, 0.0F));
    values.push_back(std::nextafter(value, 1e9F));
  }
  for (int i = 0; i < 200000; ++i) {
    const std::uint32_t bits = static_cast<std::uint32_t>(random());
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    values.push_back(value);
    // The sizes that shifts have, many on a tie of the sixth digit or next to one.
    values.push_back(static_cast<float>(static_cast<int>(bits) % 4000000) / 4096.0F);
    values.push_back(static_cast<float>(static_cast<int>(bits) % 2000000) * 0.0005F);
  }
  for (const float value : values) {
    ASSERT_EQ(sixDigits(value), printed("%.6g", static_cast<double>(value)));
  }
}

TEST(Number, FtoaFallsBackToFAndCutsThePrecision) {
  char text[256];
  EXPECT_STREQ(CITRANS::ftoa(-0.5F, text, 'g', 6), "-0.5");
  EXPECT_STREQ(CITRANS::ftoa(1.5F, text, 'x', 2), "1.50");
  EXPECT_STREQ(CITRANS::ftoa(1.5F, text, '\0', -1), "1.500000");
  EXPECT_STREQ(CITRANS::ftoa(1.5F, text, 'E', 1), "1.5E+00");
  EXPECT_EQ(std::string(CITRANS::ftoa(1.0F, text, 'f', 150)), "1." + std::string(99, '0'));
  EXPECT_STREQ(CITRANS::itoa(255, text, 16), "255");
}

TEST(Number, NumberCellsPrintAsPrintfPrintsThem) {
  std::mt19937 random(3);
  const char* const flags[] = {"", "-", "0", "--", "-0", "00"};
  for (int i = 0; i < 50000; ++i) {
    const std::string cell = randomNumberText(random);
    std::string format = std::string("%") + flags[random() % 6];
    format += random() % 3 == 0 ? "" : std::to_string(random() % 25 + 1);
    const std::string fixed =
        format + (random() % 4 == 0 ? "f" : "." + std::to_string(random() % 18) + "f");
    ASSERT_EQ(cellText(fixed + " ", cell), printed(fixed, std::strtod(cell.c_str(), nullptr)) + " ")
        << fixed << " '" << cell << "'";
    ASSERT_EQ(cellText(format + "d", cell), printed(format + "d", parseInt(cell)))
        << format << " '" << cell << "'";
  }
}

TEST(Number, CellsOfAnyWidthAndTextPrint) {
  const std::string longText(300, 'x');
  const struct {
    const char* piece;
    std::string cell;
    std::string text;
  } rows[] = {{"%4s  ", "CA", "  CA  "},
              {"%-4s ", "", "     "},
              {"%.2s", "abc", "ab"},
              {"%4d ", "", "   0 "},
              {"%s", longText, longText},
              {"%4s", std::string("a\0b", 3), "   a"},
              {"%8.3f", "-.5", "  -0.500"},
              {"%9.3f", "x", "    0.000"},
              {"%3.3d", "7", "007"},
              {"", "1", ""},
              {"%99999999999d", "1", std::string(9998, ' ') + "1"}};
  for (const auto& row : rows) {
    EXPECT_EQ(cellText(row.piece, row.cell), row.text) << row.piece;
  }
}
