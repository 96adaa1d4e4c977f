#include "tools/report/inputs.h"

#include <cmath>
#include <cstdlib>

#include "table/number.h"
#include "tools/common/tool.h"
#include "tools/report/table_file.h"
#include "tools/report/text.h"

namespace {

constexpr double noAngle = 9999;

/// Half a unit of the last decimal that a number is printed with.
double roundingOf(const std::string& text) {
  const std::size_t point = text.find('.');
  const std::size_t decimals = point == std::string::npos ? 0 : text.size() - point - 1;
  return 0.5 * std::pow(10.0, -static_cast<double>(decimals));
}

/// The rest of the first remark that starts so; empty when there is none.
std::string remarkAfter(const GDB& table, const std::string& start) {
  for (const std::string& remark : table.remarks()) {
    if (remark.compare(0, start.size(), start) == 0) {
      return GDB::simplifyWhiteSpace(remark.substr(start.size()));
    }
  }
  return "";
}

void noteSkippedLines(const TableFile& file, Inputs& inputs) {
  if (!file.skippedLines().empty()) {
    const std::size_t count = file.skippedLines().size();
    inputs.warnings.push_back(atLine(file.name(), file.skippedLines()[0],
                                     count == 1 ? "this line is no row and was not read"
                                                : "this line and " + std::to_string(count - 1) +
                                                      " more are no rows and were not read"));
  }
}

SummaryRow summaryRowOf(const TableFile& file, std::size_t row) {
  const auto text = [&](const char* column) { return std::string(file.table().cell(row, column)); };
  SummaryRow summary;
  summary.residue = file.wholeNumber(row, "RESID");
  summary.before = text("RESNAME_R1");
  summary.after = text("RESNAME_R3");
  summary.shiftCounts = {file.wholeNumber(row, "CS_CNT1"), file.wholeNumber(row, "CS_CNT2"),
                         file.wholeNumber(row, "CS_CNT3")};
  summary.cg = file.number(row, "CG_SHIFT");
  summary.cgRounding = roundingOf(text("CG_SHIFT"));
  summary.pCis = file.number(row, "P_CIS");
  summary.pCisNorm = file.number(row, "P_CIS_NORM");
  summary.pCisText = text("P_CIS");
  summary.pCisNormText = text("P_CIS_NORM");
  if (file.hasColumn("OMEGA_REF")) {
    summary.referenceName = text("RESNAME_REF");
    summary.omega = file.number(row, "OMEGA_REF");
    summary.hasOmega = std::fabs(summary.omega) < noAngle;
  }
  return summary;
}

void readSummary(const TableFile& file, Inputs& inputs) {
  for (const char* column : {"RESID", "RESNAME_R1", "RESNAME_R3", "CS_CNT1", "CS_CNT2", "CS_CNT3",
                             "CG_SHIFT", "P_CIS", "P_CIS_NORM"}) {
    file.requireColumn(column);
  }
  inputs.title = remarkAfter(file.table(), " Summary table for ");
  inputs.referenceTitle = remarkAfter(file.table(), " Reference PDB ");
  for (std::size_t row = 0; row < file.table().rowCount(); ++row) {
    inputs.summary.push_back(summaryRowOf(file, row));
  }
  noteSkippedLines(file, inputs);
}

void readShifts(const TableFile& file, Inputs& inputs) {
  for (const char* column : {"RESID", "RESNAME", "ATOMNAME", "SHIFT", "CS_OBS", "CS_ADJ"}) {
    file.requireColumn(column);
  }
  const GDB& table = file.table();
  inputs.sequence = table.residueNames();
  inputs.residueCount = static_cast<int>(inputs.sequence.size());
  if (inputs.sequence.empty()) {
    throw ToolError(ToolStatus::badData, file.name() + ": no DATA SEQUENCE line");
  }
  for (std::size_t row = 0; row < table.rowCount(); ++row) {
    ShiftRow shift;
    shift.residue = file.wholeNumber(row, "RESID");
    shift.name = table.cell(row, "RESNAME");
    shift.atom = table.cell(row, "ATOMNAME");
    file.number(row, "SHIFT");
    shift.shiftText = table.cell(row, "SHIFT");
    shift.rounding = roundingOf(shift.shiftText);
    shift.observed = file.number(row, "CS_OBS");
    shift.adjustment = file.number(row, "CS_ADJ");
    inputs.shiftIndex.emplace(std::make_pair(shift.residue, shift.atom), inputs.shifts.size());
    inputs.shifts.push_back(shift);
  }
  inputs.about = aboutFrom(table.remarks());
  noteSkippedLines(file, inputs);
}

/// The summary must be of the same protein as the shifts.
void checkTogether(const Inputs& inputs, const std::string& summary, const std::string& shifts) {
  for (const SummaryRow& row : inputs.summary) {
    const auto found = inputs.sequence.find(row.residue);
    const bool inside = row.residue >= 1 && row.residue <= inputs.residueCount;
    if (!inside || found == inputs.sequence.end() || found->second != "P") {
      throw ToolError(ToolStatus::badData, summary + ": residue " + std::to_string(row.residue) +
                                               " is no proline in the sequence of " + shifts);
    }
  }
}

void addShiftRow(CITRANS& run, int residue, const std::string& atom, const ShiftRow* shift) {
  GDB& table = run.shiftTable;
  const std::size_t row = table.appendRow();
  table.setCell(row, "RESID", std::to_string(residue));
  table.setCell(row, "RESNAME", shift != nullptr ? shift->name : run.sequence[residue]);
  table.setCell(row, "ATOMNAME", shift != nullptr ? shift->atom : atom);
  table.setCell(row, "SHIFT", shift != nullptr ? shift->shiftText : "9999");
  run.missCount[residue] += shift != nullptr ? 0 : 1;
}

using ShiftIndex = std::map<std::pair<int, std::string>, const ShiftRow*>;

void addResidue(CITRANS& run, int residue, const ShiftIndex& shifts) {
  run.missCount[residue] = 0;
  run.cgShifts[residue] = shift::missing;
  for (const auto& [index, atom] : run.atomNames) {
    auto found = shifts.find({residue, atom});
    if (found == shifts.end() && atom == "HN") {
      found = shifts.find({residue, "H"});
    }
    addShiftRow(run, residue, atom, found == shifts.end() ? nullptr : found->second);
  }
}

} // namespace

std::string Inputs::number(int residue) const {
  const auto found = authors.find(residue);
  return found == authors.end() ? std::to_string(residue) : found->second;
}

std::string Inputs::residueLabel(int residue) const {
  const auto name = sequence.find(residue);
  return residueType(name == sequence.end() ? "" : name->second) + number(residue);
}

const ShiftRow* Inputs::shiftOf(int residue, const std::string& atom) const {
  const auto found = shiftIndex.find({residue, atom});
  return found == shiftIndex.end() ? nullptr : &shifts[found->second];
}

const SummaryRow* Inputs::summaryRow(int residue) const {
  for (const SummaryRow& row : summary) {
    if (row.residue == residue) {
      return &row;
    }
  }
  return nullptr;
}

Inputs readInputs(const Sources& sources) {
  Inputs inputs;
  const TableFile summary(sources.summary);
  readSummary(summary, inputs);
  const TableFile shifts(sources.shifts);
  readShifts(shifts, inputs);
  checkTogether(inputs, summary.name(), shifts.name());
  if (!sources.map.name.empty()) {
    inputs.authors = readAuthorMap(sources.map);
  }
  return inputs;
}

void fillRun(CITRANS& run, const Inputs& inputs) {
  run.sequence = inputs.sequence;
  run.residueCount = inputs.residueCount;
  run.shiftTable.VARS_str_parser("RESID RESNAME ATOMNAME SHIFT");
  ShiftIndex shifts;
  for (const ShiftRow& row : inputs.shifts) {
    shifts.emplace(std::make_pair(row.residue, row.atom), &row);
  }
  for (int residue = 1; residue <= inputs.residueCount; ++residue) {
    addResidue(run, residue, shifts);
  }
  for (const SummaryRow& row : inputs.summary) {
    run.cgShifts[row.residue] = static_cast<float>(row.cg);
  }
}
