#include "tools/import/shift_choice.h"

#include <algorithm>
#include <cstdio>
#include <set>

#include "table/number.h"
#include "tools/common/tool.h"

namespace {

/// A shift beyond this size stands for no value (999.99 and the like).
constexpr double noShiftFrom = 900;
/// CB of a cysteine in ppm, above which it is oxidised (28 reduced, 41 oxidised in random coils).
constexpr double oxidisedFromCb = 34;
/// BMRB codes from here on leave open which residue or atom a shift belongs to.
constexpr int ambiguousFrom = 4;

struct AtomRange {
  const char* atom;
  double lowest;
  double highest;
};

/// Wider than any assigned shift of a folded diamagnetic protein, ppm.
constexpr AtomRange usualRanges[] = {
    {"N", 85, 150},  {"HN", 3, 14},  {"HA", 0.5, 8}, {"HA2", 0.5, 8}, {"HA3", 0.5, 8},
    {"C", 160, 190}, {"CA", 38, 75}, {"CB", 10, 80}, {"CG", 10, 185},
};

bool inUsualRange(const std::string& atom, double value) {
  const auto* const range =
      std::find_if(std::begin(usualRanges), std::end(usualRanges),
                   [&atom](const AtomRange& known) { return atom == known.atom; });
  return range == std::end(usualRanges) || (value >= range->lowest && value <= range->highest);
}

/// The name of an atom in the table, or empty text for one that the program does not read.
std::string tableName(const std::string& residue, std::string atom) {
  for (char& c : atom) {
    c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
  }
  if (atom == "H") {
    return "HN";
  }
  if (residue == "GLY" && (atom == "HA" || atom == "HAX" || atom == "HA1" || atom == "HA%" ||
                           atom == "HA*" || atom == "QA")) {
    return "HA2";
  }
  if (residue == "GLY" && atom == "HAY") {
    return "HA3";
  }
  const bool known = std::find(tableAtoms.begin(), tableAtoms.end(), atom) != tableAtoms.end();
  return known && (residue == "GLY" || (atom != "HA2" && atom != "HA3")) ? atom : "";
}

bool isNumber(const std::string& text) {
  char* end = nullptr;
  std::strtod(text.c_str(), &end);
  return !text.empty() && *end == '\0';
}

std::string counted(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what;
}

/// "entity 1 (name)", as far as the deposition gives them.
std::string named(const std::string& what, const std::string& id, const std::string& name) {
  return what + (id.empty() ? "" : " " + id) +
         (name.empty() || name == id ? "" : " (" + name + ")");
}

/// Whether a shift belongs to one residue for certain. Working assignments, which NEF may hold,
/// have residue numbers such as "108?" or "@12".
bool isFirm(const Shift& shift) {
  return !shift.residue.empty() && shift.index.find_first_of("?@") == std::string::npos;
}

bool belongs(const Shift& shift, const Polymer& polymer, const Deposition& deposition) {
  return shift.polymer == polymer.id || (shift.polymer.empty() && deposition.polymers.size() == 1);
}

std::vector<Shift> shiftsOf(const ShiftList& list, const Polymer& polymer,
                            const Deposition& deposition) {
  std::vector<Shift> chosen;
  for (const Shift& shift : list.shifts) {
    if (isFirm(shift) && belongs(shift, polymer, deposition)) {
      chosen.push_back(shift);
    }
  }
  return chosen;
}

/// Depositions cut down to a shift list name no molecule: their shifts are then the molecule.
Deposition withPolymers(const Deposition& deposition) {
  Deposition complete = deposition;
  const bool none = std::none_of(complete.polymers.begin(), complete.polymers.end(),
                                 [](const Polymer& polymer) { return !polymer.residues.empty(); });
  if (none) {
    Polymer polymer;
    polymer.id = deposition.lists.front().shifts.front().polymer;
    polymer.name = "residues named by the shifts";
    polymer.residues = residuesFromShifts(deposition.lists.front());
    complete.polymers = {polymer};
  }
  if (complete.polymers.size() == 1) {
    for (ShiftList& list : complete.lists) {
      for (Shift& shift : list.shifts) {
        shift.polymer = complete.polymers.front().id;
      }
    }
  }
  return complete;
}

struct Pair {
  const Polymer* polymer = nullptr;
  const ShiftList* list = nullptr;
  std::size_t shifts = 0;
};

Pair choosePair(const Deposition& deposition, const Choice& choice, const std::string& file) {
  Pair best;
  for (const Polymer& polymer : deposition.polymers) {
    const bool wanted = choice.entity.empty() ? polymer.isProtein() : polymer.id == choice.entity;
    for (const ShiftList& list : deposition.lists) {
      const std::size_t shifts =
          wanted && (choice.list.empty() || list.id == choice.list || list.name == choice.list)
              ? shiftsOf(list, polymer, deposition).size()
              : 0;
      if (shifts > best.shifts) {
        best = {&polymer, &list, shifts};
      }
    }
  }
  if (best.polymer == nullptr) {
    throw ToolError(ToolStatus::badData,
                    file + ": no shifts of " +
                        (choice.entity.empty() ? "a protein" : "entity " + choice.entity) +
                        (choice.list.empty() ? "" : " in list " + choice.list) +
                        "; --list-contents shows what there is");
  }
  return best;
}

/// Counts of what was met while the shifts were taken.
struct Oddities {
  std::size_t sentinels = 0;
  std::size_t noNumbers = 0;
  std::size_t duplicates = 0;
  std::size_t ambiguous = 0;
  std::size_t outside = 0;
  std::string firstOutside;
};

void takeShift(const Shift& shift, int position, ChosenShifts& chosen, Oddities& odd) {
  const std::string atom = tableName(shift.residue, shift.atom);
  if (atom.empty() || position == 0) {
    return;
  }
  if (!isNumber(shift.value)) {
    ++odd.noNumbers;
    return;
  }
  const double value = parseDouble(shift.value);
  if (!(value > -noShiftFrom && value < noShiftFrom)) {
    ++odd.sentinels;
    return;
  }
  odd.ambiguous += shift.ambiguity >= ambiguousFrom ? 1U : 0U;
  auto& values = chosen.values[static_cast<std::size_t>(position) - 1];
  const auto added = values.emplace(atom, shift.value);
  if (!added.second) {
    // Two protons of a glycine under one name are its two; anything else is said twice.
    if (atom == "HA2" && values.emplace("HA3", shift.value).second) {
      return;
    }
    odd.duplicates += parseDouble(added.first->second) != value ? 1U : 0U;
    return;
  }
  if (!inUsualRange(atom, value)) {
    ++odd.outside;
    if (odd.firstOutside.empty()) {
      odd.firstOutside = shift.residue + " " + shift.index + " " + atom + " " + shift.value;
    }
  }
}

void warn(ChosenShifts& chosen, std::size_t count, const std::string& what) {
  if (count > 0) {
    chosen.warnings.push_back(counted(count, what));
  }
}

void warnOfOddities(const Oddities& odd, ChosenShifts& chosen) {
  warn(chosen, odd.sentinels, "values that stand for no shift (such as 999.99) left out");
  warn(chosen, odd.noNumbers, "values that are no numbers left out");
  warn(chosen, odd.duplicates, "atoms with two different shifts, the first taken");
  warn(chosen, odd.ambiguous, "shifts with an ambiguity code of 4 or more");
  warn(chosen, odd.outside, "shifts far outside of the usual range, the first " + odd.firstOutside);
}

/// Prolines whose CB and CG are both the same as another's were probably copied.
void warnOfCopies(ChosenShifts& chosen) {
  std::map<std::pair<std::string, std::string>, std::size_t> seen;
  for (std::size_t i = 0; i < chosen.values.size(); ++i) {
    const auto cb = chosen.values[i].find("CB");
    const auto cg = chosen.values[i].find("CG");
    if (chosen.letters[i] == 'P' && cb != chosen.values[i].end() && cg != chosen.values[i].end()) {
      ++seen[{cb->second, cg->second}];
    }
  }
  for (const auto& [shifts, count] : seen) {
    warn(chosen, count > 1 ? count : 0,
         "prolines with the same CB " + shifts.first + " and CG " + shifts.second);
  }
}

void warnOfMissingNuclei(ChosenShifts& chosen) {
  std::string missing;
  for (const char* atom : {"N", "HN", "C", "CA", "CB"}) {
    const bool any = std::any_of(chosen.values.begin(), chosen.values.end(),
                                 [atom](const auto& values) { return values.count(atom) > 0; });
    missing += any ? "" : std::string(missing.empty() ? "" : ", ") + atom;
  }
  std::size_t prolines = 0;
  std::size_t withoutCg = 0;
  for (std::size_t i = 0; i < chosen.values.size(); ++i) {
    prolines += chosen.letters[i] == 'P' ? 1U : 0U;
    withoutCg += chosen.letters[i] == 'P' && chosen.values[i].count("CG") == 0 ? 1U : 0U;
  }
  if (!missing.empty()) {
    chosen.warnings.push_back("no shifts at all of " + missing);
  }
  if (prolines > 0) {
    chosen.notes.push_back(std::to_string(prolines) + " prolines, " + std::to_string(withoutCg) +
                           " of them without CG");
  }
}

/// Marks oxidised cysteines, by what the deposition says or by their CB.
void markCysteines(const Choice& choice, ChosenShifts& chosen) {
  std::size_t marked = 0;
  const bool said = chosen.polymer.allDisulfide || !chosen.polymer.bonded.empty();
  for (std::size_t i = 0; i < chosen.letters.size(); ++i) {
    const bool bySaying = chosen.polymer.allDisulfide ||
                          chosen.polymer.bonded.count(chosen.polymer.residues[i].index) > 0;
    const auto cb = chosen.values[i].find("CB");
    const bool byCb = choice.oxidisedByCb && cb != chosen.values[i].end() &&
                      parseDouble(cb->second) > oxidisedFromCb;
    if (chosen.letters[i] == 'C' && (bySaying || byCb)) {
      chosen.letters[i] = 'c';
      ++marked;
    }
  }
  if (marked > 0) {
    chosen.notes.push_back(counted(marked, "cysteines are oxidised (c), by ") +
                           (said ? "what the deposition says" : "") +
                           (said && choice.oxidisedByCb ? " or " : "") +
                           (choice.oxidisedByCb ? "their CB above 34 ppm" : ""));
  }
}

/// Keeps one copy of a polymer of which the list holds several, by default the one with the most
/// shifts, and says so.
std::vector<Shift> oneCopy(const std::vector<Shift>& shifts, const Choice& choice,
                           const std::string& file, ChosenShifts& chosen) {
  std::map<std::string, std::size_t> copies;
  for (const Shift& shift : shifts) {
    ++copies[shift.copy];
  }
  auto best = copies.begin();
  for (auto copy = copies.begin(); copy != copies.end(); ++copy) {
    best = copy->second > best->second ? copy : best;
  }
  best = choice.copy.empty() ? best : copies.find(choice.copy);
  if (best == copies.end()) {
    throw ToolError(ToolStatus::badData, file + ": no shifts of copy " + choice.copy);
  }
  if (copies.size() > 1) {
    chosen.notes.push_back("copy " + best->first + " of " + std::to_string(copies.size()) +
                           " in the assembly, with " + counted(best->second, "shifts"));
  }
  std::vector<Shift> kept;
  std::copy_if(shifts.begin(), shifts.end(), std::back_inserter(kept),
               [&best](const Shift& shift) { return shift.copy == best->first; });
  return kept;
}

void describeResidues(ChosenShifts& chosen, const std::vector<Shift>& shifts,
                      const Numbering& numbering) {
  for (const Residue& residue : chosen.polymer.residues) {
    chosen.letters += oneLetterCode(residue.name);
    chosen.authors.push_back(residue.author);
  }
  // The shifts know the authors' numbers better than the sequence where both speak.
  for (std::size_t i = 0; i < shifts.size(); ++i) {
    const int position = numbering.positions[i];
    const std::string& author = numbering.authors ? shifts[i].index : shifts[i].author;
    if (position > 0 && !author.empty()) {
      chosen.authors[static_cast<std::size_t>(position) - 1] = author;
    }
  }
  fillAuthors(chosen.polymer, chosen.authors);
}

} // namespace

ChosenShifts chooseShifts(const Deposition& given, const Choice& choice, const std::string& file) {
  const Deposition deposition = withPolymers(given);
  const Pair pair = choosePair(deposition, choice, file);
  ChosenShifts chosen;
  chosen.polymer = *pair.polymer;
  chosen.list = *pair.list;
  const std::vector<Shift> shifts =
      oneCopy(shiftsOf(*pair.list, *pair.polymer, deposition), choice, file, chosen);
  const Numbering numbering =
      alignNumbers(*pair.polymer, shifts, atLine(file, pair.list->line, ""));
  chosen.values.resize(chosen.polymer.residues.size());
  describeResidues(chosen, shifts, numbering);

  chosen.notes.push_back(named("entity", chosen.polymer.id, chosen.polymer.name) + " of " +
                         std::to_string(deposition.polymers.size()) + " with " +
                         counted(chosen.polymer.residues.size(), "residues") + ", " +
                         named("shift list", chosen.list.id, chosen.list.name) + " of " +
                         std::to_string(deposition.lists.size()));
  chosen.notes.push_back(numbering.way);
  Oddities odd;
  for (std::size_t i = 0; i < shifts.size(); ++i) {
    takeShift(shifts[i], numbering.positions[i], chosen, odd);
  }
  warn(chosen, numbering.misfits, "residues named otherwise by the shifts than by the sequence");
  warn(chosen,
       static_cast<std::size_t>(std::count_if(chosen.list.shifts.begin(), chosen.list.shifts.end(),
                                              [](const Shift& shift) { return !isFirm(shift); })),
       "shifts of no certain residue left out");
  warnOfOddities(odd, chosen);
  warnOfCopies(chosen);
  warnOfMissingNuclei(chosen);
  markCysteines(choice, chosen);
  if (deposition.deuterated) {
    chosen.warnings.emplace_back("a sample is deuterated: consider citrans -iso");
  }
  warn(chosen, deposition.otherBlocks, "more data blocks hold shifts: only the first is read");
  return chosen;
}

std::string listContents(const Deposition& given) {
  const Deposition deposition = withPolymers(given);
  std::string text = deposition.kind + " " + deposition.id + "\n";
  for (const Polymer& polymer : deposition.polymers) {
    text += "entity " + polymer.id + "\t" + counted(polymer.residues.size(), "residues") + "\t" +
            (polymer.isProtein() ? "protein" : "other") + "\t" + polymer.name + "\n";
  }
  for (const ShiftList& list : deposition.lists) {
    text += "list " + list.id + "\t" + counted(list.shifts.size(), "shifts");
    for (const Polymer& polymer : deposition.polymers) {
      const std::size_t own = shiftsOf(list, polymer, deposition).size();
      text += own > 0 ? "\tentity " + polymer.id + ": " + std::to_string(own) : "";
    }
    text += "\t" + list.name + "\n";
  }
  return text;
}
