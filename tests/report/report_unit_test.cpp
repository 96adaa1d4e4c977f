#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>

#include "tools/report/carbons.h"
#include "tools/report/referencing_check.h"
#include "tools/report/style.h"
#include "tools/report/text.h"
#include "tools/report/verdict.h"

namespace {

TEST(Text, IsSafeInMarkup) {
  const struct {
    const char* text;
    const char* safe;
  } rows[] = {
      {"<b a=\"1\" c='2'>&amp;", "&lt;b a=&quot;1&quot; c=&#39;2&#39;&gt;&amp;amp;"},
      {"caf\xC3\xA9 \xF0\x9F\xA7\xAC", "caf\xC3\xA9 \xF0\x9F\xA7\xAC"},
      {"a\x01z\x7f", "a\xEF\xBF\xBDz\xEF\xBF\xBD"},
      {"cut \xC3", "cut \xEF\xBF\xBD"},
      {"\xC0\xBC", "\xEF\xBF\xBD\xEF\xBF\xBD"},                                 // an overlong "<"
      {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},                 // a surrogate
      {"\xF4\x90\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"}, // past the last
      {"tab\tstays", "tab\tstays"},
      // Text that is turned around, or hidden. NOLINTNEXTLINE(misc-misleading-bidirectional)
      {"a\u202Eb\u200Fc\u2067d\u0085e", "a\uFFFDb\uFFFDc\uFFFDd\uFFFDe"},
      {"\u2013 \u2032 \u03B1", "\u2013 \u2032 \u03B1"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(escaped(row.text), row.safe);
  }
}

TEST(Text, NumbersSignsAndOdds) {
  EXPECT_EQ(decimal(-1.25, 1), "−1.2");
  EXPECT_EQ(decimal(-0.001, 2), "0.00");
  EXPECT_EQ(signedDecimal(0.001, 2), "0.00");
  EXPECT_EQ(signedDecimal(0.006, 2), "+0.01");
  EXPECT_EQ(decimal(std::nan(""), 2), "n/a");
  const struct {
    double odds;
    const char* words;
  } rows[] = {{1, "1.0 to 1"},       {0.25, "4.0 to 1"},         {9.94, "9.9 to 1"},
              {150.2, "150 to 1"},   {1000.1, "10³ to 1"},       {4.4e6, "4 × 10⁶ to 1"},
              {9.7e12, "10¹³ to 1"}, {1 / 2.0e5, "2 × 10⁵ to 1"}};
  EXPECT_EQ(oddsText(std::nan("")), "n/a");
  for (const auto& row : rows) {
    EXPECT_EQ(oddsText(std::log(row.odds)), row.words);
  }
}

/// Ala-Ala-Pro-Gly-Ala with every kind of term around the proline. Each statistic has its own
/// means, so that a mistaken index shows.
class OneProline : public testing::Test {
 protected:
  OneProline() {
    run.shiftTable.VARS_str_parser("RESID RESNAME ATOMNAME SHIFT");
    inputs.sequence = {{1, "A"}, {2, "A"}, {3, "P"}, {4, "G"}, {5, "A"}};
    inputs.residueCount = 5;
    run.sequence = inputs.sequence;
    run.residueCount = 5;
    for (int index = 0; index <= 18; ++index) {
      run.proAvgCis[index] = static_cast<float>(index);
      run.proAvgTrans[index] = 0;
      run.proStdCis[index] = 2;
      run.proStdTrans[index] = 4;
    }
    run.proCisSeq["A"] = {{1, 0.06F}, {3, 0.5F}};
    run.proTransSeq["A"] = {{1, 0.03F}, {3, 0.5F}};
    run.proCisSeq["G"] = {{1, 0.5F}, {3, 0.02F}};
    run.proTransSeq["G"] = {{1, 0.5F}, {3, 0.08F}};
    run.limitsTable.VARS_str_parser("RESNAME CA_MIN CA_MAX CB_MIN CB_MAX HN_MIN HN_MAX");
    for (const char* name : {"A", "P", "G"}) {
      const std::size_t row = run.limitsTable.appendRow();
      run.limitsTable.setCell(row, "RESNAME", name);
      for (const char* atom : {"CA", "CB", "HN"}) {
        run.limitsTable.setCell(row, std::string(atom) + "_MIN", "-4");
        run.limitsTable.setCell(row, std::string(atom) + "_MAX", "4");
      }
    }
    run.cgShifts[3] = shift::missing;
  }

  void addShift(int residue, const char* atom, const char* text) {
    ShiftRow row;
    row.residue = residue;
    row.atom = atom;
    row.shiftText = text;
    row.rounding = 0.0005;
    inputs.shiftIndex[{residue, atom}] = inputs.shifts.size();
    inputs.shifts.push_back(row);
    setRow(residue, atom, text);
  }
  void setRow(int residue, const char* atom, const char* text) {
    const std::size_t row = run.shiftTable.appendRow();
    run.shiftTable.setCell(row, "RESID", std::to_string(residue));
    run.shiftTable.setCell(row, "ATOMNAME", atom);
    run.shiftTable.setCell(row, "SHIFT", text);
  }
  void fillGaps() {
    for (int residue = 2; residue <= 4; ++residue) {
      for (const auto& [index, atom] : run.atomNames) {
        const std::string number = std::to_string(residue);
        if (run.shiftTable.findRow("RESID", number, "ATOMNAME", atom) == GDB::noRow) {
          setRow(residue, atom.c_str(), "9999");
        }
      }
    }
  }
  const Term& term(const Evidence& evidence, int place, const char* atom) {
    for (const Term& candidate : evidence.terms) {
      if (candidate.place == place && candidate.atom == atom) {
        return candidate;
      }
    }
    throw std::out_of_range(atom);
  }

  CITRANS run;
  Inputs inputs;
};

TEST_F(OneProline, ContributionsAreThoseWorkedOutByHand) {
  addShift(2, "CA", "2.000");  // index 3: (2/4)^2/2 - ((2-3)/2)^2/2 = 0.125 - 0.125
  addShift(3, "CB", "9.000");  // index 10, clipped to 4: 1/2 - ((4-10)/2)^2/2 = -4
  addShift(4, "HN", "-2.000"); // index 17: 0.125 - (19/2)^2/2 = -45
  run.cgShifts[3] = 20;        // index 18: 12.5 - 0.5 = 12
  fillGaps();
  const Evidence evidence = gatherEvidence(run, inputs, 3);
  EXPECT_DOUBLE_EQ(term(evidence, 1, "CA").logRatio, 0);
  EXPECT_DOUBLE_EQ(term(evidence, 2, "CB").logRatio, -4);
  EXPECT_TRUE(term(evidence, 2, "CB").clipped);
  EXPECT_DOUBLE_EQ(term(evidence, 2, "CB").shift, 9);
  EXPECT_DOUBLE_EQ(term(evidence, 3, "HN").logRatio, -45);
  EXPECT_DOUBLE_EQ(term(evidence, 2, "CG").logRatio, 12);
  EXPECT_NEAR(term(evidence, 1, "type").logRatio, std::log(2.0), 1e-6);
  EXPECT_NEAR(term(evidence, 3, "type").logRatio, -std::log(4.0), 1e-6);
  EXPECT_FALSE(term(evidence, 1, "HN").present);
  EXPECT_FALSE(term(evidence, 2, "N").applicable);
  EXPECT_NEAR(evidence.logRatio, -37 - std::log(2.0), 1e-6);
  EXPECT_NEAR(static_cast<double>(evidence.core.cis), evidence.pCis, 1e-7);
}

TEST_F(OneProline, ClippingFollowsTheRun) {
  addShift(3, "CB", "9.000"); // unbounded: (9/4)^2/2 - ((9-10)/2)^2/2
  fillGaps();
  run.clipOn = false;
  const Evidence evidence = gatherEvidence(run, inputs, 3);
  EXPECT_DOUBLE_EQ(term(evidence, 2, "CB").logRatio, 2.53125 - 0.125);
  EXPECT_FALSE(term(evidence, 2, "CB").clipped);
}

TEST_F(OneProline, AnAmideProtonCalledHIsReadAsZero) {
  setRow(2, "H", "1.500");
  for (const char* atom : {"N", "HA", "C", "CA", "CB"}) {
    setRow(2, atom, "9999");
  }
  for (const char* atom : {"N", "HA", "C", "CA", "CB", "HN"}) {
    setRow(3, atom, "9999");
    setRow(4, atom, "9999");
  }
  const Term term1 = term(gatherEvidence(run, inputs, 3), 1, "HN");
  EXPECT_TRUE(term1.readAsZero);
  EXPECT_DOUBLE_EQ(term1.logRatio, -3.125); // index 5: 0 - (5/2)^2/2
}

TEST_F(OneProline, RoundingOfTheTablesIsAllowedForAndNoMore) {
  addShift(4, "HN", "4.000"); // slope (4-0)/16 - (4-17)/4 = 3.5 per ppm
  fillGaps();
  const Evidence evidence = gatherEvidence(run, inputs, 3);
  const double p = evidence.pCis;
  EXPECT_NEAR(evidence.rounding, p * (1 - p) * 3.5 * 0.0005, 1e-6);
  EXPECT_TRUE(evidence.agreesWith(p + 0.0005));
  EXPECT_FALSE(evidence.agreesWith(p + 0.01));
  EXPECT_FALSE(evidence.agreesWith(std::nan("")));
}

TEST_F(OneProline, OffsetsComeOffOnceOffCgToo) {
  setRow(3, "CA", "1.000");
  setRow(3, "CB", "2.000");
  setRow(3, "HA", "9999");
  setRow(3, "N", "1.500");
  run.cgShifts = {{3, 27.0F}, {4, shift::missing}};
  takeOffOnce(run, {0.25, 0.5, 0});
  EXPECT_EQ(run.shiftTable.cell(0, "SHIFT"), "0.750");
  EXPECT_EQ(run.shiftTable.cell(1, "SHIFT"), "1.750");
  EXPECT_EQ(run.shiftTable.cell(2, "SHIFT"), "9999");
  EXPECT_EQ(run.shiftTable.cell(3, "SHIFT"), "1.500");
  EXPECT_FLOAT_EQ(run.cgShifts[3], 26.75F);
  EXPECT_FLOAT_EQ(run.cgShifts[4], shift::missing);
}

TEST_F(OneProline, CarbonsAreThoseObservedWhateverWasTakenOff) {
  ShiftRow cb;
  cb.residue = 3;
  cb.atom = "CB";
  cb.shiftText = "2.500"; // 35 observed less 32 random coil less an offset of 0.5
  cb.observed = 35;
  cb.adjustment = 32;
  inputs.shiftIndex[{3, "CB"}] = 0;
  inputs.shifts.push_back(cb);
  SummaryRow row;
  row.residue = 3;
  row.cg = 25;
  EXPECT_EQ(carbonsOf(inputs, row).difference(), 10);
  inputs.about.corrections = {"0.500 ppm referencing offset applied for 13Ca and 13Cb"};
  EXPECT_TRUE(carbonsOf(inputs, row).cgSubtracted);
  EXPECT_DOUBLE_EQ(carbonsOf(inputs, row).difference().value(), 9.5); // CG was 25.5
  row.cg = static_cast<double>(shift::missing);
  EXPECT_FALSE(carbonsOf(inputs, row).difference().has_value());
}

/// Cis from 10 to 1 for cis, trans from 2 to 1 for trans. With CB alone trans takes little, but
/// three shifts; without both, nothing is cis.
calls::Rules someRules() {
  GDB table;
  std::string text =
      "VARS ASSIGNED CIS_FROM TRANS_TO TRANS_SHIFTS CIS_CALLS CIS_RIGHT TRANS_CALLS TRANS_RIGHT "
      "UNDECIDED\nFORMAT %s %f %f %d %d %f %d %f %d\n";
  for (const char* limits :
       {"both 1.0 -0.30103 0", "CB 1.0 0.30103 3", "CG 1.0 0.9 0", "neither 9999.0 -0.30103 0"}) {
    text += std::string(limits) + " 20 0.950 200 0.990 9\n";
  }
  table.loadText(text);
  return calls::Rules(table);
}

/// Evidence of this size, from shifts of the proline.
Evidence evidenceOf(double logRatio, const std::vector<const char*>& atoms) {
  Evidence evidence;
  evidence.logRatio = logRatio;
  for (const char* atom : atoms) {
    Term term;
    term.place = 2;
    term.residue = 3;
    term.atom = atom;
    term.kind = term.atom == "CG" ? Term::Kind::cg : Term::Kind::shift;
    term.present = true;
    evidence.terms.push_back(term);
  }
  return evidence;
}

TEST_F(OneProline, WordsFollowTheNumbersAndTheCall) {
  const struct {
    double pCisNorm;
    double logRatio;
    std::vector<const char*> atoms; ///< as many as the summary counts
    const char* headline;
    const char* holds;
  } rows[] = {
      {0.999, 9.8, {"CB", "CG"}, "cis", "strong"},
      {0.62, 3.4, {"CB", "CG"}, "probably cis", "clear"},
      {0.5,
       2.2,
       {"CB", "CG"},
       "undecided",
       "With CB and CG assigned, calling cis takes at least 10 to 1 for cis; calling trans takes "
       "at least 2.0 to 1 for trans."},
      {0.05, 0.0, {"CB", "CG"}, "undecided", "hardly any evidence"},
      {0.026, -0.75, {"CB", "CG"}, "trans", "hardly any evidence"},
      {0.001, -4.0, {"CB", "CG"}, "trans", "favour trans by 55 to 1"},
      {0.3, 2.0, {"CG"}, "probably trans", "leans to cis, 7.4 to 1, which is less than"},
      {0.5, 2.2, {"CB", "CA", "HA"}, "undecided", "at most 2.0 to 1 for cis and 3 shifts."},
      {0.001,
       -4.0,
       {"CB", "CA"},
       "undecided",
       "There are too few shifts for a call: 2 shifts and the neighbours favour trans by 55 to 1. "
       "With CB but no CG assigned, calling trans takes 3 shifts besides CG, counted as "
       "in CS_CNT; there are 2."},
      {0.001, -4.0, {"CB", "CA", "HA"}, "trans", "favour trans by 55 to 1"},
      {0.9,
       6.0,
       {"CA"},
       "undecided",
       "Without CB and CG, no evidence is enough for cis; calling trans takes at least 2.0 to 1 "
       "for trans."},
      {std::nan(""), 7.0, {}, "no call", "underflowed"},
      {std::nan(""), std::nan(""), {}, "no call", "no statistics"},
  };
  for (const auto& row : rows) {
    SummaryRow summary;
    summary.pCisNorm = row.pCisNorm;
    summary.shiftCounts = {0, static_cast<int>(row.atoms.size()), 0};
    const Verdict verdict =
        judge(evidenceOf(row.logRatio, row.atoms), summary, inputs, someRules());
    EXPECT_EQ(verdict.headline, row.headline) << row.logRatio;
    EXPECT_NE(verdict.evidence.find(row.holds), std::string::npos) << verdict.evidence;
  }
}

TEST_F(OneProline, NothingIsAgainstEvidenceThatNothingSpeaksFor) {
  Evidence evidence = evidenceOf(-1.2, {"C"});
  evidence.terms[0].logRatio = 1.5;
  SummaryRow summary;
  summary.pCisNorm = 0.02;
  EXPECT_EQ(judge(evidence, summary, inputs, someRules()).basis.substr(0, 45),
            "Single shifts speak for cis: C′ of Pro3 (+1");
}

TEST_F(OneProline, EvidenceThatCancelsOutIsNotCalledNone) {
  Evidence evidence = evidenceOf(-0.3, {"CB", "CG"});
  evidence.terms[0].logRatio = 5.4;
  evidence.terms[1].logRatio = -5.7;
  SummaryRow summary;
  summary.pCisNorm = 0.04;
  EXPECT_EQ(judge(evidence, summary, inputs, someRules()).evidence.substr(0, 25),
            "The evidence cancels out:");
}

TEST_F(OneProline, WhatTheEvidenceComesFromIsOnItsSideNotTheCalls) {
  Evidence evidence = evidenceOf(2.0, {"CG", "HA"});
  evidence.terms[0].logRatio = 3.5;
  evidence.terms[1].logRatio = -1.5;
  SummaryRow summary;
  summary.pCisNorm = 0.28;
  const Verdict verdict = judge(evidence, summary, inputs, someRules());
  EXPECT_EQ(verdict.call, Verdict::Call::trans);
  EXPECT_EQ(verdict.basis.substr(0, 72),
            "Most of it comes from CG of Pro3 (+3.5). Against it: HA of Pro3 (−1.5)");
}

TEST(About, ATitleIsCutOnlyWhereItIsAPath) {
  const struct {
    const char* title;
    const char* shown;
    const char* name; ///< of a protein that the table says nothing of
  } rows[] = {{"apo/holo", "apo/holo", "apo/holo"},
              {"Raf-1/RBD 2", "Raf-1/RBD 2", "Raf-1/RBD 2"},
              {"Raf/RBD.2", "Raf/RBD.2", "Raf/RBD.2"},
              {"shifts/apo", "apo", "apo"}, // the file that citrans read
              {"examples/ybbr.tab", "ybbr.tab", "ybbr.tab"},
              {"/my shifts/of it/apo", "apo", "apo"},
              {"", "", "this protein"}};
  for (const auto& row : rows) {
    Inputs inputs;
    inputs.title = row.title;
    inputs.about = aboutFrom({"CITRANS Protein Secondary Chemical Shift Table for shifts/apo"});
    EXPECT_EQ(inputs.shownTitle(), row.shown);
    EXPECT_EQ(inputs.proteinName(), row.name);
  }
}

TEST(About, TakesWhatTheImportSaid) {
  const struct {
    const char* remark;
    const char* protein;
  } rows[] = {{"entity 1 (Dhaf_0833) of 1 with 96 residues, shift list 1 (a) of 1", "Dhaf_0833"},
              {"entity Raf (x) of 1 with 9 residues, shift list 1 (a) of 1", "x"},
              {"entity Raf-1 of 1 with 9 residues, shift list 1 (a) of 1", "Raf-1"},
              {"entity 1 (residues named by the shifts) of 1 with 9 residues", ""},
              {"entity A (chain A) of 2 with 9 residues, shift list 1 (a) of 1", ""},
              {"entity 1 (entity_1) of 2 with 9 residues, shift list 1 (a) of 1", ""},
              {"entity 1 of 1 with 9 residues", ""},
              {"entity", ""}};
  for (const auto& row : rows) {
    const About about =
        aboutFrom({" Chemical shifts of NEF entry x, from a.nef", row.remark,
                   "Warning: 3 values left out", " 0.100 ppm referencing offset applied for 1Ha",
                   "referencing of C: off by 2.60 +/- 0.07 ppm, 81 points: taken off",
                   "referencing of HA: shifted by -0.100 ppm as told",
                   "referencing of HA: off by 0.01 +/- 0.02 ppm, 81 points: left as it is",
                   "CITRANS Protein Secondary Chemical Shift Table for x", "SHIFT is"});
    EXPECT_EQ(about.protein, row.protein);
    EXPECT_EQ(about.entry, "NEF entry x");
    EXPECT_EQ(about.source, "a.nef");
    EXPECT_EQ(about.warnings, std::vector<std::string>{"3 values left out"});
    EXPECT_EQ(about.corrections.size(), 3U);
    EXPECT_EQ(about.remarks.size(), 3U);
  }
}

TEST(About, AdviceThatWasFollowedIsNoWarning) {
  const char* const advice = "Warning: a sample is deuterated: consider citrans -iso";
  const char* const done = "Deuterium Isotope Shifts Correction Applied for 13Ca and 13Cb Nuclei";
  EXPECT_EQ(aboutFrom({advice, "Warning: x"}).warnings.size(), 2U);
  EXPECT_EQ(aboutFrom({advice, "Warning: x", done}).warnings, std::vector<std::string>{"x"});
}

TEST(About, AReferenceIsCalledAsTheFileThatWasGiven) {
  const struct {
    const char* title;
    const char* shown;
  } rows[] = {{"2kpu.ref.pdb", "2kpu"}, // the importer's name of what it renumbered
              {"structures/2kpu.ref.pdb", "2kpu"},
              {"structures/2kpu.pdb", "2kpu.pdb"},
              {"1TTZ chain A", "1TTZ chain A"},
              {"", ""}};
  for (const auto& row : rows) {
    Inputs inputs;
    inputs.referenceTitle = row.title;
    EXPECT_EQ(inputs.shownReference(), row.shown);
  }
}

TEST(Style, FilesHaveThePlainColoursOfThePage) {
  EXPECT_EQ(colour("cis").size(), 7U);
  EXPECT_EQ(colour("cis")[0], '#');
  EXPECT_NE(colour("cis"), colour("cis-soft"));
  EXPECT_THROW(colour("nothing"), std::out_of_range);
  EXPECT_EQ(pictureFileStyle().find("var("), std::string::npos);
  EXPECT_NE(pictureFileStyle().find(".picture .cis { fill: " + colour("cis") + "; }"),
            std::string::npos);
}

} // namespace
