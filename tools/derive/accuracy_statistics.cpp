#include <cmath>

#include "tools/derive/accuracy_sections.h"
#include "tools/derive/markdown.h"

namespace derive {
namespace {

constexpr double largeMeanMove = 0.5;   ///< of the plain width
constexpr double largeWidthMove = 1.25; ///< factor

std::string nameOf(std::size_t index) {
  if (index == cgIndex) {
    return "CG of the proline";
  }
  constexpr const char* places[] = {" before", " of the proline", " after"};
  return std::string(atomNames[index % atomCount]) + places[index / atomCount];
}

double separation(const ShiftStatistic& s) {
  return (s.cisMean - s.transMean) /
         std::sqrt((s.cisWidth * s.cisWidth + s.transWidth * s.transWidth) / 2);
}

double widthRatio(const ShiftStatistic& s) {
  return std::fabs(std::log(s.cisWidth / s.transWidth));
}

bool isLarge(const ShiftStatistic& plain, const ShiftStatistic& fitted) {
  const auto factor = [](double a, double b) { return a > b ? a / b : b / a; };
  return std::fabs(fitted.cisMean - plain.cisMean) > largeMeanMove * plain.cisWidth ||
         std::fabs(fitted.transMean - plain.transMean) > largeMeanMove * plain.transWidth ||
         factor(fitted.cisWidth, plain.cisWidth) > largeWidthMove ||
         factor(fitted.transWidth, plain.transWidth) > largeWidthMove;
}

/// What a move does to the log odds, in words.
std::string reason(const ShiftStatistic& plain, const ShiftStatistic& fitted) {
  if (!isLarge(plain, fitted)) {
    return "";
  }
  std::string text;
  const double share = std::fabs(separation(fitted)) / std::fabs(separation(plain));
  if (share < 0.75 || separation(fitted) * separation(plain) < 0) {
    text = "forms drawn together: it repeats what other shifts of the triplet say";
  } else if (share > 1.33) {
    text = "forms drawn apart: it says what the others do not";
  }
  const bool closer = widthRatio(fitted) < 0.7 * widthRatio(plain);
  const bool swapped =
      std::log(plain.cisWidth / plain.transWidth) * std::log(fitted.cisWidth / fitted.transWidth) <
          0 &&
      widthRatio(fitted) > 0.1;
  const std::string widths =
      swapped  ? "the trans curve made the wider one: values far out on both sides are mostly trans"
      : closer ? "widths made equal: a value far out must not decide by the wider curve"
               : "";
  if (!widths.empty()) {
    text += (text.empty() ? "" : "; ") + widths;
  }
  return text.empty() ? "scale of its log odds only" : text;
}

} // namespace

std::string statisticsSection(const TableSet& tables) {
  std::string text =
      "## Plain and fitted statistics\n\n"
      "Robust means and deviations of the training data beside the fitted ones in "
      "`tab/Pro.cs.tab`,\n"
      "ppm. A product of plain Gaussians counts correlated shifts several times and gives the "
      "wider\n"
      "form every value far out. *separation*: difference of the means in units of the mean "
      "width.\nA move is large beyond half a width or a factor of 1.25. The common factor of the "
      "cis\n"
      "neighbour frequencies, for which the formula has no other place, is " +
      fixed(tables.cisFactor, 2) + ".\n\n";
  std::vector<std::vector<std::string>> rows;
  for (std::size_t i = 0; i < statisticCount; ++i) {
    if (!meetsShift(i)) {
      continue;
    }
    const ShiftStatistic& plain = tables.plainStatistics[i];
    const ShiftStatistic& fitted = tables.statistics[i];
    const auto both = [](double mean, double width) {
      return fixed(mean, 2) + " ± " + fixed(width, 2);
    };
    rows.push_back({std::to_string(i), nameOf(i), both(plain.cisMean, plain.cisWidth),
                    both(plain.transMean, plain.transWidth), both(fitted.cisMean, fitted.cisWidth),
                    both(fitted.transMean, fitted.transWidth), fixed(separation(plain), 2),
                    fixed(separation(fitted), 2), reason(plain, fitted)});
  }
  return text + markdownTable({"index", "shift", "plain cis", "plain trans", "fitted cis",
                               "fitted trans", "plain separation", "fitted", "why it moved"},
                              rows);
}

} // namespace derive
