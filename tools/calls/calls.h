#pragma once

#include <array>
#include <string>

#include "table/gdb.h"

/// The one place of the words `cis`, `trans` and `undecided`.
///
/// A call rests on the evidence before the prior, on which of a proline's two telling carbons, CB
/// and CG, have a shift, and on how many shifts there are; on nothing else. Where neither form is
/// supported well enough, the proline is undecided: a likelihood near the prior is no evidence for
/// trans. The limits come from the table calls.tab, which `citrans-derive companions` makes by
/// cross-validation.
namespace calls {

enum class Call { undecided, trans, cis };

/// "undecided", "trans" or "cis": the words of every output.
const char* word(Call call);

/// What a proline's own telling carbons are worth a call: one limit each.
enum class Assigned : std::size_t { neither, cg, cb, both };
constexpr std::size_t assignedCount = 4;
constexpr Assigned assigned(bool hasCb, bool hasCg) {
  return hasCb ? (hasCg ? Assigned::both : Assigned::cb)
               : (hasCg ? Assigned::cg : Assigned::neither);
}
/// "CB and CG", "CB, no CG", "CG, no CB", "neither CB nor CG".
const char* describe(Assigned assigned);

/// Size of the largest evidence: single precision tells P_CIS from 1 no better.
constexpr double mostEvidence = 7;

/// log10(P_CIS / (1 - P_CIS)): the odds of cis to trans that the shifts and the neighbours give, in
/// powers of ten, before the 19 to 1 of the prior. 0 is no evidence; P_CIS_NORM exceeds 0.5 above
/// 1.28.
///
/// \param pCis  P_CIS as computed, not as printed: three decimals lose what lies beyond 3
/// \return within -mostEvidence and mostEvidence; not-a-number when P_CIS is
double evidence(double pCis);

/// The shifts that a call can rest on, at most 16, from the counts of the residue before, the
/// proline and the residue after (CS_CNT1 to CS_CNT3): N and HN of a proline are not used. CG comes
/// on top.
constexpr int shiftCount(const std::array<int, 3>& counts) {
  constexpr int usedOfProline = 4;
  return counts[0] + (counts[1] < usedOfProline ? counts[1] : usedOfProline) + counts[2];
}

/// How often the calls of one kind were right in cross-validation.
struct Tally {
  int calls = 0;
  double right = 0; ///< share of the calls, 0 to 1; not-a-number for no calls
};

/// Limits of the evidence for one state of assignment, and what they were worth.
struct Rule {
  double cisFrom = 0;  ///< cis from this evidence on; infinite when no evidence is enough
  double transTo = 0;  ///< trans up to this evidence; minus infinite likewise
  int transShifts = 0; ///< trans only with at least so many shifts
  Tally cis, trans;
  int undecided = 0; ///< prolines of the cross-validation that got neither word
};

class Rules {
 public:
  /// Reads the rows of calls.tab: ASSIGNED (both, CB, CG or neither), CIS_FROM, TRANS_TO (9999:
  /// never), TRANS_SHIFTS, CIS_CALLS, CIS_RIGHT, TRANS_CALLS, TRANS_RIGHT, UNDECIDED.
  ///
  /// Throws ToolError(badData) for a row that is missing or occurs twice, a cell that is no number,
  /// and limits that overlap.
  explicit Rules(const GDB& table);

  /// Reads calls.tab of a folder of tables. Throws ToolError(inputMissing) when it is not there.
  static Rules load(const std::string& tabFolder);

  /// The word for a proline; `undecided` for evidence that is not a number.
  Call call(double evidence, Assigned assigned, int shifts) const;

  const Rule& rule(Assigned assigned) const { return rules_[static_cast<std::size_t>(assigned)]; }

 private:
  std::array<Rule, assignedCount> rules_{};
};

} // namespace calls
