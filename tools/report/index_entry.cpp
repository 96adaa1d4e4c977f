#include "tools/report/index.h"
#include "tools/report/report.h"

namespace {

std::string joinedWarnings(const Report& report) {
  std::string joined;
  for (const std::string& warning : report.inputs.about.warnings) {
    joined += (joined.empty() ? "" : "; ") + warning;
  }
  return joined;
}

/// What was taken off CA and CB, else what should be, ppm.
std::optional<double> carbonOffset(const Report& report) {
  constexpr auto carbon = static_cast<std::size_t>(referencing::Nucleus::carbon);
  const double taken = referencing::takenOff(report.inputs.about.corrections)[carbon];
  const double offset = taken != 0 ? taken : report.check.offsets[carbon];
  return offset != 0 ? std::optional<double>(offset) : std::nullopt;
}

} // namespace

IndexEntry indexEntry(const Report& report) {
  IndexEntry entry;
  entry.protein = report.inputs.proteinName();
  entry.remark = joinedWarnings(report);
  entry.hasReport = true;
  entry.offset = carbonOffset(report);
  for (const ProlineReport& proline : report.prolines) {
    entry.hasReference = entry.hasReference || proline.row.hasOmega;
    entry.prolines.push_back({report.inputs.number(proline.residue), callName(proline.verdict.call),
                              proline.disagrees, proline.callChanges() || proline.callChanged()});
  }
  return entry;
}
