#include "app/citrans.h"
#include "table/message_text.h"
#include "table/number.h"

const ShiftLimits& CITRANS::shiftLimits(const std::string& name, const std::string& atom) {
  const auto [known, isNew] = limitsByName.try_emplace(name + " " + atom);
  if (isNew) {
    const std::size_t row = limitsTable.findRow("RESNAME", name);
    known->second = {parseFloat(limitsTable.cell(row, atom + "_MIN")),
                     parseFloat(limitsTable.cell(row, atom + "_MAX"))};
  }
  return known->second;
}

float CITRANS::clipSShift(int residue, float secondaryShift, const std::string& atom) {
  const std::string& name = sequence[residue];
  const bool present = static_cast<double>(secondaryShift) < shift::missingFrom;
  if (!present) {
    return secondaryShift; // most rows of a sparse table: nothing to look up
  }
  const ShiftLimits& limits = shiftLimits(name, atom);
  float bounded = secondaryShift;
  if (secondaryShift < limits.lowest) {
    bounded = limits.lowest;
  } else if (secondaryShift > limits.highest) {
    bounded = limits.highest;
  } else {
    return secondaryShift;
  }
  // Dormant: no option sets `reportClip`.
  if (reportClip && !quiet) {
    out(formatted(" Clipped %3d %s %3s Secondary Shift: %8.3f Limit: %8.3f\n", residue,
                  messageText(name).c_str(), messageText(atom).c_str(),
                  static_cast<double>(secondaryShift), static_cast<double>(bounded)));
  }
  return bounded;
}
