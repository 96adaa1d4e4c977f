#include "tools/import/residue_names.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <unordered_map>

#include "table/number.h"
#include "tools/import/amino_acids.h"
#include "tools/import/numbering.h"

namespace {

/// Amino acids whose letters are not those of nucleotides, nor of unknown ones.
constexpr std::string_view tellingLetters = "DEFHKLMPQRSVWY";
/// Rows of glycines and prolines for one that cannot be, where numbers are read rightly.
constexpr std::size_t rowsForOneClash = 20;

bool isTelling(std::string_view name) {
  return name.size() == 1 && tellingLetters.find(capitals(name)[0]) != std::string_view::npos;
}

/// The three-letter name for a letter; any other name as it is.
std::string_view longName(std::string_view name) {
  const std::string_view amino =
      name.size() == 1 ? nameOfLetter(capitals(name)[0]) : std::string_view();
  return amino.empty() ? name : amino;
}

bool isLetter(char c) {
  return lowerCase(c) >= 'a' && lowerCase(c) <= 'z';
}

/// Takes out residues that are the same as one before, their numbers included.
bool dropRepeats(std::vector<Residue>& residues) {
  std::set<std::tuple<std::string, std::string, std::string>> seen;
  const auto repeated = [&seen](const Residue& one) {
    return !one.index.empty() && !seen.emplace(one.index, one.author, one.name).second;
  };
  const auto kept = std::remove_if(residues.begin(), residues.end(), repeated);
  const bool any = kept != residues.end();
  residues.erase(kept, residues.end());
  return any;
}

/// The names of a text that holds two three-letter names or more, and no other words.
std::vector<std::string> longNames(std::string_view text) {
  std::vector<std::string> names;
  for (std::size_t at = 0; at < text.size();) {
    const auto* const begin = std::find_if(text.begin() + at, text.end(), isLetter);
    const auto* const end = std::find_if_not(begin, text.end(), isLetter);
    const std::string_view word = text.substr(static_cast<std::size_t>(begin - text.begin()),
                                              static_cast<std::size_t>(end - begin));
    if (!word.empty() && (word.size() != 3 || oneLetterCode(word) == 'X')) {
      return {};
    }
    if (!word.empty()) {
      names.push_back(capitals(word));
    }
    at = static_cast<std::size_t>(end - text.begin());
  }
  return names.size() > 1 ? names : std::vector<std::string>();
}

void tidy(std::vector<Residue>& residues) {
  const bool letters = std::any_of(residues.begin(), residues.end(),
                                   [](const Residue& one) { return isTelling(one.name); }) &&
                       std::none_of(residues.begin(), residues.end(), [](const Residue& one) {
                         return oneLetterCode(one.name) != 'X';
                       });
  for (Residue& residue : residues) {
    residue.index = std::string(plainCount(residue.index));
    residue.author = std::string(plainCount(residue.author));
    residue.name = letters ? std::string(longName(residue.name)) : residue.name;
  }
}

/// Reads the numbers of shifts that name no residues in one way.
class NumberedNames {
 public:
  using Names = std::unordered_map<std::string_view, std::string_view>;

  NumberedNames(const Deposition& deposition, std::string Residue::*number) {
    for (const Polymer& polymer : deposition.polymers) {
      Names& names = byPolymer_[polymer.id];
      for (const Residue& residue : polymer.residues) {
        names.emplace(residue.*number, residue.name);
      }
    }
  }

  /// Empty where the residue is not known.
  std::string_view nameOf(const ListedShift& row) const {
    const auto own = byPolymer_.size() == 1 ? byPolymer_.begin() : byPolymer_.find(row.polymer);
    if (own == byPolymer_.end() || row.index.empty()) {
      return {};
    }
    const auto residue = own->second.find(plainCount(row.index));
    return residue == own->second.end() ? std::string_view() : residue->second;
  }

  void count(const ListedShift& row) {
    const char letter = oneLetterCode(nameOf(row));
    found_ += letter == 'X' ? 0U : 1U;
    if (letter == 'G' || letter == 'P') {
      const std::uint8_t atom = tableAtom(letter, row.atom);
      ++telling_;
      clashes_ += atom == (letter == 'G' ? atomCb : atomHn) ? 1U : 0U;
    }
  }

  std::size_t found() const { return found_; }
  bool isLikely() const { return found_ > 0 && clashes_ * rowsForOneClash <= telling_; }

 private:
  std::map<std::string_view, Names> byPolymer_;
  std::size_t found_ = 0;
  std::size_t telling_ = 0;
  std::size_t clashes_ = 0;
};

/// How a loop names its residues.
enum class Naming { letters, numbers, usual };

Naming namingOf(const NextShift& next) {
  Naming naming = Naming::numbers;
  for (ListedShift row; next(row);) {
    if (row.residue.size() > 1 && oneLetterCode(row.residue) != 'X') {
      return Naming::usual;
    }
    if (!row.residue.empty() && naming != Naming::letters) {
      naming = isTelling(row.residue) ? Naming::letters : Naming::usual;
    }
  }
  return naming;
}

} // namespace

std::string_view plainCount(std::string_view text) {
  constexpr std::string_view appended = ".0";
  std::string_view count = text;
  if (count.size() > appended.size() && count.substr(count.size() - appended.size()) == appended) {
    count.remove_suffix(appended.size());
  }
  count.remove_prefix(!count.empty() && count[0] == '+' ? 1 : 0);
  const std::size_t digits = !count.empty() && count[0] == '-' ? 1 : 0;
  if (count.size() == digits ||
      count.find_first_not_of("0123456789", digits) != std::string_view::npos) {
    return text;
  }
  return count.substr(std::min(count.find_first_not_of('0'), count.size() - 1));
}

std::vector<Residue> residuesFromLetters(std::string_view letters) {
  std::vector<Residue> residues;
  const auto add = [&residues](const std::string& name) {
    residues.push_back({std::to_string(residues.size() + 1), "", name});
  };
  letters = trimmed(letters);
  if (!letters.empty() && letters.front() == '>') {
    letters.remove_prefix(std::min(letters.find_first_of("\r\n"), letters.size()));
  }
  const std::vector<std::string> names = longNames(letters);
  std::for_each(names.begin(), names.end(), add);
  for (std::size_t i = names.empty() ? 0 : letters.size(); i < letters.size(); ++i) {
    const std::size_t close = letters[i] == '(' ? letters.find(')', i) : std::string_view::npos;
    if (close != std::string_view::npos) {
      add(capitals(letters.substr(i + 1, close - i - 1)));
      i = close;
    } else if (isLetter(letters[i])) {
      add(threeLetterName(capitals(letters.substr(i, 1))[0]));
    }
  }
  return residues;
}

bool sortByNumber(std::vector<Residue>& residues, const std::vector<std::string>& numbers) {
  std::map<int, std::size_t> places;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::string_view count = plainCount(numbers[i]);
    if (!isPlainNumber(count) || !places.emplace(parseInt(count), i).second) {
      return false;
    }
  }
  const bool counts = !places.empty() && static_cast<std::size_t>(places.rbegin()->first) -
                                                 static_cast<std::size_t>(places.begin()->first) ==
                                             places.size() - 1;
  const bool ordered =
      std::is_sorted(places.begin(), places.end(),
                     [](const auto& one, const auto& other) { return one.second < other.second; });
  if (!counts || ordered) {
    return false;
  }
  std::vector<Residue> sorted;
  sorted.reserve(residues.size());
  for (const auto& [number, place] : places) {
    sorted.push_back(std::move(residues[place]));
  }
  residues = std::move(sorted);
  return true;
}

std::string outOfOrder(const Polymer& polymer) {
  return "molecule" + (polymer.id.empty() ? "" : " " + polymer.id) +
         ": its residues are listed out of order, and sorted by their numbers";
}

void sortResidues(Deposition& deposition) {
  const auto sort = [](std::vector<Residue>& residues) {
    std::vector<std::string> numbers;
    std::transform(residues.begin(), residues.end(), std::back_inserter(numbers),
                   [](const Residue& residue) { return residue.index; });
    return sortByNumber(residues, numbers);
  };
  for (Polymer& polymer : deposition.polymers) {
    if (dropRepeats(polymer.residues)) {
      deposition.problems.push_back("molecule" + (polymer.id.empty() ? "" : " " + polymer.id) +
                                    ": residues that are listed twice count once");
    }
    bool moved = sort(polymer.residues);
    for (auto& [copy, residues] : polymer.copies) {
      moved = sort(residues) || moved;
    }
    if (moved) {
      deposition.problems.push_back(outOfOrder(polymer));
    }
  }
}

void tidyResidues(Deposition& deposition) {
  for (Polymer& polymer : deposition.polymers) {
    std::set<std::string> bonded;
    for (const std::string& index : polymer.bonded) {
      bonded.emplace(plainCount(index));
    }
    polymer.bonded = std::move(bonded);
    tidy(polymer.residues);
    for (auto& [copy, residues] : polymer.copies) {
      tidy(residues);
    }
  }
}

void addShifts(const std::function<NextShift()>& open, const Deposition& deposition,
               ShiftList& list) {
  const Naming naming = namingOf(open());
  std::vector<NumberedNames> ways;
  if (naming == Naming::numbers) {
    ways.emplace_back(deposition, &Residue::index);
    ways.emplace_back(deposition, &Residue::author);
    const NextShift next = open();
    for (ListedShift row; next(row);) {
      ways[0].count(row);
      ways[1].count(row);
    }
    const NumberedNames& best = ways[ways[1].found() > ways[0].found() ? 1 : 0];
    list.namedBySequence = best.isLikely();
    ways = {best};
  }
  const NextShift next = open();
  for (ListedShift row; next(row);) {
    if (list.namedBySequence) {
      row.residue = ways[0].nameOf(row);
    } else if (naming == Naming::letters) {
      row.residue = longName(row.residue);
    }
    list.add(row);
  }
}
