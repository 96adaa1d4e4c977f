#include <algorithm>
#include <array>
#include <optional>

#include "structure/pdb.h"
#include "table/file_io.h"
#include "table/gdb.h"
#include "table/message_text.h"
#include "table/number.h"
#include "table/run_end.h"

namespace {

struct Columns {
  std::size_t start;
  std::size_t length;
};

/// Fields 1 to 11 of an ATOM line, 0-based.
constexpr std::array<Columns, 11> fieldColumns = {{
    {0, 6},  // record name
    {6, 5},  // atom serial
    {11, 5}, // atom name, with the blank before it, without the alternate-location column
    {17, 4}, // residue name
    {21, 1}, // chain identifier
    {22, 4}, // residue number
    {30, 8}, // x
    {38, 8}, // y
    {46, 8}, // z
    {54, 6}, // occupancy
    {60, 6}, // temperature factor
}};

enum Field { serial = 2, name = 3, residueName = 4, chain = 5, residueNumber = 6, firstOfXyz = 7 };
constexpr int temperatureField = 11;

bool beginsWith(std::string_view line, std::string_view start) {
  return line.substr(0, start.size()) == start;
}

/// "H" becomes "HN", and the digit-first hydrogen names 1HG1 become HG11.
std::string storedAtomName(std::string name) {
  if (name == "H") {
    return "HN";
  }
  if (!name.empty() && name[0] >= '1' && name[0] <= '3') {
    std::rotate(name.begin(), name.begin() + 1, name.end());
  }
  return name;
}

/// The columns of a field; throws as `substr` of the line does when it ends before them. Inline:
/// nine calls for each atom, each with a field that is known beforehand.
inline std::string_view cut(std::string_view line, int field) {
  const Columns columns = fieldColumns[static_cast<std::size_t>(field) - 1];
  if (columns.start > line.size()) {
    static_cast<void>(std::string(line).substr(columns.start));
  }
  return line.substr(columns.start, columns.length);
}

void readAtom(std::string_view line, CORdata& atom) {
  atom.atomNumber = parseInt(cut(line, serial));
  atom.atomName = storedAtomName(GDB::simplifyWhiteSpace(std::string(cut(line, name))));
  atom.resName = GDB::simplifyWhiteSpace(std::string(cut(line, residueName).substr(0, 3)));
  atom.chainID = cut(line, chain);
  atom.resNumber = parseInt(cut(line, residueNumber));
  for (int axis = 0; axis < 3; ++axis) {
    atom.coor[axis] = parseFloat(cut(line, firstOfXyz + axis));
  }
  atom.bFactor = parseFloat(cut(line, temperatureField));
  atom.x = atom.coor[0];
  atom.y = atom.coor[1];
  atom.z = atom.coor[2];
}

} // namespace

std::string PDB::getField(const std::string& line, int field) {
  if (field < 1 || static_cast<std::size_t>(field) > fieldColumns.size()) {
    return "";
  }
  return std::string(cut(line, field));
}

void PDB::loadPDB_Entry(const std::string& line, CORdata& atom) {
  readAtom(line, atom);
}

void PDB::loadPDB(const std::string& path) {
  fileName = path;
  const std::optional<std::string> text = readWholeFile(path);
  if (!text) {
    throw RunEnd(0, "\tCan't open file " + messageText(path) + " for reading\n");
  }
  loadText(*text, path);
}

void PDB::loadText(std::string_view text, const std::string& name) {
  fileName = name;
  clear();
  atoms_.reserve(text.size() / shortestAtomLine); // so that no atom is moved
  CORdata atom;
  std::string_view line;
  while (takeLine(text, line)) {
    if (beginsWith(line, "ATOM")) {
      readAtom(line, atom);
      addAtom(atom);
    } else if (beginsWith(line, "TER") || beginsWith(line, "END")) {
      // Kept: the structure is the first chain of the first model.
      break;
    }
  }
  markDisulfides();
}

void PDB::clear() {
  resNames.clear();
  resCodes.clear();
  atoms_.clear();
  runsOfResidue_.clear();
  atomOfSerial_.clear();
  donors_.clear();
  acceptors_.clear();
  ringShifts_.clear();
}

void PDB::addAtom(const CORdata& added) {
  const int residue = added.resNumber;
  const bool sameNumber = !atoms_.empty() && atoms_.back().resNumber == residue;
  if (!sameNumber) {
    runsOfResidue_[residue].push_back(atoms_.size());
  }
  if (!sameNumber || atoms_.back().resName != added.resName) {
    resNames[residue] = added.resName;
    resCodes[residue] = getOneAAName(added.resName);
  }
  firstResID = std::min(firstResID, residue);
  lastResID = std::max(lastResID, residue);
  atoms_.push_back(added);
}
