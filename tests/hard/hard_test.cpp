#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "app/citrans.h"
#include "table/message_text.h"
#include "table/number.h"
#include "tests/unit/support.h"

namespace {

using namespace std::string_literals;

std::vector<std::string> linesOf(const std::string& text) {
  return GDB::split("\n", text);
}

bool isRow(const std::string& line) {
  return GDB::split_WhiteSpace(line).size() == 4 && GDB::isDigit(GDB::simplifyWhiteSpace(line)[0]);
}

/// The YbbR example, its rows changed by `change`, which gets all of them.
template <class Change>
std::string example(Change change) {
  std::string header;
  std::vector<std::string> rows;
  for (const std::string& line : linesOf(readFile(CITRANS_SOURCE_DIR "/examples/ybbr.tab"))) {
    if (isRow(line)) {
      rows.push_back(line);
    } else {
      header += line + "\n";
    }
  }
  change(rows);
  for (const std::string& row : rows) {
    header += row + "\n";
  }
  return header;
}

struct Written {
  CITRANS::FloatByAtom offsets;
  std::string summary;
  std::string shifts;
};

Written runOn(const std::string& input) {
  CITRANS citrans;
  citrans.setArgs({{"in", writeFile("in.tab", input)},
                   {"tabDir", CITRANS_SOURCE_DIR "/tab"},
                   {"sum", scratchPath("out.tab")}});
  EXPECT_FALSE(outcomeOf([&] { citrans.runPredict(); }).status.has_value());
  return {citrans.offsets, readFile(scratchPath("out.tab")), readFile(scratchPath("outAdjCS.tab"))};
}

} // namespace

TEST(Hard, MessagesShowWhatATerminalWouldObey) {
  const struct {
    std::string text;
    std::string shown;
  } rows[] = {
      {"", ""},
      {"my file.tab", "my file.tab"},
      {"tab\tand %s%n stay", "tab\tand %s%n stay"},
      {"\x1b]0;title\x07", "\\x1b]0;title\\x07"},
      {"over\rwritten\b\n", "over\\x0dwritten\\x08\\x0a"},
      {"cut\0short"s, "cut\\x00short"},
      {"\x7f", "\\x7f"},
      {"bare \x9b"s + "2J", "bare \\x9b2J"},
      {"C1 \xc2\x9b"s + "2J", "C1 \\xc2\\x9b2J"},
      {"after a cut sequence \xe2\x9b", "after a cut sequence \xe2\\x9b"},
      {"overlong \xc0\x9b \xe0\x82\x9b", "overlong \xc0\\x9b \xe0\\x82\\x9b"},
      // NOLINTNEXTLINE(misc-misleading-bidirectional): what is to be written out
      {"\xe2\x80\xaereversed \xe2\x81\xa6", "\\xe2\\x80\\xaereversed \\xe2\\x81\\xa6"},
      {"\xe2\x80\xa8line", "\\xe2\\x80\\xa8line"},
      {"\xc3\x9b\xc3\xa9 \xce\xb1 \xe2\x82\xac \xf0\x9f\x9b\x91",
       "\xc3\x9b\xc3\xa9 \xce\xb1 \xe2\x82\xac \xf0\x9f\x9b\x91"},
      {"Latin-1 M\xfcller", "Latin-1 M\xfcller"},
      {"\xff\xc2", "\xff\xc2"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(messageText(row.text), row.shown);
  }
}

TEST(Hard, AConstantOnANucleusMovesItsOffsetAlongWithIt) {
  const struct {
    std::vector<std::string> atoms;
    std::string key;
    double constant;
  } rows[] = {{{"CA", "CB"}, "CA", 4.0},
              {{"CA", "CB"}, "CB", -4.0},
              {{"C"}, "C", 4.0},
              {{"HA", "HA2", "HA3"}, "HA", 1.0}};
  for (const auto& row : rows) {
    const auto shifted = [&row](double by) {
      return runOn(example([&](std::vector<std::string>& lines) {
        for (std::string& line : lines) {
          std::vector<std::string> cells = GDB::split_WhiteSpace(line);
          if (std::count(row.atoms.begin(), row.atoms.end(), cells[2]) > 0) {
            cells[3] = std::to_string(parseDouble(cells[3]) + by);
            line = cells[0] + " " + cells[1] + " " + cells[2] + " " + cells[3];
          }
        }
      }));
    };
    float offsets[3];
    for (int times = 1; times <= 3; ++times) {
      const CITRANS::FloatByAtom estimated = shifted(times * row.constant).offsets;
      ASSERT_EQ(estimated.count(row.key), 1U) << row.key;
      offsets[times - 1] = estimated.at(row.key);
    }
    const double step = static_cast<double>(offsets[1] - offsets[0]);
    // The fit leaves its first point out of the products, so that a constant tilts the line a
    // little; the more points, the less. All of it is linear, to the six digits of stored shifts.
    EXPECT_NEAR(step, row.constant, 0.05 * std::fabs(row.constant)) << row.key;
    EXPECT_NEAR(static_cast<double>(offsets[2] - offsets[1]), step, 5e-4) << row.key;
  }
}

TEST(Hard, TheOrderOfInputRowsDoesNotMatter) {
  const auto asItIs = [](std::vector<std::string>&) {};
  const Written sorted = runOn(example(asItIs));
  ASSERT_NE(sorted.summary.find("\n 82 "), std::string::npos);
  for (const unsigned seed : {1U, 2U, 3U}) {
    const Written shuffled = runOn(example([seed](std::vector<std::string>& lines) {
      std::shuffle(lines.begin(), lines.end(), std::mt19937(seed));
    }));
    EXPECT_EQ(shuffled.summary, sorted.summary);
    EXPECT_EQ(shuffled.shifts, sorted.shifts);
    EXPECT_EQ(shuffled.offsets, sorted.offsets);
  }
}

TEST(Hard, ProductsThatUnderflowStayLikelihoodsUntilBothAreZero) {
  CITRANS citrans;
  for (int index = 0; index < 18; ++index) {
    citrans.proAvgTrans[index] = 0.0F;
    citrans.proAvgCis[index] = 0.1F;
    citrans.proStdCis[index] = citrans.proStdTrans[index] = 1.0F;
  }
  citrans.proCisSeq["A"] = citrans.proTransSeq["A"] = {{1, 1.0F}, {3, 1.0F}};
  const double smallestNormal = static_cast<double>(std::numeric_limits<float>::min());
  const double smallest = static_cast<double>(std::numeric_limits<float>::denorm_min());
  int denormal = 0;
  int zero = 0;
  for (double shift = 0.0; shift < 6.0; shift += 0.01) {
    CITRANS::Triplet triplet{{"RESNAME_R1", "A"}, {"RESNAME_R3", "A"}};
    for (const auto& [index, atom] : citrans.atomNames) {
      for (const char* place : {"_R1", "_R2", "_R3"}) {
        triplet[atom + place] = std::to_string(shift);
      }
    }
    const double cis = std::exp(-9.0 * (shift - 0.1) * (shift - 0.1));
    const double trans = std::exp(-9.0 * shift * shift);
    const CisLikelihood likelihood = citrans.getLikelihood(triplet, shift::missing);
    if (trans >= smallestNormal) {
      EXPECT_NEAR(static_cast<double>(likelihood.cis), cis / (cis + trans), 1e-4) << shift;
    } else if (cis > 18 * smallest) {
      ++denormal;
      EXPECT_TRUE(likelihood.cis >= 0.0F && likelihood.cis <= 1.0F) << shift;
      EXPECT_TRUE(likelihood.normalised >= 0.0F && likelihood.normalised <= 1.0F) << shift;
    } else if (cis < 0.01 * smallest) {
      ++zero;
      EXPECT_TRUE(std::isnan(likelihood.cis) && std::isnan(likelihood.normalised)) << shift;
    }
  }
  EXPECT_GT(denormal, 10);
  EXPECT_GT(zero, 10);
}
