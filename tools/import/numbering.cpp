#include "tools/import/numbering.h"

#include <map>
#include <set>

#include "table/number.h"
#include "tools/common/tool.h"

namespace {

/// Residues with another name for one that agrees, at most.
constexpr double largestMisfit = 0.05;

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

/// The constant by which most residues that agree in name are moved.
long long bestDistance(const Polymer& polymer, const std::vector<Shift>& shifts) {
  std::multimap<std::string, long long> places;
  for (std::size_t i = 0; i < polymer.residues.size(); ++i) {
    places.emplace(polymer.residues[i].name, static_cast<long long>(i) + 1);
  }
  std::map<int, std::string> listed;
  for (const Shift& shift : shifts) {
    listed.emplace(parseInt(shift.index), shift.residue);
  }
  std::map<long long, std::size_t> votes;
  for (const auto& [number, name] : listed) {
    const auto [first, last] = places.equal_range(name);
    for (auto place = first; place != last; ++place) {
      ++votes[number - place->second];
    }
  }
  long long best = 0;
  std::size_t most = 0;
  for (const auto& [distance, count] : votes) {
    if (count > most) {
      most = count;
      best = distance;
    }
  }
  return best;
}

bool fitsWell(const Numbering& numbering) {
  return numbering.fits > 0 && static_cast<double>(numbering.misfits) <=
                                   largestMisfit * static_cast<double>(numbering.fits);
}

} // namespace

Numbering alignNumbers(const Polymer& polymer, const std::vector<Shift>& shifts,
                       const std::string& place) {
  const Positions own = positionsBy(polymer, &Residue::index);
  const Positions authors = positionsBy(polymer, &Residue::author);
  const long long distance = bestDistance(polymer, shifts);
  Numbering ways[] = {
      tryNumbers(polymer, shifts, &Shift::index, own),
      tryNumbers(polymer, shifts, &Shift::index, authors),
      tryNumbers(polymer, shifts, &Shift::author, authors),
      tryNumbers(polymer, shifts, &Shift::index, positionsMovedBy(polymer, distance)),
  };
  ways[0].way = "residue numbers count along the sequence";
  ways[1].way = "residue numbers of the shifts are the authors'";
  ways[2].way = ways[1].way;
  ways[3].way = "residue numbers of the shifts are the sequence's plus " + std::to_string(distance);
  ways[1].authors = ways[3].authors = true;
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
