#pragma once

#include <string>

#include "tools/report/evidence.h"

/// What the report says of one proline.
struct Verdict {
  enum class Call { cis, trans, undecided, none };
  Call call = Call::none;
  bool settled = false; ///< P_CIS_NORM at most 0.1 or at least 0.9
  std::string headline; ///< "cis", "probably trans", "no call", "not predicted"
  std::string evidence; ///< one sentence: how strong, for what
  std::string basis;    ///< what it rests on, what speaks against, what is missing; plain text
  calls::Assigned assigned = calls::Assigned::neither; ///< of CB and CG
  calls::Tally likeThis; ///< how often such calls are right; no calls where that is not known

  /// Whether there is a call that "probably" stands before.
  bool isOpen() const { return (call == Call::cis || call == Call::trans) && !settled; }
};

/// The call that all tools give, and words on the evidence. Without a printed likelihood there is
/// no call, and the words say why.
Verdict judge(const Evidence& evidence, const SummaryRow& row, const Inputs& inputs,
              const calls::Rules& rules);

/// The verdict on a proline without a row in the summary.
Verdict notPredicted(const Inputs& inputs, int proline);

/// The call alone, from the evidence and the counts of shifts in the summary; none when the
/// evidence is no number.
Verdict::Call callFrom(const Evidence& evidence, const SummaryRow& row, const calls::Rules& rules);

/// Whether the shifts say another form than the reference structure has.
bool disagrees(Verdict::Call call, const SummaryRow& row);

/// "cis", "trans", "undecided" or "none".
const char* callName(Verdict::Call call);

/// "CB of Ser81", "type of Arg83": one term in words.
std::string termLabel(const Term& term, const Inputs& inputs);
