#include "tools/derive/accuracy_sections.h"
#include "tools/derive/markdown.h"

namespace derive {
namespace {

/// Prolines by their true form.
struct FormCounts {
  double cis = 0, trans = 0;
};

FormCounts countLabels(const Training& training, Source source) {
  FormCounts counts;
  for (const LabelledProline& proline : training.prolines) {
    if (proline.source == source) {
      (proline.cis ? counts.cis : counts.trans) += 1;
    }
  }
  return counts;
}

/// Shares of the cis and of the trans labels of one source that are wrong.
struct LabelErrors {
  FormCounts structure, shifts;
};

/// Errors when a share of the contradictions is the structure's fault, and the others that of CB
/// and CG. A label that both support is taken to be right.
LabelErrors errorsOf(const Training& training, double faultOfStructure) {
  const FormCounts both = countLabels(training, Source::both);
  const auto cis = static_cast<double>(training.contradictedCis);
  const auto trans = static_cast<double>(training.contradictedTrans);
  const double faultOfShifts = 1 - faultOfStructure;
  // What is cis by the structure is trans by the shifts.
  return {
      {faultOfStructure * cis / (both.cis + cis), faultOfStructure * trans / (both.trans + trans)},
      {faultOfShifts * trans / (both.cis + trans), faultOfShifts * cis / (both.trans + cis)}};
}

/// The MCC, against the labels, of calls that are all right.
template <class Keep>
double perfectMatthews(const CrossValidation& result, const LabelErrors& errors, Keep keep) {
  FormCounts right;
  FormCounts wrong;
  for (const ScoredProline& proline : result.prolines) {
    if (!proline.predicted[cgHidden] || !keep(proline)) {
      continue;
    }
    const Source source = proline.label.source;
    const FormCounts& rates = source == Source::structure ? errors.structure : errors.shifts;
    const double rate = source == Source::both ? 0 : proline.label.cis ? rates.cis : rates.trans;
    (proline.label.cis ? right.cis : right.trans) += 1 - rate;
    (proline.label.cis ? wrong.cis : wrong.trans) += rate;
  }
  return matthews(right.cis, wrong.cis, wrong.trans, right.trans);
}

std::string shares(const FormCounts& rates) {
  return percent(rates.cis) + ", " + percent(rates.trans);
}

} // namespace

std::string labelSection(const Training& training, const CrossValidation& result) {
  const FormCounts both = countLabels(training, Source::both);
  const std::size_t cis = training.contradictedCis;
  const std::size_t trans = training.contradictedTrans;
  const LabelErrors errors = errorsOf(training, 1);
  std::string text =
      "## How far the labels can be trusted\n\n"
      "Where a structure and CB - CG both speak, CB - CG contradicts " +
      std::to_string(cis) + " of " + fixed(both.cis + static_cast<double>(cis), 0) + " cis (" +
      percent(errors.structure.cis, 0) + ") and\n" + std::to_string(trans) + " of " +
      fixed(both.trans + static_cast<double>(trans), 0) + " trans prolines (" +
      percent(errors.structure.trans) +
      "). These are disputed and left out, but labels that rest on one\nof the two alone must be "
      "wrong about as often, and which of the two errs cannot be told. So no\npredictor reaches an "
      "MCC of 1 on them; one that is always right would be expected to reach\n\n";
  struct Supposition {
    const char* name;
    double faultOfStructure;
  };
  std::vector<std::vector<std::string>> rows;
  for (const Supposition& supposition :
       {Supposition{"always the structure", 1}, Supposition{"each half of the time", 0.5},
        Supposition{"always CB or CG", 0}}) {
    const LabelErrors wrong = errorsOf(training, supposition.faultOfStructure);
    rows.push_back({supposition.name, shares(wrong.structure), shares(wrong.shifts),
                    fixed(perfectMatthews(result, wrong, shiftsAgree), 2),
                    fixed(perfectMatthews(result, wrong, anyTruth), 2)});
  }
  return text +
         markdownTable({"what errs where they differ", "*structure* wrong: cis, trans",
                        "*shifts* wrong: cis, trans", "MCC, *both* and *shifts*", "MCC, all"},
                       rows);
}

} // namespace derive
