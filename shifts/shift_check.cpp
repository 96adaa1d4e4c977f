#include <cmath>

#include "app/citrans.h"
#include "shifts/referencing.h"
#include "table/number.h"

namespace {

/// Secondary shifts of one residue that the referencing needs, ppm; 0 when there is no row.
struct CheckedResidue {
  float ca = 0;
  float cb = 0;
  float ha = 0;
  float c = 0;

  void set(const std::string& atom, float value) {
    if (atom == "CA") {
      ca = value;
    } else if (atom == "CB") {
      cb = value;
    } else if (atom == "HA") {
      ha = value;
    } else if (atom == "C") {
      c = value;
    }
  }
};

/// By the text of the residue number, which lies in the table: residues are visited as 1, 10, 100,
/// 11, ..., 2. Kept: the fit leaves out its first point, so the order counts.
using CheckedResidues = std::map<std::string_view, CheckedResidue>;

/// The columns of the working table that the checks read.
struct Columns {
  explicit Columns(const GDB& table)
      : resid(table.column("RESID")), atomName(table.column("ATOMNAME")),
        shift(table.column("SHIFT")) {}
  GDB::Column resid, atomName, shift;
};

bool isMissing(float value) {
  return !(static_cast<double>(value) < shift::missingFrom);
}

/// Proline and both forms of cysteine have CA and CB of their own.
bool isLeftOut(const std::string& name) {
  return name == "P" || name == "c" || name == "C";
}

/// How many times its limit a shift must exceed to be marked; HA limits are narrow.
float markFactor(const std::string& atom) {
  return atom == "HA" ? 3.0F : 2.0F;
}

std::string checkedAtom(std::string_view named) {
  return std::string(named == "H" ? "HN" : named);
}

bool isMarked(const Outlier& outlier) {
  return std::fabs(static_cast<float>(outlier.shift)) >
         markFactor(outlier.atom) * std::fabs(outlier.limit);
}

/// Every shift beyond its limit.
std::vector<Outlier> findOutliers(CITRANS& run) {
  std::vector<Outlier> outliers;
  const GDB& table = run.shiftTable;
  const Columns columns(table);
  for (std::size_t row = 0; row < table.rowCount(); ++row) {
    const std::string atom = checkedAtom(table.cell(row, columns.atomName));
    const double secondary = parseDouble(table.cell(row, columns.shift));
    const float single = static_cast<float>(secondary);
    const int residue = parseInt(table.cell(row, columns.resid));
    const float limit = run.clipSShift(residue, single, atom);
    if (limit != single) {
      Outlier outlier{residue, run.sequence[residue], atom, secondary, limit, false};
      outlier.marked = isMarked(outlier);
      outliers.push_back(outlier);
    }
  }
  return outliers;
}

/// All secondary shifts, unbounded, by residue.
CheckedResidues gatherResidues(const GDB& table) {
  const Columns columns(table);
  CheckedResidues residues;
  auto known = residues.end();
  for (std::size_t row = 0; row < table.rowCount(); ++row) {
    const std::string_view residueText = table.cell(row, columns.resid);
    // The rows of a residue follow each other: most need no search.
    if (known == residues.end() || known->first != residueText) {
      known = residues.try_emplace(residueText).first;
    }
    known->second.set(checkedAtom(table.cell(row, columns.atomName)),
                      parseFloat(table.cell(row, columns.shift)));
  }
  return residues;
}

} // namespace

ReferencingPoints gatherReferencingPoints(const CITRANS& run) {
  ReferencingPoints points;
  for (const auto& [residueText, shifts] : gatherResidues(run.shiftTable)) {
    const auto name = run.sequence.find(parseInt(residueText));
    if (isMissing(shifts.ca) || isMissing(shifts.cb) ||
        (name != run.sequence.end() && isLeftOut(name->second))) {
      continue;
    }
    const float difference = shifts.ca - shifts.cb;
    points.ca.add(difference, shifts.ca);
    if (!isMissing(shifts.ha)) {
      points.ha.add(difference, shifts.ha);
    }
    if (!isMissing(shifts.c)) {
      points.c.add(difference, shifts.c);
    }
  }
  return points;
}

void CITRANS::checkCS() {
  shiftCheck.outliers = findOutliers(*this);
  shiftCheck.offsets = fitOffsets(*this, gatherReferencingPoints(*this));
  recordOffsets();
  printShiftCheck();
}

void CITRANS::recordOffsets() {
  const auto record = [this](const OffsetEstimate& estimate, const char* key) {
    if (estimate.counts) {
      offsets[key] = estimate.offset;
    }
  };
  record(shiftCheck.offsets.ca, "CA");
  record(shiftCheck.offsets.ca, "CB");
  record(shiftCheck.offsets.ha, "HA");
  record(shiftCheck.offsets.c, "C");
}
