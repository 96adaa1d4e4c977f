#pragma once

#include <string>

#include "tools/report/evidence.h"

/// What the report says of one proline.
struct Verdict {
  enum class Call { cis, trans, none };
  Call call = Call::none;
  bool settled = false; ///< P_CIS_NORM at most 0.1 or at least 0.9
  std::string headline; ///< "cis", "probably trans", "no call", "not predicted"
  std::string evidence; ///< one sentence: how strong, for what
  std::string basis;    ///< what it rests on, what speaks against, what is missing; plain text
};

/// The call from the printed P_CIS_NORM, above 0.5 being cis, and words on the evidence. Without a
/// printed likelihood there is no call, and the words say why.
Verdict judge(const Evidence& evidence, const SummaryRow& row, const Inputs& inputs);

/// The verdict on a proline without a row in the summary.
Verdict notPredicted(const Inputs& inputs, int proline);

/// The call alone, from a P_CIS_NORM.
Verdict::Call callFrom(double pCisNorm);

/// "cis", "trans" or "none".
const char* callName(Verdict::Call call);

/// "CB of Ser81", "type of Arg83": one term in words.
std::string termLabel(const Term& term, const Inputs& inputs);
