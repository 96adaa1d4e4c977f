#include <cmath>
#include <map>

#include "tools/report/report.h"
#include "tools/report/text.h"

namespace {

using referencing::Nucleus;

/// A contribution that carries a call, in ln(cis/trans): odds of about 3 to 1.
constexpr double telling = 1;

const Term* ownTerm(const ProlineReport& proline, const char* atom) {
  for (const Term& term : proline.evidence.terms) {
    if (term.place == 2 && term.atom == atom && term.present) {
      return &term;
    }
  }
  return nullptr;
}

/// Whether a shift that was bounded is among those that say most, for either side.
bool mainEvidenceClipped(const ProlineReport& proline) {
  double largest = telling;
  for (const Term& term : proline.evidence.terms) {
    largest = std::fmax(largest, std::fabs(term.logRatio));
  }
  for (const Term& term : proline.evidence.terms) {
    if (term.clipped && std::fabs(term.logRatio) >= std::fmax(telling, largest / 2)) {
      return true;
    }
  }
  return false;
}

bool carbonsInConflict(const ProlineReport& proline) {
  const Term* const cb = ownTerm(proline, "CB");
  const Term* const cg = ownTerm(proline, "CG");
  return cb != nullptr && cg != nullptr &&
         std::fmin(std::fabs(cb->logRatio), std::fabs(cg->logRatio)) >= telling &&
         (cb->logRatio > 0) != (cg->logRatio > 0);
}

/// Whether CB - CG lies in the band of the form that was not called.
bool differenceSaysOtherwise(const ProlineReport& proline) {
  const std::optional<double> difference = proline.carbons.difference();
  const carbons::Band band = difference ? carbons::bandOf(*difference) : carbons::Band::open;
  return (proline.verdict.call == Verdict::Call::cis && band == carbons::Band::trans) ||
         (proline.verdict.call == Verdict::Call::trans && band == carbons::Band::cis);
}

/// Adds a concern with the predicted prolines that it is about; none when there are none.
void addAbout(const Report& report, const char* kind, const char* text,
              bool (*concerns)(const ProlineReport&), std::vector<Concern>& found) {
  Concern concern{kind, text, {}};
  for (const ProlineReport& proline : report.prolines) {
    if (proline.predicted && concerns(proline)) {
      concern.residues.push_back(proline.residue);
    }
  }
  if (!concern.residues.empty()) {
    found.push_back(concern);
  }
}

void addReferencing(const Report& report, std::vector<Concern>& found) {
  const ReferencingCheck& check = report.check;
  if (!check.found()) {
    return;
  }
  Concern concern{"referencing", "", {}};
  std::size_t compared = 0;
  for (const ProlineReport& proline : report.prolines) {
    compared += proline.corrected ? 1U : 0U;
    if (proline.callChanges()) {
      concern.residues.push_back(proline.residue);
    }
  }
  if (check.subtracted && concern.residues.empty()) {
    return; // -offset did what was needed
  }
  const bool carbons = check.offsets[static_cast<std::size_t>(Nucleus::carbon)] != 0;
  concern.text =
      (check.subtracted ? "The shifts as they were given look misreferenced, "
                        : "The shifts look misreferenced, ") +
      check.words() + (check.subtracted ? ". In place of what -offset did, with" : ". With") +
      (carbons ? " that taken once off all of them, CG included, " : " that taken off, ") +
      (concern.residues.empty()
           ? "no call changes."
           : std::to_string(concern.residues.size()) + " of " + counted(compared, "call") +
                 (concern.residues.size() == 1 ? " changes:" : " change:"));
  found.push_back(concern);
}

/// Calls that hang on a correction that was made before, by what they would be without it.
void addCorrected(const Report& report, std::vector<Concern>& found) {
  std::map<Verdict::Call, std::vector<int>> changed;
  for (const ProlineReport& proline : report.prolines) {
    if (proline.callChanged()) {
      changed[proline.asGiven->call].push_back(proline.residue);
    }
  }
  for (const auto& [call, residues] : changed) {
    found.push_back({"corrected",
                     "The referencing was corrected before the prediction. By the shifts as they "
                     "were given, " +
                         (call == Verdict::Call::none ? "there would be no call:"
                                                      : counted(residues.size(), "call") +
                                                            " would be " + callName(call) + ":"),
                     residues});
  }
}

} // namespace

std::vector<Concern> concernsOf(const Report& report) {
  std::vector<Concern> found;
  addCorrected(report, found);
  addReferencing(report, found);
  addAbout(
      report, "cg_subtracted",
      "The run took the offset off CG several times, once for each shift of the proline "
      "(-offset), so that its likelihoods are not to be relied on:",
      [](const ProlineReport& proline) { return proline.carbons.cgSubtracted; }, found);
  addAbout(
      report, "structure", "The reference structure has the other form:",
      [](const ProlineReport& proline) { return proline.disagrees; }, found);
  addAbout(
      report, "no_proline_there",
      "The reference structure has no proline at this number, so its angle says nothing:",
      [](const ProlineReport& proline) {
        return !proline.row.referenceName.empty() && proline.row.referenceName != "P";
      },
      found);
  addAbout(report, "cb_cg", "CB − CG lies where the other form is usual:", differenceSaysOtherwise,
           found);
  const bool carbonsOff = report.check.offsets[static_cast<std::size_t>(Nucleus::carbon)] != 0 &&
                          !report.check.subtracted;
  addAbout(report, "cb_against_cg",
           carbonsOff ? "CB and CG speak for different forms, which the referencing may cause:"
                      : "CB and CG speak for different forms:",
           carbonsInConflict, found);
  addAbout(report, "clipped",
           "A shift that says much was clipped to the limits of the database:", mainEvidenceClipped,
           found);
  addAbout(
      report, "undecided", "Undecided:",
      [](const ProlineReport& proline) { return proline.verdict.call == Verdict::Call::undecided; },
      found);
  addAbout(
      report, "open",
      "Not settled:", [](const ProlineReport& proline) { return proline.verdict.isOpen(); }, found);
  addAbout(
      report, "no_call", "No call could be made:",
      [](const ProlineReport& proline) { return proline.verdict.call == Verdict::Call::none; },
      found);
  for (const std::string& warning : report.inputs.about.warnings) {
    found.push_back({"import", "The import warned: " + warning, {}});
  }
  for (const std::string& warning : report.warnings) {
    found.push_back({"warning", warning, {}});
  }
  return found;
}
