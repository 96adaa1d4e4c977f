#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "tools/derive/published.h"

/// The tables of the program in memory, and their text.
namespace derive {

struct Limit {
  double lowest, highest; ///< ppm
};
/// By letter; the last row serves the codes that stand for no single residue type.
using Limits = std::array<std::array<Limit, atomCount>, letterCount + 1>;

/// Statistics of one shift index, ppm.
struct ShiftStatistic {
  double cisMean, transMean, cisWidth, transWidth;
};
/// Shifts of a triplet, then the proline's CG.
constexpr std::size_t tripletShifts = 18;
constexpr std::size_t prolineCb = atomCount + CB;
constexpr std::size_t cgIndex = 18;
constexpr std::size_t statisticCount = 19;
using ShiftStatistics = std::array<ShiftStatistic, statisticCount>;

/// Whether a statistic ever meets a shift: a proline's own N and HN do not.
constexpr bool meetsShift(std::size_t index) {
  return index != atomCount + N && index != atomCount + HN;
}

/// All that one derivation makes.
struct TableSet {
  Published published;
  ResidueValues adjustments{};
  Limits limits{};
  ShiftStatistics statistics{};
  ShiftStatistics plainStatistics{}; ///< robust means and deviations beside the fitted ones
  double cisFactor = 1;              ///< common factor of the neighbour statistics of cis prolines
};

/// REMARK lines by file name, put before those that every table of that name has.
struct Origin {
  std::string selection; ///< which training data, with counts
  std::string command;   ///< what makes the tables again
  std::string version;   ///< program and version
};

/// Text of every table file by its name. Same input, same bytes.
std::map<std::string, std::string> tableTexts(const TableSet& tables, const Origin& origin);

/// Frequencies of one residue type before and after cis and trans prolines.
struct NeighbourStatistic {
  double cisPrevious, cisNext, transPrevious, transNext;
};

/// Smoothed frequencies of a type (`letterCount`: of none in particular), the cis ones without the
/// common factor.
NeighbourStatistic neighbourStatistic(const Published& published, std::size_t letter);

} // namespace derive
