#include <algorithm>

#include "tools/import/import.h"
#include "tools/report/inputs.h"
#include "tools/report/text.h"

namespace {

/// The remarks that the importer begins its tables with.
constexpr std::string_view shiftsOf = "Chemical shifts of ";
constexpr std::string_view entity = "entity ";
constexpr std::string_view warning = "Warning: ";
/// What the import found of the referencing of a nucleus.
constexpr std::string_view referencingOf = "referencing of ";
constexpr char isotopeShifts[] = "Isotope Shifts Correction Applied";
/// The first remark of citrans itself, after those of its input and of what it corrected.
constexpr std::string_view ownRemarks = "CITRANS Protein Secondary Chemical Shift Table for ";
/// The end of the name of a structure that was renumbered to the table, in a file that nobody has
/// seen.
constexpr std::string_view renumbered = ".ref.pdb";

bool startsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

bool endsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// What citrans or the import took off the shifts.
bool isCorrection(std::string_view remark) {
  const bool taken = endsWith(remark, ": taken off") || endsWith(remark, " as told");
  return (startsWith(remark, referencingOf) && taken) ||
         remark.find("ppm referencing offset applied for") != std::string_view::npos ||
         remark.find(isotopeShifts) != std::string_view::npos;
}

/// Drops what the import advised and the run has done.
void dropFollowedAdvice(About& about) {
  const auto isIsotopes = [](const std::string& text) {
    return text.find(isotopeShifts) != std::string::npos;
  };
  const auto isAdvice = [](const std::string& text) {
    return text.find(isotopeAdvice) != std::string::npos;
  };
  if (std::any_of(about.corrections.begin(), about.corrections.end(), isIsotopes)) {
    about.warnings.erase(std::remove_if(about.warnings.begin(), about.warnings.end(), isAdvice),
                         about.warnings.end());
  }
}

/// "Chemical shifts of NMR-STAR 3 entry 16570, from bmr16570.str"
void takeEntry(const std::string& remark, About& about) {
  const std::size_t from = remark.rfind(", from ");
  about.entry = remark.substr(shiftsOf.size(), from - shiftsOf.size());
  if (from == std::string::npos) {
    about.entry = remark.substr(shiftsOf.size());
  } else {
    about.source = remark.substr(from + 7);
  }
}

/// Whether a deposition, or the importer in its place, names a molecule so that it has no name:
/// "2", "entity", "entity_1", "chain A".
bool isNoName(const std::string& name) {
  const std::string plain = startsWith(name, "entity") ? name.substr(6) : name;
  return plain.find_first_not_of("_0123456789") == std::string::npos ||
         startsWith(name, "chain ") || name == "residues named by the shifts";
}

/// "entity 1 (Dhaf_0833) of 1 with 96 residues, ...", or "entity Dhaf_0833 of 1 with ..." where the
/// deposition has no number or no name of its own.
void takeProtein(const std::string& remark, About& about) {
  const std::size_t end = remark.find(" with ");
  const std::size_t of = remark.rfind(" of ", end);
  if (end == std::string::npos || of == std::string::npos || of <= entity.size()) {
    return;
  }
  std::string name = remark.substr(entity.size(), of - entity.size());
  const std::size_t open = name.find('(');
  if (open != std::string::npos && name.back() == ')') {
    name = open == 0 ? "" : name.substr(open + 1, name.size() - open - 2);
  }
  about.protein = isNoName(name) ? "" : name;
}

} // namespace

std::string statisticsMadeBy(const GDB& statistics) {
  constexpr std::string_view start = "Made by ";
  std::string madeBy;
  for (const std::string& remark : statistics.remarks()) {
    const std::string text = GDB::simplifyWhiteSpace(remark);
    if (startsWith(text, start)) {
      madeBy = text.substr(start.size(), text.find(':') - start.size());
    }
  }
  return madeBy;
}

About aboutFrom(const std::vector<std::string>& remarks) {
  About about;
  bool imported = false;
  for (const std::string& remark : remarks) {
    const std::string text = GDB::simplifyWhiteSpace(remark);
    if (startsWith(text, ownRemarks)) {
      about.table = text.substr(ownRemarks.size());
      break;
    }
    if (isCorrection(text)) {
      about.corrections.push_back(text);
      continue;
    }
    if (startsWith(text, warning)) {
      about.warnings.push_back(text.substr(warning.size()));
      continue;
    }
    if (startsWith(text, shiftsOf) && !imported) {
      imported = true;
      takeEntry(text, about);
    } else if (startsWith(text, entity) && imported && about.protein.empty()) {
      takeProtein(text, about);
    }
    if (!text.empty()) {
      about.remarks.push_back(text);
    }
  }
  dropFollowedAdvice(about);
  return about;
}

std::string Inputs::shownTitle() const {
  return title == about.table || isPath(title) ? lastPart(title) : title;
}

std::string Inputs::shownReference() const {
  const std::string name = isPath(referenceTitle) ? lastPart(referenceTitle) : referenceTitle;
  return endsWith(name, renumbered) ? name.substr(0, name.size() - renumbered.size()) : name;
}

std::string Inputs::proteinName() const {
  constexpr std::size_t longest = 80;
  if (!about.protein.empty()) {
    return about.protein;
  }
  // A title that is no file was given by the user.
  if (!title.empty() && title != about.table && !isPath(title)) {
    return title;
  }
  if (!about.entry.empty()) {
    const bool numbered = about.entry.find(" entry ") != std::string::npos;
    return numbered || about.source.empty() ? about.entry : about.source;
  }
  const auto first =
      std::find_if(about.remarks.begin(), about.remarks.end(),
                   [](const std::string& remark) { return !startsWith(remark, referencingOf); });
  if (first != about.remarks.end()) {
    std::string start = first->substr(0, first->find(", "));
    if (start.size() <= longest) {
      return start;
    }
  }
  return title.empty() ? "this protein" : shownTitle();
}
