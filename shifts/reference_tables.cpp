#include "app/citrans.h"
#include "table/message_text.h"
#include "table/number.h"

namespace {

/// The cell of a residue's first row, or `without` when the table has no row for it.
float valueFor(const GDB& table, std::string_view residue, std::string_view atom, float without) {
  const std::size_t row = table.findRow("RESNAME", residue);
  return row == GDB::noRow ? without : parseFloat(table.cell(row, atom));
}

} // namespace

void CITRANS::init() {
  forgetProtein();
  inputTable.loadGDB(inName);
  loadDatabase();
}

/// What an earlier run has left would mix with what this one finds.
void CITRANS::forgetProtein() {
  inputTable = GDB();
  offsets.clear();
  reference = PDB();
}

void CITRANS::loadDatabase() {
  randTable = adjTable = prevTable = nextTable = limitsTable = isoTable = GDB();
  loadTable(randTable, "Random Coil Shifts", randName);
  loadTable(adjTable, "RC Adjustments", adjName);
  loadTable(prevTable, "Previous Residue RC Adjustments", prevName);
  loadTable(nextTable, "Next Residue RC Adjustments", nextName);
  loadTable(limitsTable, "Secondary Shift Limits", limitsName);
  reportReading("Proline CS values", proCSName);
  getProCSValue(proCSName);
  reportReading("Proline Sequence Preference", proSeqName);
  getProSeqOccurence(proSeqName);
  if (isoOn) {
    loadIsotopeCorrections();
  }
}

void CITRANS::reportReading(const char* what, const std::string& name) const {
  if (!noPath) {
    out(std::string("Reading ") + what + " from " + messageText(name) + "\n");
  }
}

void CITRANS::loadTable(GDB& table, const char* what, const std::string& name) const {
  reportReading(what, name);
  readTable(table, name);
}

void CITRANS::loadIsotopeCorrections() {
  // Kept: the message names the neighbour table, not the isotope table.
  reportReading("2H Isotope Correction Table", proSeqName);
  readTable(isoTable, isoName);
  for (std::size_t row = 0; row < isoTable.rowCount(); ++row) {
    FloatByAtom& corrections = isoAdj[std::string(isoTable.cell(row, "RESNAME"))];
    corrections["CA"] = parseFloat(isoTable.cell(row, "CA"));
    corrections["CB"] = parseFloat(isoTable.cell(row, "CB"));
  }
}

float CITRANS::getRC(std::string_view residue, std::string_view atom) const {
  return valueFor(randTable, residue, atom, shift::missing);
}

float CITRANS::getRCadj(std::string_view residue, std::string_view atom) const {
  return valueFor(adjTable, residue, atom, 0.0F);
}

float CITRANS::getPrevRCadj(std::string_view previousResidue, std::string_view atom) const {
  return valueFor(prevTable, previousResidue, atom, 0.0F);
}

float CITRANS::getNextRCadj(std::string_view nextResidue, std::string_view atom) const {
  return valueFor(nextTable, nextResidue, atom, 0.0F);
}
