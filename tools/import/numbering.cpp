#include "tools/import/numbering.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "table/number.h"
#include "tools/import/amino_acids.h"

namespace {

/// Residues with another name for one that agrees, at most.
constexpr double largestMisfit = 0.05;
/// Pairs of residues of one name that may tell by how much numbers are moved, at most: those of
/// 10,000 residues of twenty kinds with as many.
constexpr std::size_t mostPairs = 5'000'000;
/// Constants tried for numbers that jump.
constexpr std::size_t mostDistances = 24;
/// What a jump costs, in residues that agree: fewer could agree by chance behind it.
constexpr int jumpPrice = 4;

/// Residues that agree for one misnamed in a short peptide.
constexpr std::size_t fitsForOneMisfit = 3;

/// Positions by residue number.
using Positions = std::unordered_map<std::string_view, int>;

/// Position of each residue by one of its two numbers.
Positions positionsBy(const std::vector<Residue>& residues, std::string Residue::*number) {
  Positions positions;
  for (std::size_t i = 0; i < residues.size(); ++i) {
    const std::string& text = residues[i].*number;
    if (!text.empty()) {
      positions.emplace(text, static_cast<int>(i) + 1);
    }
  }
  return positions;
}

/// Gives each run its position and counts the residues that agree and those that do not. A residue
/// of unknown kind does neither.
template <typename PositionOf>
Numbering tryNumbers(const std::vector<Residue>& residues, const std::vector<const ShiftRun*>& runs,
                     std::string_view ShiftRun::*number, PositionOf positionOf) {
  Numbering numbering;
  numbering.positions.reserve(runs.size());
  std::unordered_set<std::string_view> seen;
  for (const ShiftRun* run : runs) {
    const int position = positionOf(run->*number);
    numbering.positions.push_back(position);
    if (!seen.insert(run->*number).second) {
      continue;
    }
    const Residue* const residue =
        position > 0 ? &residues[static_cast<std::size_t>(position) - 1] : nullptr;
    if (residue == nullptr || residue->name != "UNK") {
      ++(residue != nullptr && namesAgree(*run, *residue) ? numbering.fits : numbering.misfits);
    }
  }
  return numbering;
}

Numbering tryTexts(const std::vector<Residue>& residues, const std::vector<const ShiftRun*>& runs,
                   std::string_view ShiftRun::*number, const Positions& positions) {
  return tryNumbers(residues, runs, number, [&positions](std::string_view text) {
    const auto found = positions.find(text);
    return found == positions.end() ? 0 : found->second;
  });
}

Numbering tryCounts(const std::vector<Residue>& residues, const std::vector<const ShiftRun*>& runs,
                    const std::map<int, long long>& distances) {
  return tryNumbers(residues, runs, &ShiftRun::index, [&](std::string_view text) {
    const auto distance = isPlainNumber(text) ? distances.find(parseInt(text)) : distances.end();
    if (distance == distances.end()) {
      return 0;
    }
    const long long position = distance->first - distance->second;
    const bool inside = position >= 1 && position <= static_cast<long long>(residues.size());
    return inside ? static_cast<int>(position) : 0;
  });
}

/// A run of each number.
std::map<int, const ShiftRun*> listedResidues(const std::vector<const ShiftRun*>& runs) {
  std::map<int, const ShiftRun*> listed;
  for (const ShiftRun* run : runs) {
    if (isPlainNumber(run->index)) {
      listed.emplace(parseInt(run->index), run);
    }
  }
  return listed;
}

/// What names agree by: the letter of an amino acid, else the name.
std::string nameKey(char letter, std::string_view name) {
  return letter == 'X' ? capitals(name) : std::string(1, letter);
}

/// The constants by which residues may be moved to agree in name, those with most agreements first.
std::vector<long long> likelyDistances(const std::vector<Residue>& residues,
                                       const std::map<int, const ShiftRun*>& listed) {
  std::map<std::string, std::pair<std::vector<long long>, std::vector<long long>>> byName;
  for (std::size_t i = 0; i < residues.size(); ++i) {
    byName[nameKey(oneLetterCode(residues[i].name), residues[i].name)].first.push_back(
        static_cast<long long>(i) + 1);
  }
  for (const auto& [number, run] : listed) {
    byName[nameKey(run->letter, run->name)].second.push_back(number);
  }
  std::size_t pairs = 0;
  for (const auto& [name, numbers] : byName) {
    pairs += numbers.first.size() * numbers.second.size();
  }
  if (pairs > mostPairs) {
    return {};
  }
  std::map<long long, std::size_t> votes;
  for (const auto& [name, numbers] : byName) {
    for (const long long number : numbers.second) {
      for (const long long position : numbers.first) {
        ++votes[number - position];
      }
    }
  }
  std::vector<std::pair<std::size_t, long long>> ranked;
  ranked.reserve(votes.size());
  for (const auto& [distance, count] : votes) {
    ranked.emplace_back(count, distance);
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& one, const auto& other) { return one.first > other.first; });
  std::vector<long long> distances;
  for (std::size_t i = 0; i < ranked.size() && i < mostDistances; ++i) {
    distances.push_back(ranked[i].second);
  }
  return distances;
}

} // namespace

bool isPlainNumber(std::string_view text) {
  const std::size_t digits = !text.empty() && text[0] == '-' ? 1 : 0;
  return text.size() > digits && text.size() < 9 &&
         text.find_first_not_of("0123456789", digits) == std::string_view::npos;
}

bool namesAgree(const ShiftRun& run, const Residue& residue) {
  const char letter = oneLetterCode(residue.name);
  return letter == run.letter && (letter != 'X' || equalWithoutCase(residue.name, run.name));
}

bool fitsWell(const Numbering& numbering) {
  return (numbering.fits > 0 && static_cast<double>(numbering.misfits) <=
                                    largestMisfit * static_cast<double>(numbering.fits)) ||
         (numbering.misfits == 1 && !numbering.moved && numbering.fits >= fitsForOneMisfit);
}

std::map<int, long long> distancesWithJumps(const std::vector<Residue>& residues,
                                            const std::map<int, const ShiftRun*>& listed) {
  const std::vector<long long> distances = likelyDistances(residues, listed);
  const std::size_t width = distances.size();
  std::map<int, long long> chosen;
  if (width == 0) {
    return chosen;
  }
  // The best score of a path that ends with each distance, and which one it came from.
  std::vector<int> scores(width, 0);
  std::vector<std::size_t> from;
  long long before = listed.begin()->first;
  for (const auto& [number, run] : listed) {
    std::vector<int> next(width);
    for (std::size_t to = 0; to < width; ++to) {
      std::size_t best = to;
      for (std::size_t other = 0; other < width; ++other) {
        // Later numbers stand at later positions: a distance grows by less than the numbers do.
        const bool onwards =
            distances[to] - distances[other] < static_cast<long long>(number) - before;
        const bool better = scores[other] - jumpPrice > scores[best] - (best == to ? 0 : jumpPrice);
        best = better && onwards ? other : best;
      }
      const long long position = number - distances[to];
      const bool inside = position >= 1 && position <= static_cast<long long>(residues.size());
      const bool fits =
          inside && namesAgree(*run, residues[static_cast<std::size_t>(position) - 1]);
      next[to] = scores[best] - (best == to ? 0 : jumpPrice) + (fits ? 1 : -1);
      from.push_back(best);
    }
    scores = next;
    before = number;
  }
  std::size_t at =
      static_cast<std::size_t>(std::max_element(scores.begin(), scores.end()) - scores.begin());
  std::size_t row = listed.size();
  for (auto residue = listed.rbegin(); residue != listed.rend(); ++residue) {
    chosen[residue->first] = distances[at];
    at = from[--row * width + at];
  }
  return chosen;
}

void fillAuthors(const std::vector<Residue>& residues, std::vector<std::string>& authors) {
  const auto known = [&authors](std::size_t i) { return isPlainNumber(authors[i]); };
  std::size_t first = 0;
  while (first < authors.size() && !known(first)) {
    ++first;
  }
  if (first == authors.size()) {
    for (std::size_t i = 0; i < authors.size(); ++i) {
      authors[i] = authors[i].empty() ? residues[i].index : authors[i];
    }
    return;
  }
  for (std::size_t i = 0, near = first; i < authors.size(); ++i) {
    near = known(i) ? i : near;
    if (authors[i].empty()) {
      authors[i] =
          std::to_string(parseInt(authors[near]) + static_cast<int>(i) - static_cast<int>(near));
    }
  }
}

Numbering alignNumbers(const std::vector<Residue>& residues,
                       const std::vector<const ShiftRun*>& runs) {
  Numbering best =
      tryTexts(residues, runs, &ShiftRun::index, positionsBy(residues, &Residue::index));
  best.way = "residue numbers count along the sequence";
  const auto quality = [](const Numbering& way) {
    return static_cast<long long>(way.fits) - static_cast<long long>(way.misfits);
  };
  const auto consider = [&](Numbering way, const std::string& name, bool moved) {
    if (quality(way) > quality(best)) {
      best = std::move(way);
      best.way = name;
      best.moved = moved;
      best.authors = true;
    }
  };
  if (best.misfits == 0 && best.fits > 0) {
    return best; // no other way is better
  }
  const Positions authors = positionsBy(residues, &Residue::author);
  const char authorsWay[] = "residue numbers of the shifts are the authors'";
  consider(tryTexts(residues, runs, &ShiftRun::index, authors), authorsWay, false);
  Numbering byAuthor = tryTexts(residues, runs, &ShiftRun::author, authors);
  const bool authorIsBest = quality(byAuthor) > quality(best);
  consider(std::move(byAuthor), authorsWay, false);
  best.authors = best.authors && !authorIsBest;
  const std::map<int, const ShiftRun*> listed = listedResidues(runs);
  std::map<int, long long> distances = distancesWithJumps(residues, listed);
  const std::vector<long long> likely = likelyDistances(residues, listed);
  const long long distance = likely.empty() ? 0 : likely.front();
  std::map<int, long long> constant;
  for (const auto& [number, run] : listed) {
    constant[number] = distance;
  }
  consider(tryCounts(residues, runs, constant),
           "residue numbers of the shifts are the sequence's plus " + std::to_string(distance),
           true);
  consider(tryCounts(residues, runs, distances),
           "residue numbers of the shifts jump, aligned with the sequence by residue names", true);
  return best;
}
