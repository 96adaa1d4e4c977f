#include "tools/calls/calls.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "tools/common/checked_table.h"

namespace calls {
namespace {

constexpr char tableName[] = "calls.tab";
constexpr std::array<const char*, assignedCount> rowNames = {"neither", "CG", "CB", "both"};
/// Stands in the table for a limit that nothing reaches.
constexpr double never = 9999;
constexpr double infinite = std::numeric_limits<double>::infinity();

Tally tally(const CheckedTable& table, std::size_t row, const char* calls, const char* right) {
  const int count = static_cast<int>(table.number(row, calls));
  return {count, count > 0 ? table.number(row, right) : std::numeric_limits<double>::quiet_NaN()};
}

/// Infinite, on the side given by a sign, for a limit that nothing reaches.
double limit(const CheckedTable& table, std::size_t row, const char* column, double side) {
  const double value = table.number(row, column);
  return value == never ? std::copysign(infinite, side) : value;
}

Rule readRule(const CheckedTable& table, std::size_t row) {
  Rule rule;
  rule.cisFrom = limit(table, row, "CIS_FROM", 1);
  rule.transTo = limit(table, row, "TRANS_TO", -1);
  rule.transShifts = static_cast<int>(table.number(row, "TRANS_SHIFTS"));
  rule.cis = tally(table, row, "CIS_CALLS", "CIS_RIGHT");
  rule.trans = tally(table, row, "TRANS_CALLS", "TRANS_RIGHT");
  rule.undecided = static_cast<int>(table.number(row, "UNDECIDED"));
  if (rule.cisFrom <= rule.transTo) {
    table.refuse("CIS_FROM is not above TRANS_TO");
  }
  return rule;
}

} // namespace

const char* word(Call call) {
  switch (call) {
  case Call::cis:
    return "cis";
  case Call::trans:
    return "trans";
  case Call::undecided:
    break;
  }
  return "undecided";
}

const char* describe(Assigned assigned) {
  constexpr const char* texts[assignedCount] = {"neither CB nor CG", "CG, no CB", "CB, no CG",
                                                "CB and CG"};
  return texts[static_cast<std::size_t>(assigned)];
}

double evidence(double pCis) {
  // At 0 and 1 the logarithm is infinite, which the bounds take in.
  const double logOdds = std::log10(pCis / (1 - pCis));
  return std::isnan(logOdds) ? logOdds : std::clamp(logOdds, -mostEvidence, mostEvidence);
}

Rules::Rules(const GDB& table) {
  const CheckedTable checked(table, tableName);
  for (std::size_t i = 0; i < assignedCount; ++i) {
    const std::size_t row = table.findRow("ASSIGNED", rowNames[i]);
    if (row == GDB::noRow || !table.getEntry("ASSIGNED", rowNames[i], 2).empty()) {
      checked.refuse(std::string("not one row for ") + rowNames[i]);
    }
    rules_[i] = readRule(checked, row);
  }
}

Rules Rules::load(const std::string& tabFolder) {
  return Rules(readTableFile(tabFolder + "/" + tableName));
}

Call Rules::call(double evidence, Assigned assigned, int shifts) const {
  const Rule& limits = rule(assigned);
  if (evidence >= limits.cisFrom) {
    return Call::cis;
  }
  const bool isTrans = evidence <= limits.transTo && shifts >= limits.transShifts;
  return isTrans ? Call::trans : Call::undecided;
}

} // namespace calls
