#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "tools/calls/calls.h"
#include "tools/common/tool.h"

namespace calls {
namespace {

using Cells = std::vector<std::string>;

GDB tableOf(const std::vector<Cells>& rows) {
  const char* const columns[] = {"ASSIGNED",     "CIS_FROM",    "TRANS_TO",
                                 "TRANS_SHIFTS", "CIS_CALLS",   "CIS_RIGHT",
                                 "TRANS_CALLS",  "TRANS_RIGHT", "UNDECIDED"};
  GDB table;
  table.VARS_str_parser(
      "ASSIGNED CIS_FROM TRANS_TO TRANS_SHIFTS CIS_CALLS CIS_RIGHT TRANS_CALLS TRANS_RIGHT "
      "UNDECIDED");
  table.FORMAT_str_parser("%-8s %8.1f %8.1f %4d %9d %9.3f %9d %9.3f %9d");
  for (const Cells& cells : rows) {
    const std::size_t row = table.appendRow();
    for (std::size_t i = 0; i < cells.size(); ++i) {
      table.setCell(row, columns[i], cells[i]);
    }
  }
  return table;
}

std::vector<Cells> goodRows() {
  return {{"both", "1.3", "1.2", "0", "100", "0.990", "1000", "0.999", "3"},
          {"CB", "2.0", "-0.5", "9", "50", "0.960", "900", "0.992", "200"},
          {"CG", "1.5", "1.0", "0", "60", "0.950", "800", "0.995", "10"},
          {"neither", "9999", "9999", "0", "0", "9999", "0", "9999", "700"}};
}

TEST(Calls, EvidenceIsThePowerOfTenOfTheOddsBeforeThePrior) {
  EXPECT_DOUBLE_EQ(evidence(0.5), 0);
  EXPECT_NEAR(evidence(0.95), std::log10(19.0), 1e-12);
  EXPECT_NEAR(evidence(1.0 / 1001), -3, 1e-12);
  EXPECT_DOUBLE_EQ(evidence(1), mostEvidence);
  EXPECT_DOUBLE_EQ(evidence(0), -mostEvidence);
  EXPECT_DOUBLE_EQ(evidence(1e-30), -mostEvidence);
  EXPECT_TRUE(std::isnan(evidence(std::nan(""))));
}

TEST(Calls, FollowTheLimitsOfWhatIsAssigned) {
  struct Case {
    double evidence;
    bool cb, cg;
    int shifts;
    Call call;
  };
  const Rules rules(tableOf(goodRows()));
  for (const Case& c :
       {Case{1.3, true, true, 16, Call::cis}, Case{1.29, true, true, 16, Call::undecided},
        Case{1.2, true, true, 16, Call::trans}, Case{1.9, true, false, 16, Call::undecided},
        Case{-0.5, true, false, 9, Call::trans}, Case{-7, true, false, 8, Call::undecided},
        Case{3, true, false, 0, Call::cis}, Case{1.4, false, true, 16, Call::undecided},
        Case{7, false, false, 16, Call::undecided}, Case{-7, false, false, 16, Call::undecided},
        Case{std::nan(""), true, true, 16, Call::undecided}}) {
    EXPECT_EQ(rules.call(c.evidence, assigned(c.cb, c.cg), c.shifts), c.call)
        << c.evidence << " " << describe(assigned(c.cb, c.cg));
  }
  // N and HN of a proline do not count.
  EXPECT_EQ(shiftCount({6, 6, 5}), 15);
  EXPECT_EQ(shiftCount({0, 3, 2}), 5);
  EXPECT_STREQ(word(Call::cis), "cis");
  EXPECT_STREQ(word(Call::trans), "trans");
  EXPECT_STREQ(word(Call::undecided), "undecided");
  EXPECT_EQ(rules.rule(Assigned::cb).cis.calls, 50);
  EXPECT_DOUBLE_EQ(rules.rule(Assigned::cb).trans.right, 0.992);
  EXPECT_TRUE(std::isnan(rules.rule(Assigned::neither).cis.right));
}

TEST(Calls, RefuseATableThatIsNotWhole) {
  struct Case {
    std::size_t row, cell;
    const char* text;
    const char* complaint;
  };
  for (const Case& c :
       {Case{0, 0, "CB", "not one row for"}, Case{1, 0, "other", "not one row for CB"},
        Case{0, 1, "", "CIS_FROM is no number"}, Case{2, 2, "1.0x", "TRANS_TO is no number"},
        Case{2, 1, "nan", "CIS_FROM is no number"}, Case{1, 7, "high", "TRANS_RIGHT is no number"},
        Case{0, 2, "1.3", "CIS_FROM is not above TRANS_TO"}}) {
    std::vector<Cells> rows = goodRows();
    rows[c.row][c.cell] = c.text;
    try {
      const Rules rules(tableOf(rows));
      ADD_FAILURE() << "taken: " << c.text;
    } catch (const ToolError& error) {
      EXPECT_EQ(error.status(), ToolStatus::badData);
      EXPECT_NE(std::string(error.what()).find(c.complaint), std::string::npos) << error.what();
    }
  }
  EXPECT_THROW(Rules::load("/nonexistent"), ToolError);
}

TEST(Calls, NoEvidenceIsNoCallWithTheShippedLimits) {
  const Rules rules = Rules::load(SHIPPED_TABLES);
  EXPECT_EQ(rules.call(0, Assigned::neither, 16), Call::undecided);
  for (const Assigned each : {Assigned::cb, Assigned::cg, Assigned::both}) {
    EXPECT_EQ(rules.call(mostEvidence, each, 16), Call::cis) << describe(each);
    EXPECT_EQ(rules.call(-mostEvidence, each, 16), Call::trans) << describe(each);
    EXPECT_GE(rules.rule(each).cis.right, 0.95) << describe(each);
    EXPECT_GE(rules.rule(each).trans.right, 0.99) << describe(each);
  }
}

} // namespace
} // namespace calls
