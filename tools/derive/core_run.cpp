#include "tools/derive/core_run.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>

#include "table/number.h"
#include "tools/common/tool.h"

namespace derive {
namespace {

/// Additive rule for CG of a deuterated proline: 2, 4 and 1 deuterons one to three bonds away.
constexpr double cgIsotopeShift = -0.29 * 2 - 0.13 * 4 - 0.07 * 1;
constexpr float none = std::numeric_limits<float>::quiet_NaN();

float orNone(float shift, double from) {
  return static_cast<double>(shift) < from ? shift : none;
}

} // namespace

CoreRun::CoreRun(const std::string& tableFolder) {
  const auto file = [&](const char* name) { return tableFolder + "/" + name; };
  run_.randTable.loadGDB(file("randcoil.tab"));
  run_.adjTable.loadGDB(file("rcadj.tab"));
  run_.prevTable.loadGDB(file("rcprev.tab"));
  run_.nextTable.loadGDB(file("rcnext.tab"));
  run_.limitsTable.loadGDB(file("sslimit.tab"));
  run_.getProCSValue(file("Pro.cs.tab"));
  run_.getProSeqOccurence(file("Pro.seq.tab"));
  run_.isoTable.loadGDB(file("isoadj.tab"));
  for (std::size_t row = 0; row < run_.isoTable.rowCount(); ++row) {
    auto& corrections = run_.isoAdj[std::string(run_.isoTable.cell(row, "RESNAME"))];
    corrections["CA"] = parseFloat(run_.isoTable.cell(row, "CA"));
    corrections["CB"] = parseFloat(run_.isoTable.cell(row, "CB"));
  }
}

void CoreRun::addRow(int residue, const char* atom, double shift) {
  if (std::isnan(shift)) {
    return;
  }
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, shift);
  GDB& table = run_.inputTable;
  const std::size_t row = table.appendRow();
  table.setCell(row, "RESID", std::to_string(residue));
  table.setCell(row, "RESNAME", run_.sequence[residue]);
  table.setCell(row, "ATOMNAME", atom);
  table.setCell(row, "SHIFT", std::string_view(text, static_cast<std::size_t>(end.ptr - text)));
}

void CoreRun::fillInput(const Protein& protein, const Treatment& treatment) {
  run_.inputTable = GDB();
  run_.inputTable.VARS_str_parser("RESID RESNAME ATOMNAME SHIFT");
  run_.inputTable.FORMAT_str_parser("%4d %1s %4s %9.3f");
  const double error = treatment.carbonError;
  for (int residue = 1; residue <= run_.residueCount; ++residue) {
    const ObservedShifts& shifts = protein.shifts[static_cast<std::size_t>(residue)];
    const std::string& name = run_.sequence[residue];
    const ShiftCorrection& off = treatment.correction;
    const double aliphatic = error - off.carbon;
    double ca = aliphatic;
    double cb = aliphatic;
    double cg = aliphatic;
    if (treatment.deuterated) {
      ca += static_cast<double>(run_.isoAdj[name]["CA"]);
      cb += static_cast<double>(run_.isoAdj[name]["CB"]);
      cg += name == "P" ? cgIsotopeShift : 0;
    }
    const auto& hidden = treatment.hidden;
    const bool hideHa = hidden[HA] || treatment.deuterated;
    addRow(residue, "N", hidden[N] ? noShift : shifts.n);
    addRow(residue, "HA", hideHa ? noShift : shifts.ha - off.ha);
    addRow(residue, "HA2", hideHa ? noShift : shifts.ha2 - off.ha);
    addRow(residue, "HA3", hideHa ? noShift : shifts.ha3 - off.ha);
    addRow(residue, "C", hidden[C] ? noShift : shifts.c + error - off.carbonyl);
    addRow(residue, "CA", hidden[CA] ? noShift : shifts.ca + ca);
    addRow(residue, "CB", hidden[CB] ? noShift : shifts.cb + cb);
    addRow(residue, "HN", hidden[HN] ? noShift : shifts.hn);
    addRow(residue, "CG", treatment.hideCg ? noShift : shifts.cg + cg);
  }
}

void CoreRun::prepare(const Protein& protein, const Treatment& treatment) {
  run_.sequence.clear();
  for (std::size_t i = 0; i < protein.sequence.size(); ++i) {
    run_.sequence[static_cast<int>(i) + 1] = std::string(1, protein.sequence[i]);
  }
  run_.residueCount = static_cast<int>(protein.sequence.size());
  run_.isoOn = treatment.correctIsotope;
  fillInput(protein, treatment);
  run_.shiftTable = GDB();
  run_.shiftTable.copyHeader(run_.inputTable);
  run_.shiftTable.addVAR("CS_OBS", "%9.3f");
  run_.shiftTable.addVAR("CS_ADJ", "%9.3f");
  run_.missCount.clear();
  run_.adjustments.clear();
  run_.cgShifts.clear();
  run_.offsets.clear();
  run_.fillShiftTable();
  if (treatment.correctOffsets) {
    recordOffsets();
    run_.subtractOffsets();
  }
}

void CoreRun::recordOffsets() {
  const OffsetEstimates estimates = offsetEstimates();
  if (estimates.ca.counts) {
    run_.offsets["CA"] = run_.offsets["CB"] = estimates.ca.offset;
  }
  if (estimates.ha.counts) {
    run_.offsets["HA"] = estimates.ha.offset;
  }
  if (estimates.c.counts) {
    run_.offsets["C"] = estimates.c.offset;
  }
}

SecondaryShifts CoreRun::secondaryShifts() const {
  SecondaryShifts shifts(static_cast<std::size_t>(run_.residueCount));
  for (std::size_t row = 0; row < run_.shiftTable.rowCount(); ++row) {
    const float value = parseFloat(run_.shiftTable.cell(row, "SHIFT"));
    shifts[row / atomCount][row % atomCount] = orNone(value, shift::missingFrom);
  }
  return shifts;
}

OffsetEstimates CoreRun::offsetEstimates() const {
  return fitOffsets(run_, gatherReferencingPoints(run_));
}

Scored CoreRun::score(int residue, bool hideCg) {
  const CITRANS::Triplet triplet = run_.getTriplet(residue);
  const float cg = hideCg ? shift::missing : run_.cgShifts[residue];
  Scored scored;
  scored.predicted = run_.testTriplet(triplet);
  std::size_t index = 0;
  for (const char* place : {"_R1", "_R2", "_R3"}) {
    for (const char* atom : atomNames) {
      const float value = parseFloat(triplet.at(std::string(atom) + place));
      const bool skipped = value > shift::largestPredicted;
      scored.shifts[index++] = skipped ? none : value;
    }
  }
  scored.shifts[cgIndex] = orNone(cg, shift::missingFrom);
  for (int place = 0; place < 3; ++place) {
    scored.counts[static_cast<std::size_t>(place)] =
        static_cast<int>(atomCount) - run_.missCount[residue + place - 1];
  }
  const CisLikelihood likelihood = run_.getLikelihood(triplet, cg);
  scored.cis = likelihood.cis;
  scored.normalised = likelihood.normalised;
  return scored;
}

ScratchFolder::ScratchFolder(const std::map<std::string, std::string>& files) {
  std::string pattern = (std::filesystem::temp_directory_path() / "citrans-derive-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw ToolError(ToolStatus::cannotWrite, pattern + ": cannot make a scratch folder");
  }
  path_ = pattern;
  for (const auto& [name, text] : files) {
    std::ofstream file(path_ + "/" + name, std::ios::binary);
    if (!(file << text) || !file.flush()) {
      throw ToolError(ToolStatus::cannotWrite, path_ + "/" + name + ": cannot write");
    }
  }
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

} // namespace derive
