// The library in a program that has set a locale with a decimal comma.
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <vector>

#include "app/citrans.h"
#include "table/cell_format.h"
#include "table/number.h"
#include "tests/unit/support.h"

namespace {

/// A locale with a decimal comma for the process while it lives.
class CommaLocale {
 public:
  CommaLocale() {
    const std::string source = writeFile("source", "LC_NUMERIC\n"
                                                   "decimal_point \",\"\n"
                                                   "thousands_sep \".\"\n"
                                                   "grouping 3;3\n"
                                                   "END LC_NUMERIC\n");
    // Forced, as the other categories are not there.
    const std::string make = "localedef -c -i " + source + " " + scratchPath("comma");
    if (std::system((make + " >/dev/null 2>&1").c_str()) != -1) {
      setenv("LOCPATH", scratchPath("").c_str(), 1);
      std::setlocale(LC_NUMERIC, "comma");
    }
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;
  ~CommaLocale() { std::setlocale(LC_NUMERIC, "C"); }

  /// False where the machine has no such locale, or a C library that knows none.
  static bool isSet() {
    char text[8];
    std::snprintf(text, sizeof text, "%.1f", 0.5);
    return std::string(text) == "0,5";
  }
};

std::string cellText(const std::string& piece, const std::string& cell) {
  std::string text;
  CellFormat(piece).append(text, cell);
  return text;
}

/// All that a run prints and writes.
std::string textsOfARun() {
  const std::string examples = CITRANS_SOURCE_DIR "/examples/";
  std::string printed;
  CITRANS run;
  run.out = run.errors = [&printed](std::string_view text) { printed += text; };
  run.setArgs({{"in", examples + "xcc2852.tab"},
               {"tabDir", CITRANS_SOURCE_DIR "/tab"},
               {"ref", examples + "ybbr_2kpu.pdb"},
               {"offset", "offset"},
               {"verb", "verb"},
               {"sum", scratchPath("run.tab")}});
  run.runPredict();
  return printed + readFile(scratchPath("run.tab")) + readFile(scratchPath("runAdjCS.tab"));
}

} // namespace

TEST(Locale, NumbersReadAsInC) {
  const std::vector<const char*> texts = {
      "1.5",     "+1.5",   "-1.5",     "+-1",      //
      "--1.5",   "+ 1.5",  " \t+1.5 ", "1.5ppm",   // signs, blanks, units
      ".5",      "+.5",    "5.",       ".",        //
      "",        " ",      "1.2.3",    "1 .5",     // points
      "1,5",     ",5",     "1.5,5",    "1,5.5",    // commas
      "1.5e400", "-1e400", "1.5e-400", "+1e3",     // exponents
      "1.5e",    "0x.8",   "0x1.8p1",  "+inf",     //
      "-inf",    "+nan",   "-nan",     "nan(1.5)", // hexadecimal, no numbers
      "infin.5", "1.e.5",  "+1.5.",    "9007199254740993.5000001"};
  std::vector<double> expected;
  expected.reserve(std::size(texts));
  for (const char* text : texts) {
    expected.push_back(std::strtod(text, nullptr));
  }
  const CommaLocale comma;
  if (!CommaLocale::isSet()) {
    GTEST_SKIP() << "no locale with a decimal comma";
  }
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const double value = parseDouble(texts[i]);
    const bool same = std::isnan(value) ? std::isnan(expected[i]) : value == expected[i];
    EXPECT_TRUE(same) << "'" << texts[i] << "': " << value << ", not " << expected[i];
    EXPECT_EQ(std::signbit(value), std::signbit(expected[i])) << "'" << texts[i] << "'";
  }
}

TEST(Locale, NumbersPrintAsInC) {
  const CommaLocale comma;
  if (!CommaLocale::isSet()) {
    GTEST_SKIP() << "no locale with a decimal comma";
  }
  char text[256];
  FixedText fixed;
  GeneralText general;
  EXPECT_STREQ(CITRANS::ftoa(1.5F, text, 'g', 6), "1.5");
  EXPECT_STREQ(CITRANS::ftoa(1.5F, text, 'E', 1), "1.5E+00");
  EXPECT_EQ(fixedText(-2.25, 3, fixed), "-2.250");
  EXPECT_EQ(generalText(1.25e-7, general), "1.25e-07");
  EXPECT_EQ(formatted("%6.2f, %s", 1.5, "2,5"), "  1.50, 2,5");
  EXPECT_EQ(cellText("%8.3f ", "+1.5"), "   1.500 ");
  EXPECT_EQ(cellText("%08.3f", "1.5"), "0001.500");
  EXPECT_EQ(cellText("%f", "1.5e0"), "1.500000");
}

TEST(Locale, ARunIsTheSame) {
  const std::string expected = textsOfARun();
  EXPECT_NE(expected.find("Estimated Referencing Offset"), std::string::npos);
  const CommaLocale comma;
  if (!CommaLocale::isSet()) {
    GTEST_SKIP() << "no locale with a decimal comma";
  }
  EXPECT_EQ(textsOfARun(), expected);
}
