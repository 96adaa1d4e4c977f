#include "tools/derive/statistics_fit.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <nlopt.h>

namespace derive {
namespace {

constexpr double logTransPerCis = 2.9444389791664403; // log 19
/// Strength of the penalty on moves, in nats for a move of one unit.
constexpr double penalty = 2;
constexpr double factorPenalty = 0.01;
/// One unit of a width: exp(0.5) times the plain one. Two units are the most.
constexpr double widthUnit = 0.5;
constexpr double mostUnits = 2;
constexpr double mostMeanUnits = 6;
constexpr double mostLogFactor = 10;
constexpr double relativeTolerance = 1e-10;
constexpr int mostEvaluations = 2000;
/// Share of the likelihood without CG, for prolines that have one.
constexpr double hiddenShare = 0.3;
constexpr double madToDeviation = 1.4826;
constexpr std::size_t fewestSamples = 5;
constexpr ShiftStatistic neutral = {0, 0, 99, 99};

constexpr std::size_t perIndex = 4;
constexpr std::size_t factorPlace = statisticCount * perIndex;
constexpr std::size_t parameterCount = factorPlace + 1;

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// Whether the penalty on the distance of the forms applies: CB and CG of the proline are what
/// tells them apart.
bool isDrawnTogether(std::size_t index) {
  return meetsShift(index) && index != prolineCb && index != cgIndex;
}

bool isFree(std::size_t parameter) {
  return parameter == factorPlace || meetsShift(parameter / perIndex);
}

ShiftStatistics decode(const ShiftStatistics& plain, const std::vector<double>& parameters) {
  ShiftStatistics statistics = plain;
  for (std::size_t i = 0; i < statisticCount; ++i) {
    if (!meetsShift(i)) {
      continue;
    }
    const double* p = &parameters[i * perIndex];
    const ShiftStatistic& from = plain[i];
    // The CG shift is not clipped: with one width for both classes a wild value counts for the
    // form on whose side it lies, and not for the wider one.
    const double transUnits = i == cgIndex ? p[2] : p[3];
    statistics[i] = {from.cisMean + from.cisWidth * p[0], from.transMean + from.transWidth * p[1],
                     from.cisWidth * std::exp(widthUnit * p[2]),
                     from.transWidth * std::exp(widthUnit * transUnits)};
  }
  return statistics;
}

/// Adds the derivatives of one sample's log odds, times `byOdds`, to the gradient.
void backward(const TrainingSample& sample, const ShiftStatistics& plain,
              const ShiftStatistics& now, double byOdds, double byOddsWithCg,
              std::vector<double>& gradient) {
  gradient[factorPlace] += byOdds + byOddsWithCg;
  for (std::size_t i = 0; i < statisticCount; ++i) {
    const double x = static_cast<double>(sample.shifts[i]);
    if (std::isnan(x) || !meetsShift(i)) {
      continue;
    }
    const double by = i == cgIndex ? byOddsWithCg : byOdds + byOddsWithCg;
    const double zc = (x - now[i].cisMean) / now[i].cisWidth;
    const double zt = (x - now[i].transMean) / now[i].transWidth;
    double* g = &gradient[i * perIndex];
    g[0] += by * zc / now[i].cisWidth * plain[i].cisWidth;
    g[1] -= by * zt / now[i].transWidth * plain[i].transWidth;
    g[2] += by * zc * zc * widthUnit;
    (i == cgIndex ? g[2] : g[3]) -= by * zt * zt * widthUnit;
  }
}

/// Weighted negative log likelihood at some log odds, and its derivative by them.
double labelLoss(const TrainingSample& sample, double logOdds, double& byOdds) {
  const double p = 1 / (1 + std::exp(-std::clamp(logOdds, -500.0, 500.0)));
  const double e = sample.mislabelled;
  const double cis = std::clamp((1 - 2 * e) * p + e, 1e-12, 1 - 1e-12);
  const double slope = (1 - 2 * e) * p * (1 - p);
  byOdds = sample.weight * (sample.cis ? -slope / cis : slope / (1 - cis));
  return -sample.weight * std::log(sample.cis ? cis : 1 - cis);
}

/// Log odds of one sample without CG, and what CG adds.
struct SampleOdds {
  double withoutCg, ofCg;
  bool hasCg;
};

SampleOdds oddsOf(const TrainingSample& sample, const ShiftStatistics& now, double logFactor) {
  SampleOdds odds = {sample.neighbourLogOdds + logFactor - logTransPerCis, 0, false};
  for (std::size_t i = 0; i < statisticCount; ++i) {
    const double x = static_cast<double>(sample.shifts[i]);
    if (std::isnan(x) || !meetsShift(i)) {
      continue;
    }
    const double zc = (x - now[i].cisMean) / now[i].cisWidth;
    const double zt = (x - now[i].transMean) / now[i].transWidth;
    (i == cgIndex ? odds.ofCg : odds.withoutCg) += 0.5 * (zt * zt - zc * zc);
    odds.hasCg = odds.hasCg || i == cgIndex;
  }
  return odds;
}

/// Loss of one sample, and its derivatives by the log odds without and with CG.
double sampleLoss(const TrainingSample& sample, const SampleOdds& odds, double& byHidden,
                  double& byGiven) {
  const double share = odds.hasCg ? hiddenShare : 1;
  const double hidden = labelLoss(sample, odds.withoutCg, byHidden);
  const double given = labelLoss(sample, odds.withoutCg + odds.ofCg, byGiven);
  byHidden *= share;
  byGiven *= 1 - share;
  return share * hidden + (1 - share) * given;
}

/// The penalty that holds every parameter near 0, and its gradient.
double penaltyOfMoves(const std::vector<double>& parameters, std::vector<double>& gradient) {
  double loss = 0;
  for (std::size_t i = 0; i < parameterCount; ++i) {
    const double strength = i == factorPlace ? factorPenalty : penalty;
    loss += 0.5 * strength * parameters[i] * parameters[i];
    gradient[i] = isFree(i) ? gradient[i] + strength * parameters[i] : 0;
  }
  return loss;
}

/// The penalty that draws the two forms together, and its gradient.
double penaltyOfDistance(const ShiftStatistics& plain, const std::vector<double>& parameters,
                         double strength, std::vector<double>& gradient) {
  double loss = 0;
  for (std::size_t i = 0; i < statisticCount; ++i) {
    if (!isDrawnTogether(i)) {
      continue;
    }
    const ShiftStatistic& from = plain[i];
    const double* p = &parameters[i * perIndex];
    double* g = &gradient[i * perIndex];
    const double unit =
        std::sqrt((from.cisWidth * from.cisWidth + from.transWidth * from.transWidth) / 2);
    const double means =
        (from.cisMean + from.cisWidth * p[0] - from.transMean - from.transWidth * p[1]) / unit;
    const double widths = std::log(from.cisWidth / from.transWidth) / widthUnit + p[2] - p[3];
    loss += 0.5 * strength * (means * means + widths * widths);
    g[0] += strength * means * from.cisWidth / unit;
    g[1] -= strength * means * from.transWidth / unit;
    g[2] += strength * widths;
    g[3] -= strength * widths;
  }
  return loss;
}

struct Problem {
  const std::vector<TrainingSample>& samples;
  const ShiftStatistics& plain;
  double drawing;
  std::vector<double> slope;
  int evaluations;
};

double evaluate(unsigned count, const double* parameters, double* gradient, void* data) {
  Problem& problem = *static_cast<Problem*>(data);
  ++problem.evaluations;
  const double loss =
      statisticsLoss(problem.samples, problem.plain, {parameters, parameters + count},
                     problem.drawing, problem.slope);
  if (gradient != nullptr) {
    std::copy(problem.slope.begin(), problem.slope.end(), gradient);
  }
  return loss;
}

std::vector<double> largestParameters() {
  std::vector<double> most(parameterCount, mostUnits);
  for (std::size_t i = 0; i < factorPlace; i += perIndex) {
    most[i] = most[i + 1] = mostMeanUnits;
  }
  most[factorPlace] = mostLogFactor;
  return most;
}

} // namespace

ShiftStatistics robustStatistics(const std::vector<TrainingSample>& samples) {
  ShiftStatistics statistics{};
  for (std::size_t i = 0; i < statisticCount; ++i) {
    std::array<std::vector<double>, 2> values;
    for (const TrainingSample& sample : samples) {
      if (!std::isnan(sample.shifts[i])) {
        values[sample.cis ? 0 : 1].push_back(static_cast<double>(sample.shifts[i]));
      }
    }
    if (!meetsShift(i) || values[0].size() < fewestSamples || values[1].size() < fewestSamples) {
      statistics[i] = neutral;
      continue;
    }
    std::array<double, 2> mean{};
    std::array<double, 2> width{};
    for (std::size_t k = 0; k < 2; ++k) {
      mean[k] = median(values[k]);
      for (double& value : values[k]) {
        value = std::fabs(value - mean[k]);
      }
      width[k] = std::max(madToDeviation * median(values[k]), 1e-3);
    }
    if (i == cgIndex) {
      width[0] = width[1] = std::sqrt((width[0] * width[0] + width[1] * width[1]) / 2);
    }
    statistics[i] = {mean[0], mean[1], width[0], width[1]};
  }
  return statistics;
}

double statisticsLoss(const std::vector<TrainingSample>& samples, const ShiftStatistics& plain,
                      const std::vector<double>& parameters, double drawing,
                      std::vector<double>& gradient) {
  gradient.assign(parameterCount, 0);
  const ShiftStatistics now = decode(plain, parameters);
  double loss = 0;
  for (const TrainingSample& sample : samples) {
    double byHidden = 0;
    double byGiven = 0;
    loss += sampleLoss(sample, oddsOf(sample, now, parameters[factorPlace]), byHidden, byGiven);
    backward(sample, plain, now, byHidden, byGiven, gradient);
  }
  loss += penaltyOfMoves(parameters, gradient);
  return loss + penaltyOfDistance(plain, parameters, drawing, gradient);
}

double heldOutLoss(const std::vector<TrainingSample>& samples, const FittedStatistics& fitted) {
  double loss = 0;
  for (const TrainingSample& sample : samples) {
    double byHidden = 0;
    double byGiven = 0;
    const SampleOdds odds = oddsOf(sample, fitted.statistics, std::log(fitted.cisFactor));
    loss += sampleLoss(sample, odds, byHidden, byGiven);
  }
  return loss;
}

FittedStatistics fitStatistics(const std::vector<TrainingSample>& samples,
                               const ShiftStatistics& plain, double drawing) {
  Problem problem = {samples, plain, drawing, {}, 0};
  const std::unique_ptr<nlopt_opt_s, void (*)(nlopt_opt)> optimiser(
      nlopt_create(NLOPT_LD_LBFGS, static_cast<unsigned>(parameterCount)), nlopt_destroy);
  const std::vector<double> most = largestParameters();
  std::vector<double> least = most;
  std::transform(most.begin(), most.end(), least.begin(), [](double value) { return -value; });
  nlopt_set_lower_bounds(optimiser.get(), least.data());
  nlopt_set_upper_bounds(optimiser.get(), most.data());
  nlopt_set_min_objective(optimiser.get(), evaluate, &problem);
  nlopt_set_ftol_rel(optimiser.get(), relativeTolerance);
  nlopt_set_maxeval(optimiser.get(), mostEvaluations);
  std::vector<double> parameters(parameterCount, 0);
  double loss = 0;
  // A negative result says that the line search has come to the last digit: the parameters are
  // then the best found.
  nlopt_optimize(optimiser.get(), parameters.data(), &loss);
  loss = statisticsLoss(samples, plain, parameters, drawing, problem.slope);
  return {decode(plain, parameters), std::exp(parameters[factorPlace]), loss, problem.evaluations};
}

} // namespace derive
