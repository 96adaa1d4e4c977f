#include "tools/derive/adjustments.h"

#include <cmath>

#include "tools/derive/offset_loss.h"

namespace derive {
namespace {

/// Prior widths of an adjustment about the mean of its atom, ppm.
constexpr std::array<double, adjustedCount> priorWidth = {0.25, 0.25, 0.10, 0.25};
/// Finite-difference steps of the means, ppm.
constexpr std::array<double, adjustedCount> meanStep = {0.03, 0.03, 0.01, 0.03};
/// The means may move this many times as far as a deviation.
constexpr double meanReach = 3;

constexpr int iterations = 160;
constexpr int fineFrom = 100; ///< from here on with smaller steps
constexpr int meansEvery = 4; ///< iterations for one finite difference of the means
constexpr double coarseStep = 0.06;
constexpr double fineStep = 0.015;
constexpr double meanStepShare = 0.4;

bool isFree(std::size_t letter) {
  return letters[letter] != 'P' && letters[letter] != 'C' && letters[letter] != 'c';
}

/// Free parameters in units of their prior widths: a mean per atom, then a deviation per letter.
struct Parameters {
  std::array<double, adjustedCount> mean{};
  Adjustments deviation{};
};

Adjustments adjustmentsOf(const Parameters& parameters) {
  Adjustments adjustments{};
  for (std::size_t atom = 0; atom < adjustedCount; ++atom) {
    for (std::size_t letter = 0; letter < letterCount; ++letter) {
      if (isFree(letter)) {
        adjustments[atom][letter] = priorWidth[atom] * (meanReach * parameters.mean[atom] +
                                                        parameters.deviation[atom][letter]);
      }
    }
  }
  return adjustments;
}

/// One number that Adam moves against its gradient.
struct Momentum {
  double first = 0;
  double second = 0;

  double step(double gradient, int iteration) {
    constexpr double keepFirst = 0.9;
    constexpr double keepSecond = 0.99;
    constexpr double tiny = 1e-8;
    first = keepFirst * first + (1 - keepFirst) * gradient;
    second = keepSecond * second + (1 - keepSecond) * gradient * gradient;
    const double unbiased = first / (1 - std::pow(keepFirst, iteration));
    const double size = std::sqrt(second / (1 - std::pow(keepSecond, iteration)));
    return unbiased / (size + tiny);
  }
};

class Descent {
 public:
  explicit Descent(const std::vector<ReferencePoints>& proteins) : proteins_(proteins) {}

  Parameters run() {
    for (int iteration = 1; iteration <= iterations; ++iteration) {
      Adjustments gradient{};
      const double loss = lossAt(parameters_, &gradient);
      if (loss < bestLoss_) {
        bestLoss_ = loss;
        best_ = parameters_;
      }
      if (iteration % meansEvery == 1) {
        differentiateMeans();
      }
      take(gradient, iteration);
    }
    return best_;
  }

 private:
  double lossAt(const Parameters& parameters, Adjustments* gradient) const {
    double loss = adjustmentLoss(proteins_, adjustmentsOf(parameters), gradient);
    for (const auto& atom : parameters.deviation) {
      for (const double deviation : atom) {
        loss += 0.5 * deviation * deviation;
      }
    }
    return loss;
  }

  void differentiateMeans() {
    for (std::size_t atom = 0; atom < adjustedCount; ++atom) {
      const double step = meanStep[atom] / (meanReach * priorWidth[atom]);
      Parameters up = parameters_;
      Parameters down = parameters_;
      up.mean[atom] += step;
      down.mean[atom] -= step;
      meanGradient_[atom] = (lossAt(up, nullptr) - lossAt(down, nullptr)) / (2 * step);
    }
  }

  void take(const Adjustments& gradient, int iteration) {
    const double size = iteration < fineFrom ? coarseStep : fineStep;
    for (std::size_t atom = 0; atom < adjustedCount; ++atom) {
      parameters_.mean[atom] -=
          meanStepShare * size * meanMomentum_[atom].step(meanGradient_[atom], iteration);
      for (std::size_t letter = 0; letter < letterCount; ++letter) {
        double& deviation = parameters_.deviation[atom][letter];
        if (isFree(letter)) {
          const double slope = gradient[atom][letter] * priorWidth[atom] + deviation;
          deviation -= size * momentum_[atom][letter].step(slope, iteration);
        }
      }
    }
  }

  const std::vector<ReferencePoints>& proteins_;
  Parameters parameters_;
  Parameters best_;
  double bestLoss_ = 1e300;
  std::array<double, adjustedCount> meanGradient_{};
  std::array<Momentum, adjustedCount> meanMomentum_;
  std::array<std::array<Momentum, letterCount>, adjustedCount> momentum_;
};

} // namespace

double adjustmentLoss(const std::vector<ReferencePoints>& proteins, const Adjustments& adjustments,
                      Adjustments* gradient) {
  double loss = 0;
  for (const ReferencePoints& points : proteins) {
    loss += offsetLoss(points, adjustments, gradient);
  }
  return loss;
}

Adjustments fitAdjustments(const std::vector<ReferencePoints>& proteins) {
  const Parameters fitted = Descent(proteins).run();
  Adjustments adjustments = adjustmentsOf(fitted);
  for (std::size_t atom = 0; atom < adjustedCount; ++atom) {
    // Cysteines are not seen by the referencing; they take the change of scale that all share.
    const double shared = priorWidth[atom] * meanReach * fitted.mean[atom];
    adjustments[atom][letterIndex('C')] = shared;
    adjustments[atom][letterIndex('c')] = shared;
  }
  return adjustments;
}

} // namespace derive
