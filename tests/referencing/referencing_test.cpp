#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "table/file_io.h"
#include "table/number.h"
#include "tools/common/tool.h"
#include "tools/referencing/database.h"

namespace referencing {
namespace {

constexpr char tables[] = PROJECT_ROOT "/tab";
constexpr double none = std::numeric_limits<double>::quiet_NaN();

Model plainModel() {
  Model model;
  model[Nucleus::carbon] = {{0.1, 0.4}, {0.3, 0.7}, 0.6, 0.0025, 1.0};
  model[Nucleus::alphaProton] = {{0, -0.1}, {0, -0.1}, 0.3, 0.001, 0.1};
  model[Nucleus::carbonyl] = {{-0.1, 0.3}, {0, 0.4}, 1.3, 0.01, 4};
  model.fewestErrors = 2.5;
  return model;
}

/// Residues on the lines, with noise, and these offsets added.
std::vector<ResidueShifts> residuesAbout(const Model& model, const Offsets& added, int count,
                                         double noise) {
  std::mt19937 random(7);
  std::normal_distribution<double> scatter(0, 1);
  std::vector<ResidueShifts> residues;
  for (int i = 0; i < count; ++i) {
    const double difference = 4 * scatter(random);
    const auto shift = [&](Nucleus nucleus) {
      return model[nucleus].expected(difference) + added[static_cast<std::size_t>(nucleus)] +
             noise * model[nucleus].width * scatter(random);
    };
    const double ca = shift(Nucleus::carbon);
    residues.push_back(
        {ca, ca - difference, shift(Nucleus::alphaProton), shift(Nucleus::carbonyl)});
  }
  return residues;
}

TEST(Referencing, FindsTheOffsetOfEachNucleusByItself) {
  const Model model = plainModel();
  const Estimates found = estimate(model, residuesAbout(model, {2.7, 0.02, -1.5}, 100, 0));
  EXPECT_NEAR(found[0].offset, 2.7, 1e-9);
  EXPECT_NEAR(found[1].offset, 0.02, 1e-9);
  EXPECT_NEAR(found[2].offset, -1.5, 1e-9);
  // sqrt(0.0025 + 1 / 100), 0.0025 and 100 points
  EXPECT_NEAR(found[0].error, std::sqrt(0.0125), 1e-12);
  EXPECT_EQ(found[0].points, 100);
  EXPECT_TRUE(found[0].applies);
  EXPECT_FALSE(found[1].applies) << "smaller than its error";
  EXPECT_TRUE(found[2].applies);
}

TEST(Referencing, WildShiftsDoNotCountAndTheOrderDoesNotMatter) {
  const Model model = plainModel();
  std::vector<ResidueShifts> residues = residuesAbout(model, {1, 0, 0}, 60, 1);
  const double before = estimate(model, residues)[0].offset;
  for (int i = 0; i < 12; ++i) {
    residues.insert(residues.begin(), {50.0, 50.0 - i, none, none});
  }
  const Estimates found = estimate(model, residues);
  EXPECT_NEAR(found[0].offset, before, 1e-6);
  EXPECT_EQ(found[1].points, 60) << "a missing shift is no point";
  std::reverse(residues.begin(), residues.end());
  EXPECT_NEAR(estimate(model, residues)[0].offset, found[0].offset, 1e-9);
}

TEST(Referencing, NothingIsEstimatedFromTooFewResidues) {
  const Model model = plainModel();
  const Estimates few = estimate(model, residuesAbout(model, {3, 3, 3}, fewestPoints - 1, 0));
  for (const Estimate& each : few) {
    EXPECT_EQ(each.offset, 0);
    EXPECT_FALSE(each.applies);
  }
  EXPECT_TRUE(estimate(model, residuesAbout(model, {3, 3, 3}, fewestPoints, 0))[0].applies);
}

TEST(Referencing, OffsetsBelongToAtoms) {
  struct Case {
    const char* residue;
    const char* atom;
    int nucleus; ///< -1 for none
  };
  for (const Case& c :
       {Case{"A", "C", 2},    Case{"A", "CA", 0},   Case{"A", "CB", 0},    Case{"P", "CG", 0},
        Case{"PRO", "CG", 0}, Case{"pro", "CD", 0}, Case{"p", "CG", 0},    Case{"ILE", "CG2", 0},
        Case{"L", "CD1", 0},  Case{"K", "CE", 0},   Case{"LYS+", "CE", 0}, Case{"G", "HA2", 1},
        Case{"A", "HA", 1},   Case{"D", "CG", -1},  Case{"F", "CG", -1},   Case{"H", "CD2", -1},
        Case{"E", "CD", -1},  Case{"R", "CZ", -1},  Case{"A", "N", -1},    Case{"A", "HN", -1},
        Case{"A", "HB", -1},  Case{"P", "C G", -1}, Case{"P", "", -1},     Case{"", "CG", -1}}) {
    const auto nucleus = nucleusOf(c.residue, c.atom);
    EXPECT_EQ(nucleus ? static_cast<int>(*nucleus) : -1, c.nucleus) << c.residue << " " << c.atom;
  }
}

TEST(Referencing, CorrectingATextChangesShiftsAlone) {
  const std::string text = "REMARK CA 1 A 2\n"
                           "DATA SEQUENCE AP\n\n"
                           "VARS   RESID RESNAME ATOMNAME SHIFT\n"
                           "FORMAT %4d %1s %4s %8.3f\n\n"
                           "   1 A   CA   52.500\n"
                           "   1 A   CB    9.9\r\n"
                           "   1 A    N  120.000\n"
                           "   2 P   CG 9999.000\n"
                           "   2 P   CG   27.000 # no row\n"
                           "   2 P    C 177.0";
  const std::string expected = "REMARK a note\n"
                               "REMARK CA 1 A 2\n"
                               "DATA SEQUENCE AP\n\n"
                               "VARS   RESID RESNAME ATOMNAME SHIFT\n"
                               "FORMAT %4d %1s %4s %8.3f\n\n"
                               "   1 A   CA   50.000\n"
                               "   1 A   CB  7.400\r\n"
                               "   1 A    N  120.000\n"
                               "   2 P   CG 9999.000\n"
                               "   2 P   CG   27.000 # no row\n"
                               "   2 P    C 178.000\n";
  EXPECT_EQ(correctText(text, {2.5, 0, -1}, {"a note"}), expected);
  GDB table;
  table.loadText(text);
  EXPECT_EQ(correct(table, {2.5, 0, -1}), 3);
  EXPECT_EQ(table.cell(0, "SHIFT"), "50.000");
  EXPECT_EQ(table.cell(2, "SHIFT"), "120.000");
  EXPECT_EQ(table.cell(3, "SHIFT"), "9999.000");
}

TEST(Referencing, KnownShiftsAreReadOrRefused) {
  EXPECT_EQ(parseShiftBy("C=-2.36,HA=0.02"), (Offsets{2.36, -0.02, 2.36}));
  EXPECT_EQ(parseShiftBy("CA=1,CO=-2"), (Offsets{-1, 0, 2}));
  for (const char* text : {"", ",", "N=1", "CA", "CA=", "CA=x", "CA=1,CA=2", "C=1,CO=2", "CA=nan",
                           "CA=1e3", "CA=9999", "ca=1", "CA=1-2", "CA=."}) {
    EXPECT_THROW(parseShiftBy(text), ToolError) << text;
  }
}

TEST(Referencing, ABadTableOfConstantsIsRefused) {
  const std::string good = *readWholeFile(std::string(tables) + "/reref.tab");
  const auto read = [](std::string text) {
    GDB table;
    table.loadText(std::move(text));
    return readModel(table);
  };
  EXPECT_GT(read(good).fewestErrors, 0);
  const std::size_t rows = good.find("\nCA ") + 1;
  EXPECT_THROW(read(good.substr(0, rows)), ToolError);
  EXPECT_THROW(read(good.substr(0, rows) + "X" + good.substr(rows)), ToolError);
  EXPECT_THROW(read(std::string(good).replace(rows + 8, 1, "x")), ToolError);
  EXPECT_THROW(loadModel("/nonexistent"), ToolError);
}

TEST(Referencing, AShiftedDepositionComesBack) {
  // Ubiquitin is well referenced; 2.7 ppm on every carbon is found and taken off its shifts.
  const Database database(tables);
  const std::string text = *readWholeFile(PROJECT_ROOT "/examples/ubiquitin.tab");
  const auto estimateOf = [&](const std::string& shifts) {
    GDB table;
    table.loadText(shifts);
    return database.estimate(table);
  };
  const Estimates before = estimateOf(text);
  const std::string off = shiftBy({-2.7, 0.5, -2.7}, text).text;
  const Estimates moved = estimateOf(off);
  EXPECT_FALSE(before[0].applies);
  EXPECT_NEAR(moved[0].offset - before[0].offset, 2.7, 1e-4);
  EXPECT_NEAR(moved[1].offset - before[1].offset, -0.5, 1e-4);
  EXPECT_NEAR(moved[2].offset - before[2].offset, 2.7, 1e-4);
  const Corrected corrected = rereference(database, off);
  EXPECT_EQ(corrected.notes.size(), nucleusCount);
  for (std::size_t i = 0; i < nucleusCount; ++i) {
    EXPECT_NEAR(takenOff(corrected.notes)[i], moved[i].applies ? moved[i].offset : 0, 5.1e-4);
  }
  EXPECT_NEAR(takenOff(shiftBy({-2.7, 0.5, 0}, text).notes)[0], -2.7, 1e-9);
  EXPECT_EQ(corrected.text.find("REMARK referencing of CA/CB: off by"), 0U);
  for (const Estimate& left : estimateOf(corrected.text)) {
    EXPECT_NEAR(left.offset, 0, 1e-3);
  }
  EXPECT_THROW(rereference(database, "VARS RESID\nFORMAT %d\n1\n"), ToolError);
}

TEST(Referencing, ADeuteratedSampleIsNotMisreferenced) {
  // Deuterium next to CA and CB moves them up by 0.5 to 1 ppm in isoadj.tab, and nothing else; the
  // shifts of a deuterated YbbR domain are those of the other less that.
  const std::string text = *readWholeFile(PROJECT_ROOT "/examples/ybbr.tab");
  const Database plain(tables);
  const Database deuterated(tables, {{"iso", "true"}});
  const auto secondary = [](const Database& database, const std::string& shifts) {
    GDB table;
    table.loadText(shifts);
    CITRANS run = database.run(table);
    run.getResInfo();
    return run.shiftTable;
  };
  const GDB without = secondary(plain, text);
  const GDB with = secondary(deuterated, text);
  GDB sample;
  sample.loadText(text);
  for (std::size_t row = 0; row < without.rowCount(); ++row) {
    const std::string residue(without.cell(row, "RESID"));
    const std::string atom(without.cell(row, "ATOMNAME"));
    const std::size_t at = sample.findRow("RESID", residue, "ATOMNAME", atom);
    if (at != GDB::noRow) {
      const double isotope =
          parseDouble(with.cell(row, "SHIFT")) - parseDouble(without.cell(row, "SHIFT"));
      sample.setCell(at, "SHIFT", std::to_string(parseDouble(sample.cell(at, "SHIFT")) - isotope));
    }
  }
  EXPECT_TRUE(plain.estimate(sample)[0].applies);
  EXPECT_FALSE(deuterated.estimate(sample)[0].applies);
}

} // namespace
} // namespace referencing
