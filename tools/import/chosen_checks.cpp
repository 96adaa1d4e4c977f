#include "tools/import/chosen_checks.h"

#include <algorithm>

#include "tools/import/amino_acids.h"

namespace {

/// CB of a cysteine in ppm, above which it is oxidised (28 reduced, 41 oxidised in random coils).
constexpr double oxidisedFromCb = 34;

void warn(ChosenShifts& chosen, const Places& places, const std::string& one,
          const std::string& many) {
  if (places.count() > 0) {
    chosen.warnings.push_back(counted(places.count(), one, many) + ": " + places.text());
  }
}

} // namespace

void warnOfNumbers(const Polymer& polymer, bool namedBySequence,
                   const std::vector<const ShiftRun*>& runs, const Numbering& numbering,
                   ChosenShifts& chosen) {
  if (polymer.guessed) {
    chosen.warnings.push_back(
        "no sequence in the file: it is guessed from the shifts, from residue " +
        chosen.residues.front().index + " to " + chosen.residues.back().index +
        ", with X for those without shifts");
  }
  if (namedBySequence) {
    chosen.warnings.emplace_back(
        "the shifts name no residues: by their numbers they are those of the sequence");
  }
  if (numbering.moved) {
    chosen.warnings.push_back("numbers moved: " + numbering.way);
  }
  Places misnamed(chosen.letters);
  Places outside(chosen.letters);
  std::set<std::string_view> seen;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const int position = numbering.positions[i];
    const Residue* const residue =
        position > 0 ? &chosen.residues[static_cast<std::size_t>(position) - 1] : nullptr;
    const bool wrong =
        residue == nullptr || (residue->name != "UNK" && !namesAgree(*runs[i], *residue));
    if (!wrong || !seen.insert(runs[i]->index).second) {
      continue;
    }
    const std::string label = residueLabel(*runs[i]);
    if (residue == nullptr) {
      outside.add(0, label);
    } else {
      misnamed.add(position, label + " is " + residue->name + " in the sequence");
    }
  }
  warn(chosen, misnamed, "residue named otherwise by the shifts than by the sequence",
       "residues named otherwise by the shifts than by the sequence");
  warn(chosen, outside, "residue of the shifts is not in the sequence and left out",
       "residues of the shifts are not in the sequence and left out");
}

void warnOfStrays(const ShiftList& list, ChosenShifts& chosen) {
  Places places(chosen.letters);
  std::size_t rows = 0;
  for (const ShiftRun& run : list.runs) {
    if (!run.isFirm()) {
      places.add(0, residueLabel(run));
      rows += run.rows;
    }
  }
  if (rows > 0) {
    chosen.warnings.push_back(counted(rows, "shift of no certain residue left out: ",
                                      "shifts of no certain residue left out: ") +
                              places.text());
  }
}

void warnOfShifts(const TakenShifts& taken, ChosenShifts& chosen) {
  warn(chosen, taken.forms, "proline has several forms in the list, one is taken",
       "prolines have several forms in the list, one of each is taken");
  warn(chosen, taken.impossible, "impossible value left out", "impossible values left out");
  warn(chosen, taken.placeholders, "value that stands for no shift left out",
       "values that stand for no shift left out");
  warn(chosen, taken.noNumbers, "value that is no number left out",
       "values that are no numbers left out");
  warn(chosen, taken.twice, "atom with two different shifts, the first taken",
       "atoms with two different shifts, the first taken");
  warn(chosen, taken.ambiguous, "shift with an ambiguity code of 4 or more",
       "shifts with an ambiguity code of 4 or more");
  warn(chosen, taken.unusual, "shift far outside of the usual range",
       "shifts far outside of the usual range");
}

void warnOfCopies(ChosenShifts& chosen) {
  std::map<std::pair<double, double>, Places> seen;
  for (std::size_t i = 0; i < chosen.values.size(); ++i) {
    const ShiftValues& values = chosen.values[i];
    if (chosen.letters[i] == 'P' && present(values[atomCb]) && present(values[atomCg])) {
      seen.emplace(std::pair(values[atomCb], values[atomCg]), Places(chosen.letters))
          .first->second.add(static_cast<int>(i) + 1, "PRO " + chosen.authors[i]);
    }
  }
  for (const auto& [shifts, places] : seen) {
    if (places.count() > 1) {
      chosen.warnings.push_back(std::to_string(places.count()) + " prolines with the same CB " +
                                numberText(shifts.first) + " and CG " + numberText(shifts.second) +
                                ": " + places.text());
    }
  }
}

void warnOfMissingNuclei(ChosenShifts& chosen) {
  std::string missing;
  for (const std::uint8_t atom : {atomN, atomHn, atomC, atomCa, atomCb}) {
    const bool any =
        std::any_of(chosen.values.begin(), chosen.values.end(),
                    [atom](const ShiftValues& values) { return present(values[atom]); });
    missing += any ? "" : std::string(missing.empty() ? "" : ", ") + tableAtoms[atom];
  }
  std::size_t prolines = 0;
  std::size_t withoutCg = 0;
  for (std::size_t i = 0; i < chosen.values.size(); ++i) {
    const bool proline = chosen.letters[i] == 'P';
    prolines += proline ? 1U : 0U;
    withoutCg += proline && !present(chosen.values[i][atomCg]) ? 1U : 0U;
  }
  if (!missing.empty()) {
    chosen.warnings.push_back("no shifts at all of " + missing);
  }
  if (prolines > 0) {
    chosen.notes.push_back(counted(prolines, "proline, ", "prolines, ") +
                           std::to_string(withoutCg) + " of them without CG");
  }
}

void markCysteines(const Polymer& polymer, bool byCb, ChosenShifts& chosen) {
  std::size_t marked = 0;
  bool anySaid = false;
  bool anyByCb = false;
  Places left(chosen.letters);
  for (std::size_t i = 0; i < chosen.letters.size(); ++i) {
    if (chosen.letters[i] != 'C') {
      continue;
    }
    const Residue& residue = chosen.residues[i];
    const bool said = polymer.allDisulfide || polymer.bonded.count(residue.index) > 0 ||
                      isOxidisedCysteine(residue.name);
    const double cb = chosen.values[i][atomCb];
    const bool high = present(cb) && cb > oxidisedFromCb;
    if (said || (byCb && high)) {
      chosen.letters[i] = 'c';
      ++marked;
    } else if (high) {
      left.add(static_cast<int>(i) + 1, "CYS " + chosen.authors[i] + " CB " + numberText(cb));
    }
    anySaid = anySaid || said;
    anyByCb = anyByCb || (byCb && high && !said);
  }
  if (marked > 0) {
    chosen.notes.push_back(
        counted(marked, "cysteine is oxidised (c), by ", "cysteines are oxidised (c), by ") +
        (anySaid ? "what the deposition says" : "") + (anySaid && anyByCb ? " or " : "") +
        (anyByCb ? "their CB above 34 ppm" : ""));
  }
  warn(chosen, left,
       "cysteine has a CB above 34 ppm but is not said to be oxidised"
       " (see --oxidised-by-cb)",
       "cysteines have a CB above 34 ppm but are not said to be oxidised (see --oxidised-by-cb)");
}
