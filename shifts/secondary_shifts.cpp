#include "app/citrans.h"
#include "table/number.h"

namespace {
/// Read for a glycine proton that the input does not hold.
constexpr double noGlycineProton = shift::missingFrom;
} // namespace

void CITRANS::getResInfo() {
  startShiftTable();
  requireInput();
  reconcileResidueNames();
  printNameMismatches();
  limitResidueRange();
  fillShiftTable();
  if (isoOn) {
    shiftTable.addRemark(" Deuterium Isotope Shifts Correction Applied for 13Ca and 13Cb Nuclei");
  }
  checkCS();
  if (offsetOn) {
    applyOffsets();
  }
  saveShiftTable();
  if (checkOnly) {
    throw RunEnd(-1);
  }
}

void CITRANS::fillShiftTable() {
  adjustments.assign(static_cast<std::size_t>(residueCount), {});
  adjustmentTerms.clear();
  limitsByName.clear();
  missCount.clear();
  cgShifts.clear();
  shiftTable.reserveRows(static_cast<std::size_t>(residueCount) * atomNames.size());
  for (int residue = 1; residue <= residueCount; ++residue) {
    addResidue(residue);
  }
  // The places beyond the chain ends count as residues without any shift.
  missCount[0] = missCount[residueCount + 1] = static_cast<int>(atomNames.size());
}

void CITRANS::addResidue(int residue) {
  missCount[residue] = 0;
  AtomValues& sums = adjustments.at(static_cast<std::size_t>(residue) - 1);
  sums = adjustmentsOf(residue);
  for (const auto& [index, atom] : atomNames) {
    addAtom(residue, atom, sums.at(static_cast<std::size_t>(index) - 1));
  }
  const std::string_view text = itoa(residue, textBuffer, 10);
  cgShifts[residue] =
      static_cast<float>(inputShift(text, "CG", static_cast<double>(shift::missing)));
}

void CITRANS::addAtom(int residue, const std::string& atom, float adjustment) {
  const std::string residueText = itoa(residue, textBuffer, 10);
  const std::string& name = nameOf(residue);
  const bool isGlycineHa = name == "G" && atom == "HA";

  const std::size_t source = findInputShift(residueText, atom);
  std::size_t row = 0;
  if (source != GDB::noRow) {
    row = shiftTable.appendRowFrom(inputTable, source);
    setShift(row, parseDouble(inputTable.cell(source, "SHIFT")), adjustment);
  } else {
    row = shiftTable.appendRow();
    shiftTable.setCell(row, "RESID", residueText);
    shiftTable.setCell(row, "RESNAME", name);
    shiftTable.setCell(row, "ATOMNAME", atom);
    shiftTable.setCell(row, "SHIFT", ftoa(shift::missing, textBuffer, 'g', 6));
    missCount[residue] += isGlycineHa ? 0 : 1;
  }
  if (isGlycineHa) {
    setGlycineHa(row, residue, residueText, adjustment);
  }
  if (name == "P" && (atom == "HN" || atom == "N")) {
    // A proline has no amide proton, and its nitrogen is not used. Kept.
    shiftTable.setCell(row, "SHIFT", ftoa(shift::missing, textBuffer, 'g', 6));
  }
}

CITRANS::AtomValues CITRANS::adjustmentsOf(int residue) {
  const std::string& name = nameOf(residue);
  const AdjustmentTerms& own = adjustmentTermsOf(name);
  const AtomValues& previous = adjustmentTermsOf(nameOf(residue - 1)).previous;
  const AtomValues& next = adjustmentTermsOf(nameOf(residue + 1)).next;
  AtomValues sums{};
  for (const auto& [index, atom] : atomNames) {
    const auto at = static_cast<std::size_t>(index) - 1;
    sums.at(at) = own.randomCoil.at(at) + own.own.at(at) + previous.at(at) + next.at(at);
    if (isoOn && (atom == "CA" || atom == "CB")) {
      sums.at(at) += isoAdj[name][atom];
    }
  }
  return sums;
}

const CITRANS::AdjustmentTerms& CITRANS::adjustmentTermsOf(const std::string& name) {
  const auto [known, isNew] = adjustmentTerms.try_emplace(name);
  AdjustmentTerms& terms = known->second;
  if (isNew) {
    for (const auto& [index, atom] : atomNames) {
      const auto at = static_cast<std::size_t>(index) - 1;
      terms.randomCoil.at(at) = getRC(name, atom);
      terms.own.at(at) = getRCadj(name, atom);
      terms.previous.at(at) = getPrevRCadj(name, atom);
      terms.next.at(at) = getNextRCadj(name, atom);
    }
  }
  return terms;
}

void CITRANS::setShift(std::size_t row, double observed, float adjustment) {
  const bool unknown = static_cast<double>(adjustment) >= shift::missingFrom;
  const float secondary =
      unknown ? shift::missing : static_cast<float>(observed - static_cast<double>(adjustment));
  shiftTable.setCell(row, "SHIFT", ftoa(secondary, textBuffer, 'g', 6));
  shiftTable.setCell(row, "CS_OBS", ftoa(static_cast<float>(observed), textBuffer, 'g', 6));
  shiftTable.setCell(row, "CS_ADJ", ftoa(adjustment, textBuffer, 'g', 6));
}

void CITRANS::setGlycineHa(std::size_t row, int residue, std::string_view residueText,
                           float adjustment) {
  const double ha2 = inputShift(residueText, "HA2", noGlycineProton);
  const double ha3 = inputShift(residueText, "HA3", noGlycineProton);
  const bool has2 = ha2 < shift::missingFrom;
  const bool has3 = ha3 < shift::missingFrom;
  shiftTable.setCell(row, "ATOMNAME", "HA");
  if (!has2 && !has3) {
    // Kept: an "HA" row of a glycine does not count.
    shiftTable.setCell(row, "SHIFT", ftoa(shift::missing, textBuffer, 'g', 6));
    ++missCount[residue];
    return;
  }
  const double value = has2 && has3 ? (ha2 + ha3) / 2.0 : has2 ? ha2 : ha3;
  // Kept: the adjustment is subtracted even when it stands for no value.
  const float secondary = static_cast<float>(value - static_cast<double>(adjustment));
  shiftTable.setCell(row, "SHIFT", ftoa(secondary, textBuffer, 'g', 6));
  shiftTable.setCell(row, "CS_OBS", ftoa(static_cast<float>(value), textBuffer, 'g', 6));
  shiftTable.setCell(row, "CS_ADJ", ftoa(adjustment, textBuffer, 'g', 6));
}
