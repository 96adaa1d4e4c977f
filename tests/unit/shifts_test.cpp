#include <cmath>
#include <gtest/gtest.h>

#include "app/citrans.h"
#include "tests/unit/support.h"

namespace {

/// Random-coil shifts that are easy to subtract.
constexpr char randomCoil[] =
    "VARS RESNAME N HA C CA CB HN\nFORMAT %s %f %f %f %f %f %f\n"
    "A 120 4 175 50 20 8\nG 110 3.5 174 45 9999 8\nP 9999 4 177 63 32 9999\n";

/// Prepares the shifts of a protein; `rows` are "RESID RESNAME ATOMNAME SHIFT" lines.
Outcome prepare(CITRANS& run, const std::string& sequence, const std::string& rows) {
  run.inputTable.loadText("DATA SEQUENCE " + sequence +
                          "\nVARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %d %s %s %f\n" + rows);
  run.randTable.loadText(randomCoil);
  run.sumBase = scratchPath("out");
  return outcomeOf([&] { run.getResInfo(); });
}

/// A cell of the working table.
std::string cellOf(CITRANS& run, int residue, const char* atom, const char* column = "SHIFT") {
  return run.shiftTable.getEntry("RESID", std::to_string(residue), "ATOMNAME", atom, 1)[column];
}

void addShift(CITRANS& run, int residue, const char* atom, double shift) {
  for (const char* column : {"RESID", "ATOMNAME", "SHIFT"}) {
    run.shiftTable.addVAR(column, "%s");
  }
  const std::size_t row = run.shiftTable.appendRow();
  run.shiftTable.setCell(row, "RESID", std::to_string(residue));
  run.shiftTable.setCell(row, "ATOMNAME", atom);
  run.shiftTable.setCell(row, "SHIFT", std::to_string(shift));
}

} // namespace

TEST(Shifts, LookUpsOfUnknownResiduesAndAtoms) {
  CITRANS run;
  run.randTable.loadText(randomCoil);
  run.adjTable.loadText(randomCoil);
  run.prevTable.loadText("VARS CA\nFORMAT %f\n0.5\n");
  EXPECT_EQ(run.getRC("XYZ", "CA"), 9999.0F);
  EXPECT_EQ(run.getRCadj("XYZ", "CA"), 0.0F);
  EXPECT_EQ(run.getRC("A", "CA"), 50.0F);
  EXPECT_EQ(run.getRC("A", "CG"), 0.0F) << "no such column";
  EXPECT_EQ(run.getPrevRCadj("", "CA"), 0.5F) << "a row without a name has the empty name";
  EXPECT_EQ(run.getOneAAName("HIS+") + run.getOneAAName("his") + run.getOneAAName("cys") +
                run.getOneAAName("Ala"),
            "Hhc?");
}

TEST(Shifts, AGlycinesHaComesFromItsTwoProtonsOnly) {
  const struct {
    const char* rows;
    const char* shift; // less the random coil, 3.5
    int missing;
  } cases[] = {
      {"1 G HA2 3.90\n1 G HA3 4.10\n", "0.5", 5},
      {"1 G HA2 4.5\n", "1", 5},
      {"1 G HA3 4\n1 G HA 9\n", "0.5", 5},
      {"1 G HA2 1000\n1 G HA3 4\n", "0.5", 5},
      {"1 G HA 4\n", "9999", 6},
      {"1 G CA 45\n", "9999", 5},
  };
  for (const auto& row : cases) {
    CITRANS run;
    prepare(run, "G", row.rows);
    EXPECT_EQ(cellOf(run, 1, "HA"), row.shift) << row.rows;
    EXPECT_EQ(run.missCount[1], row.missing) << row.rows;
  }
  CITRANS run;
  run.adjTable.loadText("VARS RESNAME HA\nFORMAT %s %f\nG 9999\n");
  prepare(run, "G", "1 G HA2 4\n");
  EXPECT_EQ(cellOf(run, 1, "HA"), "-9998.5") << "kept: subtracted even when it stands for none";
}

TEST(Shifts, RowsKeepTheirNamesAndProlinesTheirSilence) {
  CITRANS run;
  const Outcome outcome = prepare(run, "APA",
                                  "1 ALA H 8.5\n2 P N 137\n2 P HA 4.25\n2 P CA 63.5\n"
                                  "2 P CG 27.1\n4 LYS N 1\n3 G CB 20\n");
  EXPECT_EQ(cellOf(run, 1, "H"), "0.5");
  EXPECT_EQ(cellOf(run, 1, "HN"), "") << "kept: the triplet then finds no HN";
  EXPECT_EQ(run.getTriplet(2)["HN_R1"], "0");
  EXPECT_EQ(cellOf(run, 2, "N"), "9999");
  EXPECT_EQ(cellOf(run, 2, "HA") + cellOf(run, 2, "HA", "CS_OBS") + cellOf(run, 2, "HA", "CS_ADJ"),
            "0.254.254");
  EXPECT_EQ(run.missCount, (std::map<int, int>{{0, 6}, {1, 5}, {2, 3}, {3, 5}, {4, 6}}));
  EXPECT_EQ(run.cgShifts, (std::map<int, float>{{1, 9999.0F}, {2, 27.1F}, {3, 9999.0F}}));
  EXPECT_EQ(run.sequence[4], "K") << "rows beyond the header name their residue";
  EXPECT_EQ(outcome.err, "WARNING: Unmatched name for residue 3 between header (A) and chemical "
                         "shift table (G)\n");
}

TEST(Shifts, OddRowsOfAProline) {
  const struct {
    const char* row;
    const char* atom;
    const char* secondary;
    float cg;
  } cases[] = {{"2 P H 8.5", "H", "9999", 9999},
               {"2 P HN 8.5", "HN", "9999", 9999},
               {"2 P CG 0", "CA", "9999", 0},
               {"2 P CG 500", "CA", "9999", 500},
               {"2 P CG 9999", "CA", "9999", 9999}};
  for (const auto& row : cases) {
    CITRANS run;
    run.offsetOn = true;
    run.offsets = {{"CA", 1.0F}, {"C", 1.0F}};
    prepare(run, "AP", std::string(row.row) + "\n2 P C 178\n");
    EXPECT_EQ(cellOf(run, 2, row.atom), row.secondary) << row.row;
    // The offset of C comes off every CG that is neither 0 nor missing.
    const float left = row.cg == 0 || row.cg > 999 ? row.cg : row.cg - 1;
    EXPECT_EQ(run.cgShifts[2], left) << row.row;
  }
}

TEST(Shifts, TheRangeIsLimitedToTheRows) {
  const struct {
    int first, last, limitedFirst, limitedLast;
  } rows[] = {{1, 9999, 2, 4}, {3, 3, 3, 3}, {4, 2, 2, 4}, {-7, 0, 2, 2}, {50, 60, 4, 4}};
  for (const auto& row : rows) {
    CITRANS run;
    run.firstResID = row.first;
    run.lastResID = row.last;
    prepare(run, "AAAA", "3 A CA 50\n2 A CA 50\n"); // 3, the highest, is raised towards N = 4
    EXPECT_EQ(run.firstInRange, row.limitedFirst);
    EXPECT_EQ(run.lastInRange, row.limitedLast);
  }
}

TEST(Shifts, AProlinesCgLosesTheOffsetOfEachOfItsShifts) {
  CITRANS run;
  run.offsetOn = true;
  run.offsets = {{"CA", 0.5F}, {"CB", 0.5F}, {"C", 0.25F}, {"HA", 0.125F}};
  const Outcome outcome = prepare(run, "AP",
                                  "1 A CA 51\n1 A HA 4.5\n1 A CG 20\n"
                                  "2 PRO CA 64\n2 PRO CB 32\n2 PRO C 178\n2 P CG 27\n");
  EXPECT_EQ(cellOf(run, 1, "CA") + " " + cellOf(run, 1, "HA"), "0.5 0.375");
  EXPECT_EQ(cellOf(run, 2, "C") + " " + cellOf(run, 2, "C", "CS_OBS"), "0.75 178");
  EXPECT_EQ(run.cgShifts[1], 20.0F);
  EXPECT_EQ(run.cgShifts[2], 25.75F) << "kept: 27 - 0.5 - 0.5 - 0.25";
  EXPECT_EQ(outcome.err,
            "  0.500 ppm referencing offset applied for 13Ca and 13Cb chemical shifts\n"
            "  0.125 ppm referencing offset applied for 1Ha chemical shifts\n"
            "  0.250 ppm referencing offset applied for 13C' chemical shifts\n");
}

TEST(Shifts, OutliersAreMarkedBeyondTwiceTheirLimitAndHaBeyondThrice) {
  const struct {
    const char* atom;
    double shift;
    const char* line; // after the residue and the atom; empty for none
  } rows[] = {{"CA", 0.5, ""},
              {"CA", 2, ""},
              {"CA", 9999, ""},
              {"CA", -1.5, "  -1.500    Limit:   -1.000"},
              {"CA", -2.5, "  -2.500    Limit:   -1.000 !"},
              {"CA", 4, "   4.000    Limit:    2.000"},
              {"CA", 4.5, "   4.500    Limit:    2.000 !"},
              {"HA", 0.75, "   0.750    Limit:    0.250"},
              {"HA", -0.8, "  -0.800    Limit:   -0.250 !"},
              {"HN", 0.5, "   0.500    Limit:    0.000 !"}}; // without limits they are 0
  for (const auto& row : rows) {
    CITRANS run;
    run.sequence = {{1, "A"}};
    run.limitsTable.loadText("VARS RESNAME CA_MIN CA_MAX HA_MIN HA_MAX\nFORMAT %s %f %f %f %f\n"
                             "A -1 2 -0.25 0.25\n");
    addShift(run, 1, std::string(row.atom) == "HN" ? "H" : row.atom, row.shift);
    char line[64] = "";
    if (*row.line != '\0') {
      std::snprintf(line, sizeof line, "    1 A %3s Secondary Shift: %s\n", row.atom, row.line);
    }
    EXPECT_EQ(outcomeOf([&] { run.checkCS(); }).out,
              std::string("\nChecking for Chemical Shift Outliers ...\n") + line +
                  "\nChecking Chemical Shift Referencing ...\n");
  }
}

TEST(Shifts, TheLineFitLeavesItsFirstPointOutOfTheProducts) {
  // By hand, without the first point: mean(xy) = (3+10+24)/3, mean(xx) = (1+4+9)/3; of all four:
  // mean(x) = 1.5, mean(y) = 4.25. slope = (4*37/3 - 4*4.25*1.5) / (4*14/3 - 1.5*4*1.5) = 143/58,
  // intercept = 4.25 - 1.5*143/58 = 16/29. Residuals of points 1 to 3: -1/58, -28/58, 3/58, so
  // error = sqrt((1+784+9)/58^2 / 2) / sqrt(4) = sqrt(397)/116.
  const CITRANS run;
  float slope = 7;
  float intercept = 7;
  float error = 7;
  EXPECT_EQ(run.LinearLeastSquareFitting({0, 1}, {0}, slope, intercept, error), 0);
  EXPECT_EQ(slope + intercept + error, 21.0F) << "untouched";
  EXPECT_EQ(run.LinearLeastSquareFitting({0, 1, 2, 3}, {1, 3, 5, 8}, slope, intercept, error), 1);
  EXPECT_FLOAT_EQ(slope, 143.0F / 58.0F);
  EXPECT_FLOAT_EQ(intercept, 16.0F / 29.0F);
  EXPECT_FLOAT_EQ(error, std::sqrt(397.0F) / 116.0F);
  // The last point first: mean(xy) = 13/3, mean(xx) = 5/3, slope = (52/3 - 25.5) / (20/3 - 9).
  run.LinearLeastSquareFitting({3, 1, 2, 0}, {8, 3, 5, 1}, slope, intercept, error);
  EXPECT_FLOAT_EQ(slope, 3.5F);
  EXPECT_EQ(run.getAverage({}), 0.0F);
  EXPECT_TRUE(run.getSTDev({}) == 0.0F && std::signbit(run.getSTDev({})));
  EXPECT_EQ(run.getSTDev({3, 4}), 5.0F) << "about 0, not about the mean";
  EXPECT_TRUE(std::isinf(run.getSTDev({2})));
}

TEST(Shifts, AnOffsetNeedsTenPointsInASetAndElevenInAll) {
  // CA, HA and C' are all 5 ppm, up to 0.001 so that the fits have an error, and x lies evenly
  // about its mean, where the first point is: the lines are level and meet x = 0 at 5. What the
  // intercept misses: CA 5-0.094 and 5-0.459, HA 5-0.089 and 5+0.008, C' 5+0.272 and 5-0.226.
  constexpr double none = 0;
  const struct {
    int negative, positive;
    const char* name;
    double ca, ha, c;
    bool shortage;
    double spread; // of the shifts about 5 ppm; 0 leaves the fits without an error
  } rows[] = {{11, 0, "A", 4.906, 4.911, 5.272, false, 0.001},
              {0, 11, "A", 4.541, 5.008, 4.774, false, 0.001},
              {10, 0, "A", none, none, none, false, 0.001},
              {10, 1, "A", 4.906, 4.911, 5.272, false, 0.001},
              {9, 9, "A", none, none, none, true, 0.001},
              {0, 0, "A", none, none, none, false, 0.001},
              {20, 10, "A", 143.53 / 30, 148.30 / 30, 153.18 / 30, false, 0.001}, // weighted means
              {11, 11, "A", none, none, none, false, 0},
              {20, 10, "P", none, none, none, false, 0.001},
              {20, 10, "c", none, none, none, false, 0.001}};
  for (const auto& row : rows) {
    CITRANS run;
    // Residues are visited as 100, 101, ..., so the text order is the order of the numbers.
    int residue = 100;
    for (int i = 0; i < row.negative + row.positive; ++i, ++residue) {
      const int count = i < row.negative ? row.negative : row.positive;
      const int place = i < row.negative ? i : i - row.negative;
      const int step = place + 1 == count && place % 2 != 0 ? 0 : (place + 1) / 2; // from the mean
      const double size = 8 + (place % 2 != 0 ? -0.25 : 0.25) * step;
      const double ca = 5 + (place % 3 - 1) * row.spread;
      run.sequence[residue] = row.name;
      addShift(run, residue, "CA", ca);
      addShift(run, residue, "CB", ca - (i < row.negative ? -size : size));
      addShift(run, residue, "HA", ca);
      addShift(run, residue, "C", ca);
    }
    const Outcome outcome = outcomeOf([&] { run.checkCS(); });
    EXPECT_EQ(run.offsets.size(), row.ca == none ? 0U : 4U);
    EXPECT_NEAR(static_cast<double>(run.offsets["CA"]), row.ca, 0.05) << row.negative;
    EXPECT_EQ(run.offsets["CA"], run.offsets["CB"]);
    EXPECT_NEAR(static_cast<double>(run.offsets["HA"]), row.ha, 0.05) << row.negative;
    EXPECT_NEAR(static_cast<double>(run.offsets["C"]), row.c, 0.05) << row.negative;
    EXPECT_EQ(outcome.err.find("Not enough") != std::string::npos, row.shortage) << row.negative;
  }
}
