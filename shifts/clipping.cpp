#include "app/citrans.h"
#include "table/message_text.h"
#include "table/number.h"

float CITRANS::clipSShift(int residue, float secondaryShift, const std::string& atom) {
  const std::string& name = sequence[residue];
  const bool present = static_cast<double>(secondaryShift) < shift::missingFrom;
  if (!present) {
    return secondaryShift; // most rows of a sparse table: nothing to look up
  }
  const std::size_t row = limitsTable.findRow("RESNAME", name);
  const float lowest = parseFloat(limitsTable.cell(row, atom + "_MIN"));
  const float highest = parseFloat(limitsTable.cell(row, atom + "_MAX"));
  float bounded = secondaryShift;
  if (secondaryShift < lowest) {
    bounded = lowest;
  } else if (secondaryShift > highest) {
    bounded = highest;
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
