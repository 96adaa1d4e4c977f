#include <cstdio>

#include "app/citrans.h"
#include "table/message_text.h"

void CITRANS::runPredict() {
  init();
  if (noPath) {
    std::puts("Analyzing Chemical Shifts ");
  } else {
    std::printf("Analyzing %s ...\n", messageText(inName).c_str());
  }
  getResInfo();

  GDB summary;
  setUpSummary(summary);
  PDB reference;
  if (!refName.empty()) {
    reference.loadPDB(refName);
  }
  for (const int proline : prolinesInRange()) {
    predictProline(proline, reference, summary);
  }
  std::puts("\nPredicting Pro Xaa-Pro Conformation ...\n");
  if (!quiet) {
    printListing(summary);
  }
  summary.saveGDB(sumName);
}

std::vector<int> CITRANS::prolinesInRange() const {
  std::vector<int> prolines;
  const auto end = sequence.upper_bound(lastResID);
  for (auto residue = sequence.lower_bound(firstResID); residue != end; ++residue) {
    if (residue->second == "P") {
      prolines.push_back(residue->first);
    }
  }
  return prolines;
}

void CITRANS::predictProline(int proline, PDB& reference, GDB& summary) {
  const Triplet triplet = getTriplet(proline);
  if (!testTriplet(triplet)) {
    return;
  }
  const float cgShift = cgShifts[proline];
  const CisLikelihood likelihood = getLikelihood(triplet, cgShift);
  const auto store = [&](const char* column, const std::string& value) {
    summary.setEntry(proline, column, value);
  };
  store("RESID", triplet.at("RESID_R2"));
  for (int k = 1; k <= 3; ++k) {
    const std::string place = std::to_string(k);
    const int present = static_cast<int>(atomNames.size()) - missCount[proline + k - 2];
    store(("RESNAME_R" + place).c_str(), triplet.at("RESNAME_R" + place));
    store(("CS_CNT" + place).c_str(), itoa(present, textBuffer, 10));
  }
  store("CG_SHIFT", ftoa(cgShift, textBuffer, 'g', 6));
  store("P_CIS", ftoa(likelihood.cis, textBuffer, 'g', 6));
  store("P_CIS_NORM", ftoa(likelihood.normalised, textBuffer, 'g', 6));
  if (!refName.empty()) {
    const std::string code = reference.resCodes[proline];
    store("RESNAME_REF", code.empty() ? "X" : code);
    store("OMEGA_REF", ftoa(reference.getOmega(1, proline), textBuffer, 'g', 6));
  }
}
