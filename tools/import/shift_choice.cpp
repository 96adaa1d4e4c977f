#include "tools/import/shift_choice.h"

#include <algorithm>

#include "table/number.h"
#include "tools/common/tool.h"
#include "tools/import/amino_acids.h"
#include "tools/import/chosen_checks.h"
#include "tools/import/import.h"
#include "tools/import/numbering.h"

namespace {

/// A numbering with larger holes is no sequence.
constexpr std::size_t longestGap = 1000;
/// Residues without shifts for each one with them, beyond that.
constexpr std::size_t gapForEach = 4;
/// Proteins that are compared with shifts that name none.
constexpr std::size_t mostOwnersTried = 24;

/// "entity 1 (name)", as far as the deposition gives them.
std::string named(const std::string& what, const std::string& id, const std::string& name) {
  return what + (id.empty() ? "" : " " + id) +
         (name.empty() || name == id ? "" : " (" + name + ")");
}

/// Residues as far as the shifts name them, with unknown ones in the gaps.
std::vector<Residue> residuesFromShifts(const std::vector<const ShiftRun*>& runs,
                                        const std::string& file) {
  std::map<int, const ShiftRun*> listed;
  for (const ShiftRun* run : runs) {
    listed.emplace(parseInt(run->index), run);
  }
  std::vector<Residue> residues;
  long long next = listed.empty() ? 0 : listed.begin()->first;
  std::size_t gaps = 0;
  for (const auto& [number, run] : listed) {
    gaps += static_cast<std::size_t>(number - next);
    if (gaps > longestGap + gapForEach * listed.size()) {
      throw ToolError(ToolStatus::badData,
                      file + ": no sequence, and the shifts leave too many residues out");
    }
    for (; next < number; ++next) {
      residues.push_back({std::to_string(next), "", "UNK"});
    }
    residues.push_back({std::to_string(next++), "", capitals(run->name)});
  }
  return residues;
}

bool isWanted(const PolymerShifts& shifts, const Choice& choice) {
  if (!choice.entity.empty()) {
    return shifts.polymer->id == choice.entity;
  }
  return areOfProtein(shifts);
}

bool isWanted(const ShiftList& list, const Choice& choice) {
  return choice.list.empty() || list.id == choice.list || list.name == choice.list;
}

/// What there is to choose from, for a choice that is not there.
std::string alternatives(const Deposition& deposition) {
  std::string text = "; there are";
  for (const Polymer& polymer : deposition.polymers) {
    text += " " + named(deposition.kind == "NEF" ? "chain" : "entity", polymer.id, "") + ",";
  }
  for (const ShiftList& list : deposition.lists) {
    text += " " + named("list", list.id, list.name) + ",";
  }
  text.back() = ';';
  return text + " --list-contents shows more";
}

PolymerShifts choosePair(const Deposition& deposition, const Choice& choice,
                         const std::string& file) {
  PolymerShifts best;
  for (const ShiftList& list : deposition.lists) {
    if (!isWanted(list, choice)) {
      continue;
    }
    for (PolymerShifts& shifts : shiftsByPolymer(deposition, list)) {
      // Of equals the polymer that comes first, as far as lists before this one do not have it.
      const bool earlier = shifts.rows == best.rows && shifts.polymer->place < best.polymer->place;
      if ((shifts.rows > best.rows || earlier) && isWanted(shifts, choice)) {
        best = std::move(shifts);
      }
    }
  }
  if (best.polymer == nullptr) {
    const bool chain = deposition.kind == "NEF";
    throw ToolError(
        ToolStatus::badData,
        file + ": no shifts of " +
            (choice.entity.empty() ? "a protein" : (chain ? "chain " : "entity ") + choice.entity) +
            (choice.list.empty() ? "" : " in list " + choice.list) + alternatives(deposition));
  }
  return best;
}

/// Keeps one copy of a polymer of which the list holds several, by default the one with the most
/// shifts, and says so.
std::string chooseCopy(const PolymerShifts& shifts, const Choice& choice, const std::string& file,
                       ChosenShifts& chosen) {
  auto best = std::max_element(
      shifts.copies.begin(), shifts.copies.end(),
      [](const auto& one, const auto& other) { return one.second < other.second; });
  best = choice.copy.empty() ? best : shifts.copies.find(choice.copy);
  if (best == shifts.copies.end()) {
    std::string known;
    for (const auto& [copy, rows] : shifts.copies) {
      known += (known.empty() ? " " : ", ") + copy;
    }
    throw ToolError(ToolStatus::badData, file + ": no shifts of copy " + choice.copy +
                                             (known == " " ? "" : "; there are those of" + known));
  }
  if (shifts.copies.size() > 1) {
    chosen.notes.push_back("copy " + best->first + " of " + std::to_string(shifts.copies.size()) +
                           " in the assembly, with " + counted(best->second, "shift", "shifts"));
  }
  return best->first;
}

void describeResidues(ChosenShifts& chosen, const std::vector<const ShiftRun*>& runs,
                      const Numbering& numbering) {
  chosen.letters.reserve(chosen.residues.size());
  chosen.authors.reserve(chosen.residues.size());
  for (const Residue& residue : chosen.residues) {
    chosen.letters += oneLetterCode(residue.name);
    chosen.authors.push_back(residue.author);
  }
  // The shifts know the authors' numbers better than the sequence where both speak.
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const int position = numbering.positions[i];
    const std::string_view author = numbering.authors ? runs[i]->index : runs[i]->author;
    if (position > 0 && !author.empty()) {
      chosen.authors[static_cast<std::size_t>(position) - 1] = author;
    }
  }
  fillAuthors(chosen.residues, chosen.authors);
}

Numbering align(const ChosenShifts& chosen, const std::vector<const ShiftRun*>& runs,
                const std::string& place) {
  Numbering numbering = alignNumbers(chosen.residues, runs);
  if (!fitsWell(numbering)) {
    throw ToolError(ToolStatus::badData,
                    place + "shifts and sequence do not fit: at best " +
                        counted(numbering.fits, "residue agrees", "residues agree") + " and " +
                        std::to_string(numbering.misfits) +
                        (numbering.misfits == 1 ? " does not" : " do not"));
  }
  return numbering;
}

/// The first protein without shifts of its own that stray ones fit; null when there is none.
PolymerShifts* ownerOf(const std::vector<const ShiftRun*>& strays,
                       std::vector<PolymerShifts>& all) {
  std::size_t tried = 0;
  for (PolymerShifts& shifts : all) {
    const bool candidate = shifts.rows == 0 && shifts.polymer->isProtein();
    if (!strays.empty() && candidate && ++tried <= mostOwnersTried &&
        fitsWell(alignNumbers(shifts.polymer->residues, strays))) {
      return &shifts;
    }
  }
  return nullptr;
}

} // namespace

bool areOfProtein(const PolymerShifts& shifts) {
  if (!shifts.polymer->guessed) {
    return shifts.polymer->isProtein();
  }
  const auto known = std::count_if(shifts.runs.begin(), shifts.runs.end(),
                                   [](const ShiftRun* run) { return run->letter != 'X'; });
  return known > 0 && static_cast<std::size_t>(known) * 2 >= shifts.runs.size();
}

std::vector<PolymerShifts> shiftsByPolymer(const Deposition& deposition, const ShiftList& list) {
  std::vector<PolymerShifts> all(deposition.polymers.size());
  std::map<std::string_view, std::size_t> places;
  for (std::size_t i = 0; i < all.size(); ++i) {
    all[i].polymer = &deposition.polymers[i];
    all[i].list = &list;
    places.emplace(deposition.polymers[i].id, i);
  }
  std::vector<const ShiftRun*> strays;
  for (const ShiftRun& run : list.runs) {
    if (run.isFirm()) {
      const auto own = all.size() == 1 ? places.begin() : places.find(run.polymer);
      if (own == places.end()) {
        strays.push_back(&run);
      } else {
        all[own->second].add(run);
      }
    }
  }
  if (PolymerShifts* const owner = ownerOf(strays, all)) {
    for (const ShiftRun* run : strays) {
      owner->add(*run);
    }
  }
  for (PolymerShifts& shifts : all) {
    shifts.shareUnnamed();
  }
  all.erase(std::remove_if(all.begin(), all.end(),
                           [](const PolymerShifts& shifts) { return shifts.rows == 0; }),
            all.end());
  return all;
}

void PolymerShifts::add(const ShiftRun& run) {
  runs.push_back(&run);
  rows += run.rows;
  const auto copy = copies.find(run.copy);
  (copy == copies.end() ? copies[std::string(run.copy)] : copy->second) += run.rows;
}

void PolymerShifts::shareUnnamed() {
  const auto unnamed = copies.find("");
  if (unnamed == copies.end() || copies.size() == 1) {
    return;
  }
  const std::size_t shared = unnamed->second;
  copies.erase(unnamed);
  for (auto& [copy, count] : copies) {
    count += shared;
  }
}

ChosenShifts takePolymer(const Deposition& deposition, const PolymerShifts& shifts,
                         const Choice& choice, const std::string& file) {
  ChosenShifts chosen;
  const Polymer& polymer = *shifts.polymer;
  const std::string copy = chooseCopy(shifts, choice, file, chosen);
  chosen.entity = polymer.id;
  chosen.list = shifts.list->id.empty() ? shifts.list->name : shifts.list->id;
  chosen.copy = copy;
  std::vector<const ShiftRun*> runs;
  std::copy_if(shifts.runs.begin(), shifts.runs.end(), std::back_inserter(runs),
               [&copy](const ShiftRun* run) { return run->copy == copy || run->copy.empty(); });
  const auto listed = polymer.copies.find(copy);
  chosen.residues = polymer.guessed                  ? residuesFromShifts(runs, file)
                    : listed != polymer.copies.end() ? listed->second
                                                     : polymer.residues;
  const std::string place = atLine(file, shifts.list->line, "");
  const Numbering numbering = align(chosen, runs, place);
  describeResidues(chosen, runs, numbering);
  chosen.notes.push_back(named("entity", polymer.id, polymer.name) + " of " +
                         std::to_string(deposition.polymers.size()) + " with " +
                         counted(chosen.residues.size(), "residue", "residues") + ", " +
                         named("shift list", shifts.list->id, shifts.list->name) + " of " +
                         std::to_string(deposition.lists.size()));
  chosen.notes.push_back(numbering.way);
  warnOfNumbers(polymer, shifts.list->namedBySequence, runs, numbering, chosen);
  warnOfStrays(*shifts.list, chosen);
  TakenShifts taken = takeShifts(chosen.letters, *shifts.list, runs, numbering.positions);
  warnOfShifts(taken, chosen);
  chosen.values = std::move(taken.values);
  warnOfCopies(chosen);
  warnOfMissingNuclei(chosen);
  markCysteines(polymer, choice.oxidisedByCb, chosen);
  if (deposition.deuterated) {
    chosen.warnings.emplace_back(isotopeAdvice);
  }
  if (deposition.otherBlocks > 0) {
    chosen.warnings.push_back(
        counted(deposition.otherBlocks, "more data block holds", "more data blocks hold") +
        " shifts: only the first is read");
  }
  chosen.warnings.insert(chosen.warnings.end(), deposition.problems.begin(),
                         deposition.problems.end());
  return chosen;
}

ChosenShifts chooseShifts(const Deposition& deposition, const Choice& choice,
                          const std::string& file) {
  return takePolymer(deposition, choosePair(deposition, choice, file), choice, file);
}
