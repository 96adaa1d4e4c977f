#include "tools/calls/calls.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "table/file_io.h"
#include "tools/common/plain_number.h"
#include "tools/common/tool.h"

namespace calls {
namespace {

constexpr char tableName[] = "calls.tab";
constexpr std::array<const char*, assignedCount> rowNames = {"neither", "CG", "CB", "both"};
/// Stands in the table for a limit that nothing reaches.
constexpr double never = 9999;
constexpr double infinite = std::numeric_limits<double>::infinity();

[[noreturn]] void refuse(const GDB& table, const std::string& what) {
  const std::string name = table.fileName().empty() ? tableName : table.fileName();
  throw ToolError(ToolStatus::badData, name + ": " + what);
}

double number(const GDB& table, std::size_t row, const char* column) {
  const std::string_view text = table.cell(row, column);
  const std::optional<double> value = plainNumber(text);
  if (!value) {
    refuse(table, std::string(column) + " is no number: '" + std::string(text) + "'");
  }
  return *value;
}

Tally tally(const GDB& table, std::size_t row, const char* calls, const char* right) {
  const int count = static_cast<int>(number(table, row, calls));
  return {count, count > 0 ? number(table, row, right) : std::numeric_limits<double>::quiet_NaN()};
}

/// Infinite, on the side given by a sign, for a limit that nothing reaches.
double limit(const GDB& table, std::size_t row, const char* column, double side) {
  const double value = number(table, row, column);
  return value == never ? std::copysign(infinite, side) : value;
}

Rule readRule(const GDB& table, std::size_t row) {
  Rule rule;
  rule.cisFrom = limit(table, row, "CIS_FROM", 1);
  rule.transTo = limit(table, row, "TRANS_TO", -1);
  rule.transShifts = static_cast<int>(number(table, row, "TRANS_SHIFTS"));
  rule.cis = tally(table, row, "CIS_CALLS", "CIS_RIGHT");
  rule.trans = tally(table, row, "TRANS_CALLS", "TRANS_RIGHT");
  rule.undecided = static_cast<int>(number(table, row, "UNDECIDED"));
  if (rule.cisFrom <= rule.transTo) {
    refuse(table, "CIS_FROM is not above TRANS_TO");
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
  for (std::size_t i = 0; i < assignedCount; ++i) {
    const std::size_t row = table.findRow("ASSIGNED", rowNames[i]);
    if (row == GDB::noRow || !table.getEntry("ASSIGNED", rowNames[i], 2).empty()) {
      refuse(table, std::string("not one row for ") + rowNames[i]);
    }
    rules_[i] = readRule(table, row);
  }
}

Rules Rules::load(const std::string& tabFolder) {
  const std::string path = tabFolder + "/" + tableName;
  std::optional<std::string> text = readWholeFile(path);
  if (!text) {
    throw ToolError(ToolStatus::inputMissing, path + ": cannot read the file");
  }
  GDB table;
  table.loadText(std::move(*text));
  return Rules(table);
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
