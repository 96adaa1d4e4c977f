#include <cmath>
#include <gtest/gtest.h>

#include "app/citrans.h"
#include "tests/unit/support.h"

namespace {

/// Cis and trans alike: mean 0 and deviation 1 for every shift, neighbours that cancel.
void makeEven(CITRANS& run) {
  for (int index = 0; index <= 18; ++index) {
    run.proAvgCis[index] = run.proAvgTrans[index] = 0;
    run.proStdCis[index] = run.proStdTrans[index] = 1;
  }
  run.proCisSeq["A"] = {{1, 0.25F}, {3, 0.5F}};
  run.proTransSeq["A"] = {{1, 0.125F}, {3, 1.0F}};
}

/// A triplet A-P-A without shifts.
CITRANS::Triplet emptyTriplet(const CITRANS& run) {
  CITRANS::Triplet triplet = {{"RESNAME_R1", "A"}, {"RESNAME_R2", "P"}, {"RESNAME_R3", "A"}};
  for (const char* residue : {"_R1", "_R2", "_R3"}) {
    for (const auto& [index, atom] : run.atomNames) {
      triplet[atom + residue] = "9999";
    }
  }
  return triplet;
}

} // namespace

TEST(Predict, EachShiftMeetsItsOwnStatistics) {
  // One shift of 1 whose trans mean is 1: cis exp(-1/2), trans 1.
  const double cis = std::exp(-0.5) / (std::exp(-0.5) + 1);
  const char* const atoms[] = {"N", "HA", "C", "CA", "CB", "HN"};
  for (int index = 0; index < 18; ++index) {
    CITRANS run;
    makeEven(run);
    run.proAvgTrans[index] = 1;
    CITRANS::Triplet triplet = emptyTriplet(run);
    triplet[std::string(atoms[index % 6]) + "_R" + std::to_string(index / 6 + 1)] = "1";
    const CisLikelihood likelihood = run.getLikelihood(triplet, shift::missing);
    EXPECT_NEAR(static_cast<double>(likelihood.cis), cis, 1e-6) << index;
    EXPECT_NEAR(static_cast<double>(likelihood.normalised), cis / (cis + 19 * (1 - cis)), 1e-6);
  }
}

TEST(Predict, LikelihoodsByHand) {
  // The shift stands for CB of the proline: mean 98 and deviation 1 in cis, 98 and 2 in trans. CG:
  // mean 24 and 0.5 in cis, 27 and 1 in trans.
  const struct {
    const char* what;
    const char* cb;
    float cg;
    const char* before;
    double cis, normalised;
  } rows[] = {
      {"no shift: the neighbours cancel", "9999", 9999, "A", 0.5, 0.05},
      {"99 counts: z is 1 and 1/2", "99", 9999, "A", 1 / (1 + std::exp(0.375)), 0.03491},
      {"more than 99 does not", "99.5", 9999, "A", 0.5, 0.05},
      {"CG at equal distances, z is 2 and -2", "9999", 25, "A", 0.5, 0.05},
      {"CG at the cis mean, z is 0 and -3", "9999", 24, "A", 1 / (1 + std::exp(-4.5)), 0.82572},
      {"no statistics for the neighbour: 0/0", "9999", 24, "B", std::nan(""), std::nan("")},
      {"only trans has them", "9999", 9999, "C", 0, 0},
      {"only cis has them", "9999", 9999, "D", 1, 1}};
  for (const auto& row : rows) {
    CITRANS run;
    makeEven(run);
    run.proAvgCis[10] = run.proAvgTrans[10] = 98;
    run.proStdTrans[10] = 2;
    run.proAvgCis[18] = 24;
    run.proStdCis[18] = 0.5F;
    run.proAvgTrans[18] = 27;
    run.proTransSeq["C"][1] = run.proCisSeq["D"][1] = 1;
    CITRANS::Triplet triplet = emptyTriplet(run);
    triplet["CB_R2"] = row.cb;
    triplet["RESNAME_R1"] = row.before;
    const CisLikelihood likelihood = run.getLikelihood(triplet, row.cg);
    if (std::isnan(row.cis)) {
      EXPECT_TRUE(std::isnan(likelihood.cis) && std::isnan(likelihood.normalised)) << row.what;
    } else {
      EXPECT_NEAR(static_cast<double>(likelihood.cis), row.cis, 1e-6) << row.what;
      EXPECT_NEAR(static_cast<double>(likelihood.normalised), row.normalised, 1e-5) << row.what;
    }
  }
}

TEST(Predict, ATripletNeedsTwoResiduesWithThreeShiftsAndBothNeighbours) {
  const struct {
    int proline;
    int before, at, after; // missing atoms
    bool predicted;
  } rows[] = {{5, 3, 3, 3, true},  {5, 4, 3, 3, true},  {5, 4, 4, 3, false},
              {5, 6, 0, 4, false}, {5, 0, 4, 4, false}, {1, 0, 0, 0, false},
              {2, 0, 0, 0, true},  {9, 0, 0, 0, true},  {10, 0, 0, 0, false}};
  for (const auto& row : rows) {
    CITRANS run;
    run.residueCount = 10;
    run.missCount = {
        {row.proline - 1, row.before}, {row.proline, row.at}, {row.proline + 1, row.after}};
    EXPECT_EQ(run.testTriplet(run.getTriplet(row.proline)), row.predicted) << row.proline;
  }
}

TEST(Predict, ATripletHoldsClippedShiftsAndZeroForNone) {
  CITRANS run;
  run.sequence = {{1, "A"}, {2, "P"}};
  run.shiftTable.loadText(
      "VARS RESID ATOMNAME SHIFT\nFORMAT %d %s %f\n1 CA 3.5\n2 CA 9999\n2 C -0.5\n");
  run.limitsTable.loadText("VARS RESNAME CA_MIN CA_MAX C_MIN C_MAX N_MIN N_MAX\n"
                           "FORMAT %s %f %f %f %f %f %f\nA -1 1.25 0 0 0 0\nP -1 1 -2 2 1 2\n");
  for (const bool clip : {true, false}) {
    run.clipOn = clip;
    CITRANS::Triplet triplet = run.getTriplet(2);
    EXPECT_EQ(triplet.size(), 24U);
    EXPECT_EQ(triplet["RESID_R1"] + triplet["RESNAME_R2"] + triplet["RESNAME_R3"], "1P");
    EXPECT_EQ(triplet["CA_R1"], clip ? "1.25" : "3.5");
    EXPECT_EQ(triplet["CA_R2"], "9999") << "none is never clipped";
    EXPECT_EQ(triplet["C_R2"], "-0.5");
    EXPECT_EQ(triplet["N_R2"], clip ? "1" : "0") << "an absent row reads as 0, and 0 is clipped";
  }
}

TEST(Predict, LaterRowsOfTheStatisticsReplaceEarlierOnes) {
  CITRANS run;
  run.getProCSValue(writeFile("cs.tab", "VARS index avg_cis std_cis\nFORMAT %d %f %f\n3 1 2\n"
                                        "2a 5 6\n3 3 4\n"));
  EXPECT_EQ(run.proAvgCis, (std::map<int, float>{{2, 5.0F}, {3, 3.0F}}));
  EXPECT_EQ(run.proStdTrans[3], 0.0F) << "no such column";
  run.getProSeqOccurence(writeFile("seq.tab", "VARS trans_next resname cis_prev cis_next\n"
                                              "FORMAT %f %s %f %f\n1 c 2 3\n4 c 5 6\n"));
  EXPECT_EQ(run.proCisSeq["c"], (std::map<int, float>{{1, 5.0F}, {3, 6.0F}}));
  EXPECT_EQ(run.proTransSeq["c"], (std::map<int, float>{{1, 0.0F}, {3, 4.0F}}));
}
