#include "tools/report/referencing_check.h"

#include "table/number.h"
#include "tools/report/carbons.h"
#include "tools/report/text.h"

namespace {

/// Nuclei in the order of the estimates.
struct Named {
  const char* nuclei;
  std::vector<const char*> atoms;
};
const std::array<Named, referencing::nucleusCount> named = {
    {{"CA and CB", {"CA", "CB"}}, {"HA", {"HA"}}, {"C′", {"C"}}}};

double offsetOf(const referencing::Offsets& offsets, const std::string& residue,
                const std::string& atom) {
  const std::optional<referencing::Nucleus> nucleus = referencing::nucleusOf(residue, atom);
  return nucleus ? offsets[static_cast<std::size_t>(*nucleus)] : 0;
}

bool isExplained(CITRANS& run, const ReferencingCheck& check, const Outlier& outlier) {
  const double offset = offsetOf(check.offsets, outlier.name, outlier.atom);
  const float without = static_cast<float>(outlier.shift - offset);
  // Outliers are those that the run found, which -offset has corrected already.
  return !check.subtracted && offset != 0 &&
         run.clipSShift(outlier.residue, without, outlier.atom) == without;
}

void putBack(CITRANS& run, const Inputs& inputs) {
  GDB& table = run.shiftTable;
  for (std::size_t row = 0; row < table.rowCount(); ++row) {
    const std::string atom(table.cell(row, "ATOMNAME"));
    const ShiftRow* const shift = inputs.shiftOf(parseInt(table.cell(row, "RESID")), atom);
    if (shift != nullptr && parseDouble(table.cell(row, "SHIFT")) < shift::missingFrom) {
      table.setCell(row, "SHIFT", plainDecimal(shift->observed - shift->adjustment, 3));
    }
  }
  for (const SummaryRow& row : inputs.summary) {
    if (const std::optional<double> cg = carbonsOf(inputs, row).cg) {
      run.cgShifts[row.residue] = static_cast<float>(*cg);
    }
  }
}

} // namespace

std::string ReferencingCheck::words() const {
  std::vector<std::string> parts;
  for (const ReportedOffset& estimate : estimates) {
    if (estimate.applies) {
      parts.push_back(estimate.nuclei + " by " + signedDecimal(estimate.offset, 2) + " ± " +
                      decimal(estimate.error, 2) + " ppm");
    }
  }
  return joined(parts);
}

ReferencingCheck checkReferencing(CITRANS& run, const Inputs& inputs,
                                  const referencing::Model& model) {
  run.checkCS();
  ReferencingCheck check;
  check.outliers = run.shiftCheck.outliers;
  check.subtracted = offsetWasSubtracted(inputs);
  if (check.subtracted) {
    putBack(run, inputs);
  }
  const referencing::Estimates found = referencing::estimate(model, referencing::residuesOf(run));
  check.offsets = referencing::offsetsToApply(found);
  check.fewestErrors = model.fewestErrors;
  for (std::size_t i = 0; i < found.size(); ++i) {
    const referencing::Estimate& each = found[i];
    const bool enough = each.points >= referencing::fewestPoints;
    (enough ? check.estimates : check.unchecked)
        .push_back(
            {named[i].nuclei, named[i].atoms, each.offset, each.error, each.points, each.applies});
  }
  for (const Outlier& outlier : check.outliers) {
    check.explained.push_back(isExplained(run, check, outlier));
  }
  return check;
}

void takeOffOnce(CITRANS& run, const referencing::Offsets& offsets) {
  referencing::correct(run.shiftTable, offsets);
  const auto offset = static_cast<float>(offsetOf(offsets, "P", "CG"));
  for (auto& [residue, cg] : run.cgShifts) {
    if (static_cast<double>(cg) < shift::missingFrom) {
      cg -= offset;
    }
  }
}
