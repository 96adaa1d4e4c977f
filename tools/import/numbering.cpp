#include "tools/import/numbering.h"

#include <algorithm>
#include <map>
#include <set>

#include "table/number.h"
#include "tools/common/tool.h"

namespace {

/// Residues with another name for one that agrees, at most.
constexpr double largestMisfit = 0.05;
/// Names compared before numbers are moved, at most: 10,000 residues with as many.
constexpr std::size_t mostComparisons = 100'000'000;
/// Constants tried for numbers that jump.
constexpr std::size_t mostDistances = 24;
/// What a jump costs, in residues that agree: fewer could agree by chance behind it.
constexpr int jumpPrice = 4;

using Positions = std::map<std::string, int>;

/// Position of each residue by one of its two numbers.
Positions positionsBy(const Polymer& polymer, std::string Residue::*number) {
  Positions positions;
  for (std::size_t i = 0; i < polymer.residues.size(); ++i) {
    const std::string& text = polymer.residues[i].*number;
    if (!text.empty()) {
      positions.emplace(text, static_cast<int>(i) + 1);
    }
  }
  return positions;
}

/// Residue numbers as integers moved by a constant.
Positions positionsMovedBy(const Polymer& polymer, long long distance) {
  Positions positions;
  for (std::size_t i = 0; i < polymer.residues.size(); ++i) {
    positions.emplace(std::to_string(static_cast<long long>(i) + 1 + distance),
                      static_cast<int>(i) + 1);
  }
  return positions;
}

Numbering tryNumbers(const Polymer& polymer, const std::vector<Shift>& shifts,
                     std::string Shift::*number, const Positions& positions) {
  Numbering numbering;
  std::set<std::string> seen;
  for (const Shift& shift : shifts) {
    const auto found = positions.find(shift.*number);
    const int position = found == positions.end() ? 0 : found->second;
    numbering.positions.push_back(position);
    if (!seen.insert(shift.*number).second) {
      continue;
    }
    const bool fits =
        position > 0 &&
        polymer.residues[static_cast<std::size_t>(position) - 1].name == shift.residue;
    ++(fits ? numbering.fits : numbering.misfits);
  }
  return numbering;
}

/// Residue names by number.
std::map<int, std::string> listedResidues(const std::vector<Shift>& shifts) {
  std::map<int, std::string> listed;
  for (const Shift& shift : shifts) {
    listed.emplace(parseInt(shift.index), shift.residue);
  }
  return listed;
}

/// The constants by which residues may be moved to agree in name, those with most agreements first.
std::vector<long long> likelyDistances(const Polymer& polymer,
                                       const std::map<int, std::string>& listed) {
  std::map<long long, std::size_t> votes;
  if (polymer.residues.size() * listed.size() > mostComparisons) {
    return {};
  }
  std::multimap<std::string, long long> places;
  for (std::size_t i = 0; i < polymer.residues.size(); ++i) {
    places.emplace(polymer.residues[i].name, static_cast<long long>(i) + 1);
  }
  for (const auto& [number, name] : listed) {
    const auto [first, last] = places.equal_range(name);
    for (auto place = first; place != last; ++place) {
      ++votes[number - place->second];
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

/// Positions of the listed numbers, each moved by its own distance.
Positions positionsOf(const Polymer& polymer, const std::map<int, long long>& distances) {
  Positions positions;
  for (const auto& [number, distance] : distances) {
    const long long position = number - distance;
    if (position >= 1 && position <= static_cast<long long>(polymer.residues.size())) {
      positions.emplace(std::to_string(number), static_cast<int>(position));
    }
  }
  return positions;
}

bool fitsWell(const Numbering& numbering) {
  return numbering.fits > 0 && static_cast<double>(numbering.misfits) <=
                                   largestMisfit * static_cast<double>(numbering.fits);
}

/// A decimal number and nothing else.
bool isPlainNumber(const std::string& text) {
  const std::size_t digits = !text.empty() && text[0] == '-' ? 1 : 0;
  return text.size() > digits && text.size() < 9 &&
         text.find_first_not_of("0123456789", digits) == std::string::npos;
}

} // namespace

std::map<int, long long> distancesWithJumps(const Polymer& polymer,
                                            const std::map<int, std::string>& listed) {
  const std::vector<long long> distances = likelyDistances(polymer, listed);
  const std::size_t width = distances.size();
  std::map<int, long long> chosen;
  if (width == 0) {
    return chosen;
  }
  // The best score of a path that ends with each distance, and which one it came from.
  std::vector<int> scores(width, 0);
  std::vector<std::size_t> from;
  long long before = listed.begin()->first;
  for (const auto& [number, name] : listed) {
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
      const bool inside =
          position >= 1 && position <= static_cast<long long>(polymer.residues.size());
      const bool fits =
          inside && polymer.residues[static_cast<std::size_t>(position) - 1].name == name;
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

void fillAuthors(const Polymer& polymer, std::vector<std::string>& authors) {
  const auto known = [&authors](std::size_t i) { return isPlainNumber(authors[i]); };
  std::size_t first = 0;
  while (first < authors.size() && !known(first)) {
    ++first;
  }
  if (first == authors.size()) {
    for (std::size_t i = 0; i < authors.size(); ++i) {
      authors[i] = authors[i].empty() ? polymer.residues[i].index : authors[i];
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

Numbering alignNumbers(const Polymer& polymer, const std::vector<Shift>& shifts,
                       const std::string& place) {
  const Positions own = positionsBy(polymer, &Residue::index);
  const Positions authors = positionsBy(polymer, &Residue::author);
  const std::map<int, std::string> listed = listedResidues(shifts);
  const std::vector<long long> distances = likelyDistances(polymer, listed);
  const long long distance = distances.empty() ? 0 : distances.front();
  Numbering ways[] = {
      tryNumbers(polymer, shifts, &Shift::index, own),
      tryNumbers(polymer, shifts, &Shift::index, authors),
      tryNumbers(polymer, shifts, &Shift::author, authors),
      tryNumbers(polymer, shifts, &Shift::index, positionsMovedBy(polymer, distance)),
      tryNumbers(polymer, shifts, &Shift::index,
                 positionsOf(polymer, distancesWithJumps(polymer, listed))),
  };
  ways[0].way = "residue numbers count along the sequence";
  ways[1].way = "residue numbers of the shifts are the authors'";
  ways[2].way = ways[1].way;
  ways[3].way = "residue numbers of the shifts are the sequence's plus " + std::to_string(distance);
  ways[4].way = "residue numbers of the shifts jump, aligned with the sequence by residue names";
  ways[1].authors = ways[3].authors = ways[4].authors = true;
  const auto quality = [](const Numbering& way) {
    return static_cast<long long>(way.fits) - static_cast<long long>(way.misfits);
  };
  const Numbering* best = &ways[0];
  for (const Numbering& way : ways) {
    if (quality(way) > quality(*best)) {
      best = &way;
    }
  }
  if (!fitsWell(*best)) {
    throw ToolError(ToolStatus::badData, place + "shifts and sequence do not fit: at best " +
                                             std::to_string(best->fits) + " residues agree and " +
                                             std::to_string(best->misfits) + " do not");
  }
  return *best;
}
