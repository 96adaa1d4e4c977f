#include "app/citrans.h"
#include "table/message_text.h"

void CITRANS::runPredict() {
  init();
  predictInput();
}

void CITRANS::predictInput() {
  out(noPath ? "Analyzing Chemical Shifts \n" : "Analyzing " + messageText(inName) + " ...\n");
  getResInfo();
  predictProlines();
  printListing();
  if (writesFiles) {
    summary.saveGDB(sumName);
  }
}

void CITRANS::predictProlines() {
  predictions.clear();
  setUpSummary();
  if (!refName.empty() && reference.fileName != refName) {
    reference.loadPDB(refName);
  }
  for (const int proline : prolinesInRange()) {
    const Triplet triplet = getTriplet(proline);
    if (testTriplet(triplet)) {
      predictions.push_back(predictProline(triplet, proline));
      addToSummary(predictions.back());
    }
  }
}

std::vector<int> CITRANS::prolinesInRange() const {
  std::vector<int> prolines;
  const auto end = sequence.upper_bound(lastInRange);
  for (auto residue = sequence.lower_bound(firstInRange); residue != end; ++residue) {
    if (residue->second == "P") {
      prolines.push_back(residue->first);
    }
  }
  return prolines;
}

Prediction CITRANS::predictProline(const Triplet& triplet, int proline) {
  Prediction prediction;
  prediction.residue = proline;
  for (int k = 1; k <= 3; ++k) {
    const auto at = static_cast<std::size_t>(k) - 1;
    prediction.names.at(at) = triplet.at("RESNAME_R" + std::to_string(k));
    prediction.shiftCounts.at(at) = static_cast<int>(atomNames.size()) - missCount[proline + k - 2];
  }
  prediction.cgShift = cgShifts[proline];
  prediction.likelihood = getLikelihood(triplet, prediction.cgShift);
  if (!refName.empty()) {
    const std::string code = reference.resCodes[proline];
    prediction.referenceName = code.empty() ? "X" : code;
    prediction.referenceOmega = reference.getOmega(1, proline);
  }
  return prediction;
}
