#include "tools/import/chain_alignment.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>

#include "table/number.h"
#include "tools/import/deposition.h"

namespace {

constexpr int matchScore = 3;
constexpr int mismatchScore = -2;
constexpr int gapScore = -2;
/// For a position that the structure's number speaks for: less than any letter counts.
constexpr int numberScore = 1;
constexpr long long noDistance = std::numeric_limits<long long>::max();

char capital(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

/// What an alignment knows of a chain.
struct ChainView {
  explicit ChainView(const ModelChain& chain) : letters(lettersOf(chain)) {
    for (std::size_t i = 0; i < chain.residues.size(); ++i) {
      numbers.push_back(parseInt(chain.residues[i].number));
      broken.push_back(i + 1 < chain.residues.size() &&
                       isBroken(chain.residues[i], chain.residues[i + 1]));
    }
  }

  static bool isBroken(const ModelResidue& before, const ModelResidue& next) {
    const Bond bond = bondBetween(before, next);
    const long long step = static_cast<long long>(parseInt(next.number)) - parseInt(before.number);
    return bond == Bond::no || (bond == Bond::unknown && step > 1);
  }

  std::string letters;
  std::vector<long long> numbers;
  std::vector<bool> broken; ///< after each residue
};

/// By how much positions exceed the structure's numbers where letters agree most often; none when
/// that explains fewer than half of the residues.
long long commonDistance(const std::string& letters, const ChainView& chain) {
  std::map<char, std::vector<long long>> places;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    places[capital(letters[i])].push_back(static_cast<long long>(i) + 1);
  }
  std::vector<long long> distances;
  for (std::size_t j = 0; j < chain.letters.size(); ++j) {
    for (const long long place : places[chain.letters[j]]) {
      distances.push_back(place - chain.numbers[j]);
    }
  }
  std::sort(distances.begin(), distances.end());
  long long best = noDistance;
  std::size_t most = 0;
  for (std::size_t first = 0, next = 0; first < distances.size(); first = next) {
    while (next < distances.size() && distances[next] == distances[first]) {
      ++next;
    }
    if (next - first > most) {
      most = next - first;
      best = distances[first];
    }
  }
  return most * 2 < chain.letters.size() ? noDistance : best;
}

enum Step : std::uint8_t { both, skipLetter, skipChain };

std::vector<int> positionsFrom(const std::vector<Step>& steps, std::size_t letters,
                               std::size_t residues) {
  std::vector<int> positions(residues, 0);
  for (std::size_t i = letters, j = residues; i > 0 && j > 0;) {
    const Step step = steps[i * (residues + 1) + j];
    if (step == both) {
      positions[j - 1] = static_cast<int>(i);
    }
    i -= step != skipChain ? 1U : 0U;
    j -= step != skipLetter ? 1U : 0U;
  }
  return positions;
}

} // namespace

std::string lettersOf(const ModelChain& chain) {
  std::string letters;
  for (const ModelResidue& residue : chain.residues) {
    letters += oneLetterCode(residue.name);
  }
  return letters;
}

std::vector<int> alignChain(const std::string& letters, const ModelChain& chain) {
  const ChainView view(chain);
  const std::size_t residues = view.letters.size();
  const std::size_t width = residues + 1;
  const long long distance = commonDistance(letters, view);
  std::vector<Step> steps((letters.size() + 1) * width, skipLetter);
  std::vector<int> above(width);
  std::vector<int> row(width);
  // Ends may hang over free of charge: a table often has tags that a structure has not.
  for (std::size_t i = 1; i <= letters.size(); ++i) {
    row[0] = 0;
    for (std::size_t j = 1; j < width; ++j) {
      const bool alike = capital(letters[i - 1]) == view.letters[j - 1];
      const bool counted =
          distance != noDistance && static_cast<long long>(i) - view.numbers[j - 1] == distance;
      const int same =
          above[j - 1] + (alike ? matchScore : mismatchScore) + (counted ? numberScore : 0);
      const int down = above[j] + (j == residues || view.broken[j - 1] ? 0 : gapScore);
      const int right = row[j - 1] + (i == letters.size() ? 0 : gapScore);
      row[j] = std::max({same, down, right});
      steps[i * width + j] = row[j] == same ? both : row[j] == down ? skipLetter : skipChain;
    }
    std::swap(above, row);
  }
  return positionsFrom(steps, letters.size(), residues);
}

std::size_t countAgreements(const std::string& letters, const ModelChain& chain,
                            const std::vector<int>& positions) {
  const std::string own = lettersOf(chain);
  std::size_t same = 0;
  for (std::size_t i = 0; i < own.size(); ++i) {
    same +=
        positions[i] > 0 && capital(letters[static_cast<std::size_t>(positions[i]) - 1]) == own[i];
  }
  return same;
}
