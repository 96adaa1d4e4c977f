#include <cmath>
#include <limits>

#include "app/citrans.h"
#include "table/number.h"

namespace {

/// Statistics index of the proline's CG shift, after the 18 of the triplet.
constexpr int cgIndex = 18;
/// Trans prolines for one cis proline, the prior odds of the normalised likelihood.
constexpr float transPerCis = 19;

using Statistics = std::map<int, float>;

/// Multiplies `product` by the Gaussian exp(-z*z/2) of a shift; the exponential is taken in double
/// precision, the product kept in single precision.
void multiplyGaussian(float& product, float shift, float average, float deviation) {
  const float z = (shift - average) / deviation;
  const double gaussian = std::exp(-0.5 * static_cast<double>(z * z));
  product = static_cast<float>(static_cast<double>(product) * gaussian);
}

} // namespace

CisLikelihood CITRANS::getLikelihood(const Triplet& triplet, float cgShift) {
  float cis = 1;
  float trans = 1;
  const auto multiplyBoth = [&](float shift, int index) {
    multiplyGaussian(cis, shift, proAvgCis[index], proStdCis[index]);
    multiplyGaussian(trans, shift, proAvgTrans[index], proStdTrans[index]);
  };
  const auto valueOf = [&triplet](const std::string& key) {
    const auto found = triplet.find(key);
    return found == triplet.end() ? std::string() : found->second;
  };

  int index = 0;
  for (const char* residue : {"_R1", "_R2", "_R3"}) {
    for (const auto& [atomIndex, atom] : atomNames) {
      const float secondary = parseFloat(valueOf(atom + residue));
      if (!(secondary > shift::largestPredicted)) {
        multiplyBoth(secondary, index);
      }
      ++index;
    }
  }
  const std::string before = valueOf("RESNAME_R1");
  const std::string after = valueOf("RESNAME_R3");
  cis = proCisSeq[before][1] * proCisSeq[after][3] * cis;
  trans = proTransSeq[before][1] * proTransSeq[after][3] * trans;
  if (static_cast<double>(cgShift) < shift::missingFrom) {
    multiplyBoth(cgShift, cgIndex);
  }

  // Kept: two products of 0, as for a residue without statistics, give not-a-number, printed with
  // the sign that x86 gives to 0/0; other processors give it another.
  if (cis == 0.0F && trans == 0.0F) {
    constexpr float neither = -std::numeric_limits<float>::quiet_NaN();
    return {neither, neither};
  }
  CisLikelihood likelihood{};
  likelihood.cis = cis / (cis + trans);
  likelihood.normalised = likelihood.cis / (likelihood.cis + transPerCis * (1.0F - likelihood.cis));
  return likelihood;
}
