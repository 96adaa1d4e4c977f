#include "tools/import/deposition.h"

#include <algorithm>
#include <map>

#include "table/number.h"
#include "tools/common/tool.h"

namespace {

struct AminoAcid {
  const char* three;
  char one;
};

constexpr AminoAcid aminoAcids[] = {
    {"ALA", 'A'}, {"ARG", 'R'}, {"ASN", 'N'}, {"ASP", 'D'}, {"CYS", 'C'}, {"GLN", 'Q'},
    {"GLU", 'E'}, {"GLY", 'G'}, {"HIS", 'H'}, {"ILE", 'I'}, {"LEU", 'L'}, {"LYS", 'K'},
    {"MET", 'M'}, {"MSE", 'M'}, {"PHE", 'F'}, {"PRO", 'P'}, {"SER", 'S'}, {"THR", 'T'},
    {"TRP", 'W'}, {"TYR", 'Y'}, {"VAL", 'V'},
};

/// A numbering with larger holes is no sequence.
constexpr int longestGap = 1000;

bool anyTagBegins(const std::vector<StarFrame>& frames, const std::string& start) {
  const auto begins = [&start](const std::string& tag) {
    return tag.compare(0, start.size(), start) == 0;
  };
  return std::any_of(frames.begin(), frames.end(), [&](const StarFrame& frame) {
    return std::any_of(frame.loops.begin(), frame.loops.end(),
                       [&](const StarLoop& loop) { return begins(loop.tags.front()); });
  });
}

Deposition readBlock(const StarBlock& frames) {
  if (anyTagBegins(frames, "_nef_")) {
    return readNef(frames);
  }
  if (anyTagBegins(frames, "_atom_chem_shift.")) {
    return readNmrStar3(frames);
  }
  return readNmrStar21(frames);
}

} // namespace

char oneLetterCode(const std::string& threeLetterName) {
  for (const AminoAcid& acid : aminoAcids) {
    if (threeLetterName == acid.three) {
      return acid.one;
    }
  }
  return 'X';
}

bool Polymer::isProtein() const {
  const auto known = std::count_if(residues.begin(), residues.end(), [](const Residue& residue) {
    return oneLetterCode(residue.name) != 'X';
  });
  return known > 0 && static_cast<std::size_t>(known) * 2 >= residues.size();
}

std::vector<Residue> residuesFromLetters(const std::string& letters) {
  std::vector<Residue> residues;
  for (const char letter : letters) {
    if (letter < 'A' || letter > 'z') {
      continue;
    }
    const char upper = letter >= 'a' ? static_cast<char>(letter - 32) : letter;
    const auto* const acid =
        std::find_if(std::begin(aminoAcids), std::end(aminoAcids),
                     [upper](const AminoAcid& known) { return known.one == upper; });
    Residue residue;
    residue.index = std::to_string(residues.size() + 1);
    residue.name = acid != std::end(aminoAcids) ? acid->three : "UNK";
    residues.push_back(residue);
  }
  return residues;
}

std::vector<Residue> residuesFromShifts(const ShiftList& list) {
  std::map<int, std::string> names;
  for (const Shift& shift : list.shifts) {
    names.emplace(parseInt(shift.index), shift.residue);
  }
  std::vector<Residue> residues;
  for (auto known = names.begin(); known != names.end(); ++known) {
    const int before = known == names.begin() ? known->first - 1 : std::prev(known)->first;
    if (static_cast<long long>(known->first) - before > longestGap) {
      throw ToolError(ToolStatus::badData, "no sequence, and the shifts leave gaps of more than " +
                                               std::to_string(longestGap) + " residues");
    }
    for (int number = before + 1; number <= known->first; ++number) {
      const bool present = number == known->first;
      residues.push_back({std::to_string(number), "", present ? known->second : "UNK"});
    }
  }
  return residues;
}

Deposition readDeposition(std::string_view text, const std::string& file) {
  Deposition deposition;
  for (const StarBlock& block : readStar(text, file)) {
    Deposition found = readBlock(block);
    if (deposition.lists.empty()) {
      deposition = std::move(found);
    } else if (!found.lists.empty()) {
      ++deposition.otherBlocks;
    }
  }
  if (deposition.lists.empty()) {
    throw ToolError(ToolStatus::badData, file + ": no assigned chemical shifts found");
  }
  return deposition;
}
