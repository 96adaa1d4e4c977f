#include "app/citrans.h"
#include "table/number.h"

namespace {

/// The offset that an atom's shifts carry: all HA forms share one, CG that of the other carbons.
std::string_view offsetKey(std::string_view atom) {
  if (atom == "HA1" || atom == "HA2" || atom == "HA3") {
    return "HA";
  }
  return atom == "CG" ? "CA" : atom;
}

} // namespace

void CITRANS::subtractOffsets() {
  for (std::size_t row = 0; row < shiftTable.rowCount(); ++row) {
    applyOffset(row);
  }
}

void CITRANS::applyOffsets() {
  subtractOffsets();
  reportOffset("CA", "13Ca and 13Cb");
  reportOffset("HA", "1Ha");
  reportOffset("C", "13C'");
}

void CITRANS::applyOffset(std::size_t row) {
  const double secondary = parseDouble(shiftTable.cell(row, "SHIFT"));
  if (!(secondary < shift::missingFrom)) {
    return;
  }
  const auto known = offsets.find(offsetKey(shiftTable.cell(row, "ATOMNAME")));
  if (known == offsets.end()) {
    return;
  }
  const float offset = known->second;
  const float corrected = static_cast<float>(secondary - static_cast<double>(offset));
  shiftTable.setCell(row, "SHIFT", ftoa(corrected, textBuffer, 'g', 6));

  // Kept: a proline's CG loses the offset of every one of its shifts, not the carbons' once.
  const std::string_view name = shiftTable.cell(row, "RESNAME");
  if (name == "P" || name == "PRO") {
    const auto cg = cgShifts.find(parseInt(shiftTable.cell(row, "RESID")));
    if (cg != cgShifts.end() && cg->second != 0 &&
        static_cast<double>(cg->second) < shift::missingFrom) {
      cg->second -= offset;
    }
  }
}

void CITRANS::reportOffset(const char* key, const char* nuclei) {
  const auto known = offsets.find(key);
  if (known == offsets.end() || known->second == 0) {
    return;
  }
  const std::string text = formatted(" %6.3f ppm referencing offset applied for %s chemical shifts",
                                     static_cast<double>(known->second), nuclei);
  shiftTable.addRemark(text);
  errors(text + "\n");
}
