#include <set>

#include "tools/analyse/analyse.h"

namespace analyse {
namespace {

std::string joinedWarnings(const Report& report) {
  std::string joined;
  for (const std::string& warning : report.inputs.about.warnings) {
    joined += (joined.empty() ? "" : "; ") + warning;
  }
  return joined;
}

/// What was taken off CA and CB, else what the report says should be, ppm.
std::optional<double> carbonOffset(const Result& result) {
  constexpr auto carbon = static_cast<std::size_t>(referencing::Nucleus::carbon);
  const double taken = result.referencing ? offsetsToApply(*result.referencing)[carbon] : 0;
  const double offset = taken != 0 ? taken : result.report.check.offsets[carbon];
  return offset != 0 ? std::optional<double>(offset) : std::nullopt;
}

} // namespace

IndexEntry indexEntry(const Result& result) {
  std::set<int> changed; // by the correction that was made
  for (const Proline& proline : result.prolines) {
    if (proline.call != proline.givenCall) {
      changed.insert(proline.used.residue);
    }
  }
  IndexEntry entry;
  entry.name = result.name;
  entry.protein = result.report.inputs.proteinName();
  entry.remark = joinedWarnings(result.report);
  entry.hasReport = true;
  entry.offset = carbonOffset(result);
  for (const ProlineReport& proline : result.report.prolines) {
    entry.hasReference = entry.hasReference || proline.row.hasOmega;
    entry.prolines.push_back({result.report.inputs.number(proline.residue),
                              callName(proline.verdict.call), proline.disagrees,
                              proline.callChanges() || changed.count(proline.residue) != 0});
  }
  return entry;
}

} // namespace analyse
