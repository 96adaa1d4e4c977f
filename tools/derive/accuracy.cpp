#include "tools/derive/accuracy.h"

#include "tools/common/tool.h"
#include "tools/derive/accuracy_sections.h"
#include "tools/derive/calibration_picture.h"

namespace derive {
namespace {

std::string introduction(const Derivation& derivation) {
  const Training& training = derivation.training();
  const std::vector<bool> all(training.proteins.size(), true);
  return "# Accuracy\n\n"
         "Every figure on this page comes from one command and can be repeated with it "
         "(tools/derive/README.md\nsays how to lay out the data):\n\n"
         "    citrans-derive accuracy DATA docs\n\n"
         "Data: " +
         describeSelection(training, all) + "; " + std::to_string(training.disputed) +
         " prolines with disputed labels are left out.\n"
         "Method: 10-fold cross-validation. Related proteins share a cluster and a fold; "
         "adjustments,\nlimits, statistics and the common factor are derived anew from the other "
         "nine folds, written as\ntables, and read by the program's own code, which makes the "
         "secondary shifts, bounds them and\ncomputes P_CIS_NORM. AUC: area under the curve of "
         "sensitivity against false positives. MCC:\nMatthews correlation. Log loss in nats. "
         "Calibration error: mean distance between probability and\nshare of cis over ten "
         "bins.\n\n";
}

} // namespace

std::map<std::string, std::string> accuracyDocuments(const Derivation& derivation,
                                                     const Progress& progress) {
  const CrossValidation result = crossValidate(derivation, Extent::otherChoices, progress);
  progress("final tables");
  const std::vector<bool> all(derivation.training().proteins.size(), true);
  const TableSet tables = derivation.derive(all, progress);
  std::map<std::string, std::string> files;
  files["accuracy.md"] = introduction(derivation) + truthSection(result) + presenceSection(result) +
                         comparisonSection(result, tables.published.rule) + penaltySection(result) +
                         labelSection(derivation.training(), result) +
                         calibrationSection(derivation.training(), result, tables) +
                         referencingSection(result) + correctionSection(result) +
                         experimentSection(result) + callSection(result) +
                         statisticsSection(tables) + wrongSection(derivation.training(), result);
  files["accuracy-calibration-cg.svg"] =
      calibrationPicture(measure(callsOf(result, cgGiven, anyTruth)), "CG where assigned");
  files["accuracy-calibration-no-cg.svg"] =
      calibrationPicture(measure(callsOf(result, cgHidden, anyTruth)), "CG hidden");
  return files;
}

} // namespace derive
