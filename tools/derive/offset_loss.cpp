#include "tools/derive/offset_loss.h"

#include <cmath>

namespace derive {
namespace {

constexpr std::size_t fewestPoints = 10; ///< of a set that is fitted
constexpr double significantErrors = 5;  ///< an offset counts beyond so many errors

/// A nucleus whose offset is estimated: the constants of the estimate, and how strictly it counts.
struct Nucleus {
  Adjusted atom;
  double negativeIntercept, positiveIntercept;
  double width;  ///< ppm, of the offsets of well-referenced proteins
  double weight; ///< of the nucleus in the objective
};

constexpr std::array<Nucleus, 3> nuclei = {{{adjCA, 0.094, 0.459, 0.12, 1},
                                            {adjHA, 0.089, -0.008, 0.05, 2},
                                            {adjC, -0.272, 0.226, 0.25, 1}}};

constexpr double robustness = 2;          ///< widths from which on an offset counts as an outlier
constexpr double recordedWeight = 20;     ///< of one recorded offset
constexpr double recordedSoftness = 0.15; ///< of the threshold, in its own units
constexpr double setWeight = 3;           ///< of the two sets' own offsets beside their mean's

/// Cauchy's robust square, and its derivative.
double robustSquare(double value, double& derivative) {
  const double scaled = value / robustness;
  derivative = value / (1 + scaled * scaled);
  return 0.5 * robustness * robustness * std::log1p(scaled * scaled);
}

/// The points of one side of 0 and the line through them. As in the program, the first point
/// enters the means only.
class SetFit {
 public:
  void add(std::size_t point, double x, double y) {
    points_.push_back({point, x, y});
    sumX_ += x;
    sumY_ += y;
    if (points_.size() > 1) {
      sumXX_ += x * x;
      sumXY_ += x * y;
    }
  }

  bool fitted() const { return points_.size() >= fewestPoints; }
  std::size_t size() const { return points_.size(); }
  double intercept() const { return intercept_; }
  double error() const { return error_; }

  void fit() {
    n_ = static_cast<double>(points_.size());
    meanX_ = sumX_ / n_;
    meanY_ = sumY_ / n_;
    spread_ = sumXX_ / (n_ - 1) - meanX_ * meanX_;
    slope_ = (sumXY_ / (n_ - 1) - meanX_ * meanY_) / spread_;
    intercept_ = meanY_ - meanX_ * slope_;
    double squares = 0;
    for (std::size_t i = 1; i < points_.size(); ++i) {
      const double r = residual(points_[i]);
      squares += r * r;
      sumR_ += r;
      sumRX_ += r * points_[i].x;
    }
    error_ = std::sqrt(squares / ((n_ - 2) * n_));
  }

  /// Hands each point the derivatives by its x and y, given those by intercept and squared error.
  template <class Sink>
  void backward(double byIntercept, double bySquaredError, Sink sink) const {
    const double bySquares = bySquaredError / ((n_ - 2) * n_);
    const double intercept = byIntercept - 2 * bySquares * sumR_;
    const double slope = (-2 * bySquares * sumRX_ - intercept * meanX_) / spread_;
    for (std::size_t i = 0; i < points_.size(); ++i) {
      const Point& p = points_[i];
      const double counted = i == 0 ? 0 : 1; // in the sums of products and the residuals
      const double r = 2 * bySquares * counted * residual(p);
      const double product = counted / (n_ - 1);
      const double byY = r + intercept / n_ + slope * (product * p.x - meanX_ / n_);
      const double byX =
          -r * slope_ - intercept * slope_ / n_ +
          slope * (product * p.y - meanY_ / n_ - 2 * slope_ * (product * p.x - meanX_ / n_));
      sink(p.index, byX, byY);
    }
  }

 private:
  struct Point {
    std::size_t index;
    double x, y;
  };

  double residual(const Point& p) const { return p.y - slope_ * p.x - intercept_; }

  std::vector<Point> points_;
  double sumX_ = 0, sumY_ = 0, sumXX_ = 0, sumXY_ = 0, sumR_ = 0, sumRX_ = 0;
  double n_ = 0, meanX_ = 0, meanY_ = 0, spread_ = 1, slope_ = 0, intercept_ = 0, error_ = 0;
};

/// Smooth count of a recorded offset; adds its derivatives by the offset and the squared error.
double recordedLoss(double offset, double error, double& byOffset, double& bySquaredError) {
  const double ratio = std::fabs(offset) / (significantErrors * error);
  const double share = 1 / (1 + std::exp((1 - ratio) / recordedSoftness));
  const double byRatio = recordedWeight * share * (1 - share) / recordedSoftness;
  byOffset += byRatio * std::copysign(1 / (significantErrors * error), offset);
  bySquaredError -= byRatio * ratio / (2 * error * error);
  return recordedWeight * share;
}

struct Shifted {
  std::vector<std::array<double, adjustedCount>> shift;
  std::vector<double> difference; ///< CA minus CB
};

Shifted adjusted(const ReferencePoints& points, const Adjustments& adjustments) {
  Shifted result;
  for (const ReferencePoint& point : points) {
    auto shift = point.shift;
    for (std::size_t atom = 0; atom < adjustedCount; ++atom) {
      shift[atom] -= adjustments[atom][point.letter];
    }
    result.shift.push_back(shift);
    result.difference.push_back(shift[adjCA] - shift[adjCB]);
  }
  return result;
}

/// Both sets of one nucleus, negative first, and what they say together.
struct NucleusFit {
  std::array<SetFit, 2> sets;
  std::array<double, 2> share{}; ///< of the points in fitted sets; 0 for a set not fitted
  std::array<double, 2> offset{};
  double together = 0; ///< offset of both
  double squaredError = 0;
};

NucleusFit fitNucleus(const Shifted& shifted, const Nucleus& nucleus) {
  NucleusFit fit;
  for (std::size_t i = 0; i < shifted.shift.size(); ++i) {
    const double y = shifted.shift[i][nucleus.atom];
    if (!std::isnan(y)) {
      fit.sets[shifted.difference[i] < 0 ? 0 : 1].add(i, shifted.difference[i], y);
    }
  }
  double count = 0;
  for (SetFit& set : fit.sets) {
    if (set.fitted()) {
      set.fit();
      count += static_cast<double>(set.size());
    }
  }
  if (count == 0 || fit.sets[0].size() + fit.sets[1].size() <= fewestPoints) {
    return fit;
  }
  const std::array<double, 2> constants = {nucleus.negativeIntercept, nucleus.positiveIntercept};
  for (std::size_t s = 0; s < 2; ++s) {
    if (fit.sets[s].fitted()) {
      const double share = static_cast<double>(fit.sets[s].size()) / count;
      fit.share[s] = share;
      fit.offset[s] = fit.sets[s].intercept() - constants[s];
      fit.together += fit.offset[s] * share;
      fit.squaredError += fit.sets[s].error() * share * fit.sets[s].error() * share;
    }
  }
  return fit;
}

double nucleusLoss(const ReferencePoints& points, const Shifted& shifted, const Nucleus& nucleus,
                   Adjustments* gradient) {
  const NucleusFit fit = fitNucleus(shifted, nucleus);
  if (!(fit.squaredError > 0)) {
    return 0;
  }
  double slope = 0;
  double loss = robustSquare(fit.together / nucleus.width, slope);
  double byOffset = slope / nucleus.width;
  double bySquaredError = 0;
  loss += recordedLoss(fit.together, std::sqrt(fit.squaredError), byOffset, bySquaredError);
  for (std::size_t s = 0; s < 2; ++s) {
    const double share = fit.share[s];
    if (!(share > 0)) {
      continue;
    }
    loss += setWeight * share * robustSquare(fit.offset[s] / nucleus.width, slope);
    if (gradient == nullptr) {
      continue;
    }
    const double byIntercept =
        nucleus.weight * share * (byOffset + setWeight * slope / nucleus.width);
    const double bySetError = nucleus.weight * bySquaredError * share * share;
    fit.sets[s].backward(byIntercept, bySetError, [&](std::size_t i, double byX, double byY) {
      const std::uint8_t letter = points[i].letter;
      (*gradient)[nucleus.atom][letter] -= byY;
      (*gradient)[adjCA][letter] -= byX;
      (*gradient)[adjCB][letter] += byX;
    });
  }
  return nucleus.weight * loss;
}

} // namespace

double offsetLoss(const ReferencePoints& points, const Adjustments& adjustments,
                  Adjustments* gradient) {
  const Shifted shifted = adjusted(points, adjustments);
  double loss = 0;
  for (const Nucleus& nucleus : nuclei) {
    loss += nucleusLoss(points, shifted, nucleus, gradient);
  }
  return loss;
}

} // namespace derive
