#include "tools/import/deposition.h"

#include <algorithm>
#include <cmath>

#include "table/number.h"
#include "tools/common/tool.h"
#include "tools/import/amino_acids.h"
#include "tools/import/foreign_file.h"
#include "tools/import/nmr_star3_shifts.h"
#include "tools/import/residue_names.h"

namespace {

/// Problems of a file that are told, at most.
constexpr std::size_t mostProblems = 5;

bool anyTagBegins(const StarBlock& frames, const std::string& start) {
  return std::any_of(frames.begin(), frames.end(), [&](const StarFrame& frame) {
    return std::any_of(frame.loops.begin(), frame.loops.end(), [&](const StarLoop& loop) {
      return loop.tags.front().compare(0, start.size(), start) == 0;
    });
  });
}

bool holdsShifts(const StarBlock& frames) {
  return std::any_of(frames.begin(), frames.end(), [](const StarFrame& frame) {
    return std::any_of(frame.loops.begin(), frame.loops.end(), [](const StarLoop& loop) {
      return loop.has("_nef_chemical_shift.value") || star3ValueColumn(loop) >= 0 ||
             (loop.has("_chem_shift_value") &&
              (loop.has("_residue_seq_code") || loop.has("_residue_author_seq_code")));
    });
  });
}

Deposition readBlock(const StarDocument& document, const StarBlock& frames) {
  if (anyTagBegins(frames, "_nef_")) {
    return readNef(document, frames);
  }
  if (anyTagBegins(frames, "_atom_chem_shift.")) {
    return readNmrStar3(document, frames);
  }
  return readNmrStar21(document, frames);
}

/// Depositions cut down to a list of shifts say nothing of a molecule, or not its sequence: this is
/// then what the shifts name.
void markGuessed(Deposition& deposition) {
  if (deposition.polymers.empty()) {
    std::set<std::string> ids;
    for (const ShiftList& list : deposition.lists) {
      for (const ShiftRun& run : list.runs) {
        ids.emplace(run.polymer);
      }
    }
    for (const std::string& id : ids) {
      deposition.polymers.emplace_back().id = id;
    }
  }
  std::size_t place = 0;
  for (Polymer& polymer : deposition.polymers) {
    polymer.place = place++;
    polymer.guessed = polymer.residues.empty();
    polymer.name =
        polymer.guessed && polymer.name.empty() ? "residues named by the shifts" : polymer.name;
  }
}

/// Loops that cannot be read, none of which was needed if this is reached.
void addProblems(const StarDocument& document, const StarBlock& frames, Deposition& deposition) {
  for (const std::string& problem : document.problems) {
    deposition.problems.push_back("line " + problem);
  }
  for (const StarFrame& frame : frames) {
    for (const StarLoop& loop : frame.loops) {
      if (!loop.broken.empty() && deposition.problems.size() < mostProblems) {
        deposition.problems.push_back("line " + whyBroken(document, loop) + "; it is not needed");
      }
    }
  }
}

/// Whether any line begins with a word.
bool lineBegins(std::string_view text, std::string_view word) {
  for (std::size_t at = text.find(word); at != std::string_view::npos;
       at = text.find(word, at + 1)) {
    if (at == 0 || text[at - 1] == '\n') {
      return true;
    }
  }
  return false;
}

[[noreturn]] void refuse(const StarDocument& document) {
  const std::string_view text = document.text;
  std::string what = "no assigned chemical shifts found";
  const bool tagged =
      std::any_of(document.blocks.begin(), document.blocks.end(), [](const StarBlock& block) {
        return block.size() > 1 || !block[0].loops.empty() || !block[0].tags.empty();
      });
  const std::string_view foreign = foreignKind(text);
  if (trimmed(text).empty()) {
    what = "the file is empty";
  } else if (!foreign.empty()) {
    what = "this is " + std::string(foreign);
  } else if (lineBegins(text, "VARS ") && lineBegins(text, "FORMAT ")) {
    what = "this is already a table";
  } else if (lineBegins(text, "_atom_site.") || lineBegins(text, "ATOM  ")) {
    what = "this is a structure, not an NMR-STAR or NEF file";
  } else if (!tagged) {
    what = "not an NMR-STAR or NEF file";
  } else if (!document.problems.empty()) {
    throw ToolError(ToolStatus::badData,
                    document.file + ":" + document.problems.front() + "; " + what);
  }
  throw ToolError(ToolStatus::badData, document.file + ": " + what);
}

/// A decimal number and nothing else; not-a-number for any other text.
double plainNumber(std::string_view text) {
  const bool plain = !text.empty() && text.find_first_of("0123456789") != std::string_view::npos &&
                     text.find_first_not_of("+-.0123456789eE") == std::string_view::npos;
  char* end = nullptr;
  const std::string word(plain ? text.substr(0, 64) : "");
  std::strtod(word.c_str(), &end);
  return plain && *end == '\0' ? parseDouble(word) : std::nan("");
}

} // namespace

bool Polymer::isProtein() const {
  const auto known = std::count_if(residues.begin(), residues.end(), [](const Residue& residue) {
    return oneLetterCode(residue.name) != 'X';
  });
  return known > 0 && static_cast<std::size_t>(known) * 2 >= residues.size();
}

bool ShiftRun::isFirm() const {
  return !name.empty() && !index.empty() && index.find_first_of("?@") == std::string_view::npos &&
         index.find_first_of("+-", 1) == std::string_view::npos;
}

void ShiftList::add(const ListedShift& listed) {
  ++rows;
  ListedShift row = listed;
  row.index = plainCount(row.index);
  row.author = plainCount(row.author);
  const bool same = !runs.empty() && runs.back().index == row.index &&
                    runs.back().polymer == row.polymer && runs.back().copy == row.copy &&
                    runs.back().author == row.author && runs.back().name == row.residue;
  if (!same) {
    ShiftRun run;
    run.polymer = row.polymer;
    run.copy = row.copy;
    run.index = row.index;
    run.author = row.author;
    run.name = row.residue;
    run.letter = oneLetterCode(row.residue);
    run.first = static_cast<std::uint32_t>(shifts.size());
    runs.push_back(run);
  }
  ShiftRun& run = runs.back();
  ++run.rows;
  const std::uint8_t atom = tableAtom(run.letter, row.atom);
  if (atom != otherAtom) {
    const int code = std::clamp(parseInt(row.ambiguity), 0, 255);
    shifts.push_back({plainNumber(row.value), atom, static_cast<std::uint8_t>(code)});
    ++run.count;
  }
}

Polymer& Deposition::polymer(const std::string& polymerId) {
  const auto [place, added] = places_.emplace(polymerId, polymers.size());
  if (added) {
    polymers.emplace_back().id = polymerId;
  }
  return polymers[place->second];
}

void Deposition::add(ShiftList list) {
  if (list.rows > 0) {
    lists.push_back(std::move(list));
  }
}

const Polymer* Deposition::known(std::string_view polymerId) const {
  const auto found = std::find_if(polymers.begin(), polymers.end(), [&](const Polymer& one) {
    return one.id == polymerId && (!one.residues.empty() || !one.copies.empty());
  });
  return found == polymers.end() ? nullptr : &*found;
}

Deposition readDeposition(std::string_view text, const std::string& file) {
  const StarDocument document = readStar(text, file);
  const auto block = std::find_if(document.blocks.begin(), document.blocks.end(), holdsShifts);
  if (block == document.blocks.end()) {
    refuse(document);
  }
  Deposition deposition = readBlock(document, *block);
  if (deposition.lists.empty()) {
    refuse(document);
  }
  deposition.otherBlocks =
      static_cast<std::size_t>(std::count_if(block + 1, document.blocks.end(), holdsShifts));
  addProblems(document, *block, deposition);
  markGuessed(deposition);
  return deposition;
}
