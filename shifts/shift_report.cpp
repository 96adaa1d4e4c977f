#include "app/citrans.h"
#include "table/message_text.h"

namespace {

/// The words for one nucleus. Kept: the line of HA breaks and spells its size otherwise.
struct Words {
  const char* nucleus;  ///< of a shortage
  const char* checked;  ///< what is then not checked
  const char* estimate; ///< up to the number
  const char* size;
};

constexpr Words alphaBetaCarbon = {"CA", "CA/CB", "CA/CB: ", "Size"};
constexpr Words alphaProton = {"HA", "HA", "HA:\n     ", "size"};
constexpr Words carbonyl = {"C'", "C'", "C':    ", "Size"};

std::string outlierLine(const Outlier& outlier) {
  return formatted("  %3d %s %3s Secondary Shift: %8.3f    Limit: %8.3f%s\n", outlier.residue,
                   messageText(outlier.name).c_str(), messageText(outlier.atom).c_str(),
                   outlier.shift, static_cast<double>(outlier.limit), outlier.marked ? " !" : "");
}

std::string shortageLine(const Words& words) {
  return formatted("  Not enough %s shifts to check %s chemical shift referencing offset ...\n",
                   words.nucleus, words.checked);
}

std::string estimateLine(const Words& words, const OffsetEstimate& estimate) {
  return formatted(" Estimated Referencing Offset for %s%6.3f +/- %6.3fppm %s: %3d\n",
                   words.estimate, static_cast<double>(estimate.offset),
                   static_cast<double>(estimate.error), words.size,
                   static_cast<int>(estimate.points));
}

} // namespace

void CITRANS::printShiftCheck() const {
  out("\nChecking for Chemical Shift Outliers ...\n");
  for (const Outlier& outlier : shiftCheck.outliers) {
    out(outlierLine(outlier));
  }
  out("\nChecking Chemical Shift Referencing ...\n");
  const auto print = [this](const Words& words, const OffsetEstimate& estimate) {
    if (estimate.shortage) {
      errors(shortageLine(words));
    }
    if (estimate.counts) {
      out(estimateLine(words, estimate));
    }
  };
  print(alphaBetaCarbon, shiftCheck.offsets.ca);
  print(alphaProton, shiftCheck.offsets.ha);
  print(carbonyl, shiftCheck.offsets.c);
}
