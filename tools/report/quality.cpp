#include "tools/report/quality.h"

#include "table/number.h"

ReportedCheck checkShifts(CITRANS& run) {
  run.keepSilent();
  run.checkCS();
  ReportedCheck check;
  check.outliers = run.shiftCheck.outliers;
  const auto take = [&check](const OffsetEstimate& estimate, const char* nuclei) {
    if (estimate.counts) {
      check.offsets.push_back({nuclei, static_cast<double>(estimate.offset),
                               static_cast<double>(estimate.error),
                               static_cast<int>(estimate.points)});
    }
    if (estimate.shortage) {
      check.shortages.emplace_back(nuclei);
    }
  };
  take(run.shiftCheck.offsets.ca, "CA and CB");
  take(run.shiftCheck.offsets.ha, "HA");
  take(run.shiftCheck.offsets.c, "C'");
  return check;
}

void subtractOffsets(CITRANS& run) {
  GDB& table = run.shiftTable;
  for (std::size_t row = 0; row < table.rowCount(); ++row) {
    const double secondary = parseDouble(table.cell(row, "SHIFT"));
    const auto known = run.offsets.find(table.cell(row, "ATOMNAME"));
    if (!(secondary < shift::missingFrom) || known == run.offsets.end()) {
      continue;
    }
    const float corrected = static_cast<float>(secondary - static_cast<double>(known->second));
    char text[32];
    table.setCell(row, "SHIFT", CITRANS::ftoa(corrected, text, 'g', 6));
    const std::string_view name = table.cell(row, "RESNAME");
    float& cg = run.cgShifts[parseInt(table.cell(row, "RESID"))];
    if ((name == "P" || name == "PRO") && cg != 0 && static_cast<double>(cg) < shift::missingFrom) {
      cg -= known->second;
    }
  }
}
