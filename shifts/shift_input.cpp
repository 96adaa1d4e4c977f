#include <algorithm>

#include "app/citrans.h"
#include "structure/residue_names.h"
#include "table/message_text.h"
#include "table/number.h"

namespace {

constexpr int lowestBeforeAny = 999;
constexpr int highestBeforeAny = -999;

[[noreturn]] void refuseInput(const std::string& message) {
  throw RunEnd(-1, messageText(message) + "\n");
}

} // namespace

void CITRANS::startShiftTable() {
  shiftTable = GDB();
  shiftTable.layOutFirst({"RESID", "RESNAME", "ATOMNAME", "SHIFT", "CS_OBS", "CS_ADJ"});
  shiftTable.copyHeader(inputTable);
  shiftTable.addVAR("CS_OBS", "%9.3f");
  shiftTable.addVAR("CS_ADJ", "%9.3f");
  sequence = inputTable.residueNames();
  residueCount = static_cast<int>(sequence.size());
}

void CITRANS::requireInput() const {
  if (residueCount < 1) {
    refuseInput(" A full amino acid sequence is required in the DATA SEQUENCE header, exit ...");
  }
  if (inputTable.columnCount() < 1) {
    refuseInput(" No entry found in the VARS header, exit ...");
  }
  if (inputTable.rowCount() < 1) {
    refuseInput(" No chemical shift data found in file " + inName);
  }
}

void CITRANS::reconcileResidueNames() {
  nameMismatches.clear();
  lowestResidue = lowestBeforeAny;
  highestResidue = highestBeforeAny;
  const GDB::Column resid = inputTable.column("RESID");
  const GDB::Column resname = inputTable.column("RESNAME");
  for (std::size_t row = 0; row < inputTable.rowCount(); ++row) {
    const int residue = parseInt(inputTable.cell(row, resid));
    lowestResidue = std::min(lowestResidue, residue);
    highestResidue = std::max(highestResidue, residue);
    std::string name(inputTable.cell(row, resname));
    if (name.size() == 3) {
      name = getOneAAName(name);
    }
    const auto known = sequence.try_emplace(residue, name);
    if (!known.second && known.first->second != name) {
      nameMismatches.push_back({residue, known.first->second, name});
    }
  }
}

std::string CITRANS::getOneAAName(const std::string& threeLetterName) const {
  const char code = residueCode(threeLetterName);
  return std::string(1, code == '\0' ? '?' : code);
}

void CITRANS::printNameMismatches() const {
  for (const NameMismatch& mismatch : nameMismatches) {
    errors(formatted(
        "WARNING: Unmatched name for residue %d between header (%s) and chemical shift "
        "table (%s)\n",
        mismatch.residue, messageText(mismatch.header).c_str(), messageText(mismatch.row).c_str()));
  }
}

void CITRANS::limitResidueRange() {
  if (highestResidue < residueCount) {
    ++highestResidue;
  }
  const auto limit = [this](int residue) {
    return std::min(std::max(residue, lowestResidue), highestResidue);
  };
  firstInRange = limit(firstResID);
  lastInRange = limit(lastResID);
  if (firstInRange > lastInRange) {
    std::swap(firstInRange, lastInRange);
  }
}

const std::string& CITRANS::nameOf(int residue) const {
  static const std::string none;
  const auto found = sequence.find(residue);
  return found == sequence.end() ? none : found->second;
}

std::size_t CITRANS::findInputShift(std::string_view residueText, std::string_view atom) const {
  const std::size_t row = inputTable.findRow("RESID", residueText, "ATOMNAME", atom);
  if (row == GDB::noRow && atom == "HN") {
    return inputTable.findRow("RESID", residueText, "ATOMNAME", "H");
  }
  return row;
}

double CITRANS::inputShift(std::string_view residueText, std::string_view atom,
                           double without) const {
  const std::size_t row = inputTable.findRow("RESID", residueText, "ATOMNAME", atom);
  return row == GDB::noRow ? without : parseDouble(inputTable.cell(row, "SHIFT"));
}
