#include "tools/report/referencing_check.h"

#include "table/number.h"
#include "tools/report/text.h"

namespace {

/// The offset of an atom, ppm; 0 without one.
double offsetOf(const ReferencingCheck& check, std::string_view atom) {
  for (const ReportedOffset& estimate : check.offsets) {
    for (const char* const concerned : estimate.atoms) {
      if (atom == concerned) {
        return estimate.offset;
      }
    }
  }
  return 0;
}

bool isExplained(CITRANS& run, const ReferencingCheck& check, const Outlier& outlier) {
  const double offset = offsetOf(check, outlier.atom);
  const float without = static_cast<float>(outlier.shift - offset);
  return offset != 0 && run.clipSShift(outlier.residue, without, outlier.atom) == without;
}

} // namespace

std::string ReferencingCheck::words() const {
  std::vector<std::string> parts;
  parts.reserve(offsets.size());
  for (const ReportedOffset& estimate : offsets) {
    parts.push_back(estimate.nuclei + " by " + signedDecimal(estimate.offset, 2) + " ± " +
                    decimal(estimate.error, 2) + " ppm");
  }
  return joined(parts);
}

ReferencingCheck checkReferencing(CITRANS& run) {
  run.checkCS();
  ReferencingCheck check;
  const auto take = [&check](const OffsetEstimate& estimate, const char* nuclei,
                             std::vector<const char*> atoms) {
    if (!(estimate.error > 0)) {
      check.unchecked.emplace_back(nuclei);
    }
    if (estimate.counts) {
      check.offsets.push_back({nuclei, std::move(atoms), static_cast<double>(estimate.offset),
                               static_cast<double>(estimate.error), estimate.points});
    }
  };
  take(run.shiftCheck.offsets.ca, "CA and CB", {"CA", "CB"});
  take(run.shiftCheck.offsets.ha, "HA", {"HA"});
  take(run.shiftCheck.offsets.c, "C′", {"C"});
  check.outliers = run.shiftCheck.outliers;
  for (const Outlier& outlier : check.outliers) {
    check.explained.push_back(isExplained(run, check, outlier));
  }
  return check;
}

void takeOffOnce(CITRANS& run, const ReferencingCheck& check) {
  GDB& table = run.shiftTable;
  for (std::size_t row = 0; row < table.rowCount(); ++row) {
    const double secondary = parseDouble(table.cell(row, "SHIFT"));
    const double offset = offsetOf(check, table.cell(row, "ATOMNAME"));
    if (offset != 0 && secondary < shift::missingFrom) {
      char text[32];
      const float corrected = static_cast<float>(secondary - offset);
      table.setCell(row, "SHIFT", CITRANS::ftoa(corrected, text, 'g', 6));
    }
  }
  for (auto& [residue, cg] : run.cgShifts) {
    if (static_cast<double>(cg) < shift::missingFrom) {
      cg -= static_cast<float>(offsetOf(check, "CA"));
    }
  }
}
