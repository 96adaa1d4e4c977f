#pragma once

#include <string>
#include <vector>

#include "tools/report/verdict.h"

/// The sentences of a verdict. They speak of the evidence by its sum, so that they hold for every
/// call that the rules can make of it.

/// The evidence as the rules take it: odds before the prior, in powers of ten; may be not-a-number.
double powersOfTen(const Evidence& evidence);

/// How much evidence there is, and for which form.
///
/// \param shifts  as the rules count them, from the counts of the summary
std::string evidenceSentence(const Evidence& evidence, Verdict::Call call, const calls::Rule& rule,
                             int shifts);

/// What a call would have taken, for an undecided proline.
///
/// \param shifts  as the rules count them, from the counts of the summary
std::string neededSentence(const Evidence& evidence, const calls::Rule& rule,
                           calls::Assigned assigned, int shifts);

/// What the evidence comes from, what speaks against it, and what is missing.
std::string basisSentences(const Evidence& evidence, const Inputs& inputs);

/// Shifts so far from the means of both forms that they alone make either all but impossible.
std::vector<std::string> farFromBoth(const Evidence& evidence, const Inputs& inputs);
