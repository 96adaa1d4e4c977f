#include "tools/derive/referencing_fit.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "tools/derive/limits.h"

namespace derive {
namespace {

using referencing::Model;
using referencing::Nucleus;
using referencing::NucleusModel;

constexpr int rounds = 15;
constexpr double biweightReach = 4.685;
/// Median absolute deviations in a standard deviation of Gaussian values.
constexpr double deviationsPerMedian = 1.4826;
constexpr double oneError = 0.6827; ///< share of Gaussian values within one deviation

struct Point {
  double x, y; ///< CA minus CB, and the nucleus, ppm
};
/// The points of one protein, and its offset from the lines.
struct ProteinPoints {
  std::vector<Point> points;
  double offset = 0;
};

/// Weighted sums of one straight line.
struct LineSums {
  double w = 0, x = 0, y = 0, xx = 0, xy = 0;

  void add(double weight, const Point& point, double offset) {
    const double value = point.y - offset;
    w += weight;
    x += weight * point.x;
    y += weight * value;
    xx += weight * point.x * point.x;
    xy += weight * point.x * value;
  }

  referencing::Line line() const {
    const double determinant = w * xx - x * x;
    if (!(determinant > 0)) {
      return {w > 0 ? y / w : 0, 0};
    }
    const double slope = (w * xy - x * y) / determinant;
    return {(y - slope * x) / w, slope};
  }
};

double shiftOf(const referencing::ResidueShifts& shifts, Nucleus nucleus) {
  return nucleus == Nucleus::carbon        ? shifts.ca
         : nucleus == Nucleus::alphaProton ? shifts.ha
                                           : shifts.c;
}

std::vector<ProteinPoints> pointsOf(const std::vector<ReferencedProtein>& proteins,
                                    Nucleus nucleus) {
  std::vector<ProteinPoints> all;
  for (const ReferencedProtein& protein : proteins) {
    ProteinPoints each;
    for (const referencing::ResidueShifts& shifts : protein) {
      const Point point = {shifts.ca - shifts.cb, shiftOf(shifts, nucleus)};
      if (!std::isnan(point.x) && !std::isnan(point.y)) {
        each.points.push_back(point);
      }
    }
    if (each.points.size() >= static_cast<std::size_t>(referencing::fewestPoints)) {
      all.push_back(std::move(each));
    }
  }
  return all;
}

class LineFit {
 public:
  explicit LineFit(std::vector<ProteinPoints> proteins) : proteins_(std::move(proteins)) {}

  NucleusModel run() {
    fitLines(false);
    for (int round = 0; round < rounds; ++round) {
      fitWidth();
      fitOffsets();
      fitLines(true);
    }
    fitOffsets();
    return model_;
  }

  /// Numbers of points and offsets of the proteins.
  std::vector<std::pair<double, double>> offsets() const {
    std::vector<std::pair<double, double>> all;
    for (const ProteinPoints& protein : proteins_) {
      all.emplace_back(static_cast<double>(protein.points.size()), protein.offset);
    }
    return all;
  }

 private:
  double miss(const Point& point) const { return point.y - model_.expected(point.x); }

  void fitLines(bool weighted) {
    LineSums negative;
    LineSums positive;
    for (const ProteinPoints& protein : proteins_) {
      for (const Point& point : protein.points) {
        const double distance = (miss(point) - protein.offset) / (biweightReach * model_.width);
        const double inside = weighted ? std::max(0.0, 1 - distance * distance) : 1;
        (point.x < 0 ? negative : positive).add(inside * inside, point, protein.offset);
      }
    }
    model_.negative = negative.line();
    model_.positive = positive.line();
  }

  void fitWidth() {
    std::vector<double> sizes;
    for (const ProteinPoints& protein : proteins_) {
      for (const Point& point : protein.points) {
        sizes.push_back(std::fabs(miss(point) - protein.offset));
      }
    }
    model_.width = std::max(1e-3, deviationsPerMedian * percentile(sizes, 0.5));
  }

  /// Offsets about their median, which the lines take up.
  void fitOffsets() {
    std::vector<double> offsets;
    for (ProteinPoints& protein : proteins_) {
      std::vector<double> misses;
      for (const Point& point : protein.points) {
        misses.push_back(miss(point));
      }
      protein.offset = referencing::robustMiddle(std::move(misses), model_.width);
      offsets.push_back(protein.offset);
    }
    const double middle = percentile(offsets, 0.5);
    model_.negative.intercept += middle;
    model_.positive.intercept += middle;
    for (ProteinPoints& protein : proteins_) {
      protein.offset -= middle;
    }
  }

  std::vector<ProteinPoints> proteins_;
  NucleusModel model_;
};

/// The quantile regression's cost of an error sqrt(protein + shift / points).
double errorCost(const std::vector<std::pair<double, double>>& offsets, double protein,
                 double shift) {
  double cost = 0;
  for (const auto& [points, offset] : offsets) {
    const double beyond = std::fabs(offset) - std::sqrt(protein + shift / points);
    cost += beyond > 0 ? oneError * beyond : (oneError - 1) * beyond;
  }
  return cost;
}

/// The least cost on a grid that closes in about the best point; both variances are at least 0.
void fitErrors(const std::vector<std::pair<double, double>>& offsets, NucleusModel& model) {
  constexpr int half = 10;
  double deviation = 0; // of the proteins, ppm
  double shiftDeviation = 0;
  double reach = 20 * model.width;
  double best = errorCost(offsets, 0, 0);
  for (; reach > 1e-3 * model.width; reach /= 3) {
    const double centre = deviation;
    const double shiftCentre = shiftDeviation;
    for (int i = -half; i <= half; ++i) {
      for (int j = -half; j <= half; ++j) {
        const double protein = std::fabs(centre + reach * i / half / 10);
        const double shift = std::fabs(shiftCentre + reach * j / half);
        const double cost = errorCost(offsets, protein * protein, shift * shift);
        if (cost < best) {
          best = cost;
          deviation = protein;
          shiftDeviation = shift;
        }
      }
    }
  }
  model.proteinVariance = deviation * deviation;
  model.shiftVariance = shiftDeviation * shiftDeviation;
}

} // namespace

referencing::Model fitReferencing(const std::vector<ReferencedProtein>& proteins) {
  Model model;
  for (const Nucleus nucleus : {Nucleus::carbon, Nucleus::alphaProton, Nucleus::carbonyl}) {
    std::vector<ProteinPoints> points = pointsOf(proteins, nucleus);
    if (!points.empty()) {
      LineFit fit(std::move(points));
      model[nucleus] = fit.run();
      fitErrors(fit.offsets(), model[nucleus]);
    }
  }
  return model;
}

std::string referencingTable(const referencing::Model& model, const Origin& origin) {
  std::string text =
      "REMARK Secondary shifts of well-referenced proteins against CA minus CB, and how far "
      "single\n"
      "REMARK proteins miss them: two straight lines, below 0 and from 0 on (ppm, ppm per ppm), "
      "the\n"
      "REMARK width of single shifts about them (ppm), and the variances (ppm^2) of an estimated\n"
      "REMARK offset: VAR_PROTEIN + VAR_SHIFT / number of shifts. A correction is worth it from "
      "so\n"
      "REMARK many ERRORS on, by cross-validation. CA serves CB and all aliphatic carbons.\n"
      "REMARK Shifts: RefDB: Zhang, Neal & Wishart 2003, J Biomol NMR 25:173-195\n"
      "REMARK Selection: " +
      origin.selection + "\nREMARK Made by " + origin.version + ": " + origin.command +
      "\n\nVARS   NUCLEUS NEG_AT_0 NEG_SLOPE POS_AT_0 POS_SLOPE WIDTH VAR_PROTEIN VAR_SHIFT "
      "ERRORS\n"
      "FORMAT %-4s %9.4f %9.4f %9.4f %9.4f %9.4f %9.5f %9.4f %6.1f\n\n";
  constexpr std::array<const char*, referencing::nucleusCount> names = {"CA", "HA", "C"};
  for (std::size_t i = 0; i < names.size(); ++i) {
    const NucleusModel& row = model.nuclei[i];
    char line[160];
    std::snprintf(line, sizeof line, "%-4s %9.4f %9.4f %9.4f %9.4f %9.4f %9.5f %9.4f %6.1f\n",
                  names[i], row.negative.intercept, row.negative.slope, row.positive.intercept,
                  row.positive.slope, row.width, row.proteinVariance, row.shiftVariance,
                  model.fewestErrors);
    text += line;
  }
  return text;
}

} // namespace derive
