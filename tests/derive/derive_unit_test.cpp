#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "tools/derive/clustered.h"
#include "tools/derive/core_run.h"
#include "tools/derive/drawing_choice.h"
#include "tools/derive/limits.h"
#include "tools/derive/offset_loss.h"
#include "tools/derive/statistics_fit.h"

namespace derive {
namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

// --- metrics ------------------------------------------------------------------------------------

TEST(Metrics, FollowFromTheCountsOfFiveCalls) {
  // One hit, one missed cis, one false cis, one right trans; not-a-number is a trans call at 0.
  const Metrics m =
      measure({{0.9, true}, {0.2, true}, {0.6, false}, {0.1, false}, {std::nan(""), false}});
  EXPECT_EQ(m.count, 5U);
  EXPECT_EQ(m.falseCis, 1U);
  EXPECT_EQ(m.missedCis, 1U);
  EXPECT_DOUBLE_EQ(m.sensitivity, 0.5);
  EXPECT_DOUBLE_EQ(m.precision, 0.5);
  // hits 1, right 2, wrong 1, missed 1: (1 * 2 - 1 * 1) / sqrt(2 * 2 * 3 * 3)
  EXPECT_NEAR(m.matthews, 1.0 / 6, 1e-12);
  // Of the 2 * 3 pairs only 0.2 against 0.6 is out of order.
  EXPECT_NEAR(m.areaUnderCurve, 5.0 / 6, 1e-12);
  EXPECT_NEAR(m.logLoss,
              -(std::log(0.9) + std::log(0.2) + std::log(0.4) + std::log(0.9) + std::log1p(-1e-6)) /
                  5,
              1e-12);
  // Bins 0 (0), 1 (0.1), 2 (0.2), 6 (0.6), 9 (0.9), one call each.
  EXPECT_NEAR(m.calibrationError, (0 + 0.1 + 0.8 + 0.6 + 0.1) / 5, 1e-12);
}

TEST(Metrics, CountTiesHalf) {
  EXPECT_DOUBLE_EQ(measure({{0.3, true}, {0.3, false}}).areaUnderCurve, 0.5);
}

// --- measures with clusters as units ------------------------------------------------------------

TEST(Clustered, SaidAndFoundAreComparedWithTheLargerError) {
  // Independent: said 0.5 and found 0.5 of four; 4 * 0.25 is the variance of the sum.
  const Agreement apart =
      agreementOf({{{0.5, true}, 1}, {{0.5, false}, 2}, {{0.5, true}, 3}, {{0.5, false}, 4}});
  EXPECT_EQ(apart.count, 4U);
  EXPECT_DOUBLE_EQ(apart.standardError, 1.0 / 4);
  EXPECT_EQ(apart.deviation(), 0);
  // Two clusters of two that go together, both cis: their sums are 1 and 1, more than independent
  // prolines would show.
  const Agreement together =
      agreementOf({{{0.5, true}, 1}, {{0.5, true}, 1}, {{0.5, true}, 2}, {{0.5, true}, 2}});
  EXPECT_DOUBLE_EQ(together.standardError, std::sqrt(2.0) / 4);
  EXPECT_DOUBLE_EQ(together.deviation(), 0.5 / (std::sqrt(2.0) / 4));
  // Nothing found of a little said: the clusters show no spread, the probabilities do.
  const Agreement none_ = agreementOf({{{0.01, false}, 1}, {{std::nan(""), false}, 2}});
  EXPECT_DOUBLE_EQ(none_.said, 0.005) << "not-a-number counts as 0";
  EXPECT_DOUBLE_EQ(none_.standardError, std::sqrt(0.01 * 0.99) / 2);
}

TEST(Clustered, TheGainOfEqualClustersHasNoSpread) {
  // Each cluster holds one hit, one right trans and one proline that only `after` calls right.
  std::vector<ClusteredCall> before;
  std::vector<ClusteredCall> after;
  for (int cluster = 0; cluster < 7; ++cluster) {
    for (const bool cis : {true, false, false}) {
      const bool wrong = before.size() % 3 == 2;
      before.push_back({{cis || wrong ? 0.9 : 0.1, cis}, cluster});
      after.push_back({{cis ? 0.9 : 0.1, cis}, cluster});
    }
  }
  // hits 1, right 1, false 1: 1 / sqrt(2 * 1 * 2 * 1)
  const Interval gain = matthewsGain(before, after);
  EXPECT_NEAR(gain.low, 0.5, 1e-12);
  EXPECT_NEAR(gain.high, 0.5, 1e-12);
  // One cluster alone gains: whether it is drawn, and how often, is chance.
  for (std::size_t i = 3; i < after.size(); ++i) {
    after[i] = before[i];
  }
  const Interval spread = matthewsGain(before, after);
  EXPECT_EQ(spread.low, 0);
  EXPECT_GT(spread.high, 0.05);
}

// --- limits -------------------------------------------------------------------------------------

TEST(Limits, AreThePercentilesButNeverBoundACisProline) {
  ShiftsByType shifts;
  for (int i = 0; i <= 100; ++i) {
    shifts[letterIndex('A')][CA].push_back(100 - i);
    shifts[letterIndex('P')][CB].push_back(i / 100.0);
  }
  shifts[letterIndex('W')][CA] = {1, 2, 3};
  const Limits limits = findLimits(shifts, 5.2, 8);
  EXPECT_DOUBLE_EQ(limits[letterIndex('A')][CA].lowest, 1);
  EXPECT_DOUBLE_EQ(limits[letterIndex('A')][CA].highest, 99);
  EXPECT_DOUBLE_EQ(limits[letterIndex('P')][CB].lowest, 0.01);
  EXPECT_DOUBLE_EQ(limits[letterIndex('P')][CB].highest, 8) << "8 ppm at least";
  EXPECT_GT(findLimits(shifts, 9.1, 8)[letterIndex('P')][CB].highest, 9.1);
  EXPECT_LT(limits[letterIndex('W')][CA].lowest, -900) << "three shifts make no percentile";
  EXPECT_DOUBLE_EQ(limits[letterCount][CA].highest, 99) << "the widest of all types";
}

// --- the offset objective
// -------------------------------------------------------------------------

ReferencePoints randomProtein(unsigned seed, std::size_t size) {
  std::mt19937 random(seed);
  std::normal_distribution<double> noise(0, 1);
  ReferencePoints points;
  for (std::size_t i = 0; i < size; ++i) {
    // Away from 0 by more than a step of the test: CA minus CB keeps its sign.
    const double side = i % 2 == 0 ? -1 : 1;
    const double difference = side * (0.5 + std::fabs(noise(random)));
    ReferencePoint point{};
    point.letter = static_cast<std::uint8_t>(i % 5);
    const double ca = 0.5 * difference + 0.4 * noise(random) + 0.6;
    point.shift = {ca, ca - difference, -0.1 * difference + 0.1 * noise(random),
                   i % 7 == 0 ? none : 0.4 * difference + noise(random)};
    points.push_back(point);
  }
  return points;
}

TEST(OffsetLoss, HasTheGradientOfFiniteDifferences) {
  for (const std::size_t size : {60U, 24U, 18U}) { // both sets fitted, both, none
    const ReferencePoints points = randomProtein(7, size);
    Adjustments at{};
    at[adjCA][1] = 0.1;
    Adjustments gradient{};
    offsetLoss(points, at, &gradient);
    for (std::size_t atom = 0; atom < adjustedCount; ++atom) {
      for (std::size_t letter = 0; letter < 5; ++letter) {
        constexpr double step = 1e-5;
        Adjustments up = at;
        Adjustments down = at;
        up[atom][letter] += step;
        down[atom][letter] -= step;
        const double slope =
            (offsetLoss(points, up, nullptr) - offsetLoss(points, down, nullptr)) / (2 * step);
        EXPECT_NEAR(gradient[atom][letter], slope, 1e-4 * (1 + std::fabs(slope)))
            << size << " points, atom " << atom << ", letter " << letter;
      }
    }
  }
}

TEST(Adjustments, RemoveABiasThatAllProteinsShare) {
  std::vector<ReferencePoints> proteins;
  for (unsigned seed = 0; seed < 12; ++seed) {
    proteins.push_back(randomProtein(seed, 40)); // CA too high by 0.6 ppm, but for the constants
  }
  const Adjustments none_{};
  const double before = adjustmentLoss(proteins, none_, nullptr);
  const Adjustments fitted = fitAdjustments(proteins);
  EXPECT_LT(adjustmentLoss(proteins, fitted, nullptr), 0.5 * before);
  EXPECT_EQ(fitted[adjCA][letterIndex('P')], 0) << "the referencing never looks at prolines";
  EXPECT_EQ(fitted[adjCA][letterIndex('C')], fitted[adjCA][letterIndex('c')]);
}

// --- the statistics fit
// -----------------------------------------------------------------------------

std::vector<TrainingSample> randomSamples(std::size_t count) {
  std::mt19937 random(3);
  std::normal_distribution<float> noise(0, 1);
  std::vector<TrainingSample> samples;
  for (std::size_t i = 0; i < count; ++i) {
    TrainingSample sample{};
    sample.cis = i % 10 == 0;
    sample.shifts.fill(std::numeric_limits<float>::quiet_NaN());
    const float shared = noise(random);
    const float centre = sample.cis ? 1.5F : 0;
    // Three shifts that say the same thing: a product of Gaussians counts it three times.
    for (const std::size_t index : {7U, 9U, 10U}) {
      sample.shifts[index] = centre + shared + 0.1F * noise(random);
    }
    if (i % 2 == 0) {
      sample.shifts[cgIndex] = (sample.cis ? 24.6F : 27.4F) + 1.5F * noise(random);
    }
    sample.weight = 1;
    sample.mislabelled = 0.001;
    samples.push_back(sample);
  }
  return samples;
}

TEST(StatisticsFit, HasTheGradientOfFiniteDifferences) {
  const std::vector<TrainingSample> samples = randomSamples(200);
  const ShiftStatistics plain = robustStatistics(samples);
  std::vector<double> at(statisticCount * 4 + 1);
  for (std::size_t i = 0; i < at.size(); ++i) {
    at[i] = 0.1 * static_cast<double>(i % 7) - 0.3;
  }
  std::vector<double> gradient;
  std::vector<double> unused;
  statisticsLoss(samples, plain, at, 3, gradient);
  for (std::size_t i = 0; i < at.size(); ++i) {
    if (i / 4 == 6 || i / 4 == 11) {
      EXPECT_EQ(gradient[i], 0) << "a proline's N and HN meet no shift";
      continue;
    }
    constexpr double step = 1e-5;
    std::vector<double> up = at;
    std::vector<double> down = at;
    up[i] += step;
    down[i] -= step;
    const double slope = (statisticsLoss(samples, plain, up, 3, unused) -
                          statisticsLoss(samples, plain, down, 3, unused)) /
                         (2 * step);
    EXPECT_NEAR(gradient[i], slope, 1e-4 * (1 + std::fabs(slope))) << i;
  }
  const std::vector<double> nowhere(at.size(), 0);
  EXPECT_DOUBLE_EQ(heldOutLoss(samples, {plain, 1, 0, 0}),
                   statisticsLoss(samples, plain, nowhere, 0, gradient))
      << "where nothing moved there is no penalty on moves";
}

TEST(StatisticsFit, ChoosesToDrawTogetherWhatSaysNothing) {
  std::mt19937 random(5);
  std::normal_distribution<float> noise(0, 1);
  for (const bool tells : {false, true}) {
    std::vector<TrainingSample> samples;
    for (int i = 0; i < 200; ++i) {
      TrainingSample sample{};
      sample.cluster = i;
      sample.cis = i % 5 == 0;
      sample.weight = 1;
      sample.mislabelled = 0.001;
      for (float& shift : sample.shifts) {
        shift = noise(random) + (tells && sample.cis ? 1.0F : 0.0F);
      }
      sample.shifts[prolineCb] = sample.shifts[cgIndex] = std::numeric_limits<float>::quiet_NaN();
      samples.push_back(sample);
    }
    const double drawing = chooseDrawing(samples);
    if (tells) {
      EXPECT_LT(drawing, drawingCandidates.back())
          << "independent shifts that tell the forms apart";
    } else {
      EXPECT_EQ(drawing, drawingCandidates.back()) << "noise";
    }
  }
}

TEST(StatisticsFit, DrawsTheFormsTogetherButForCbAndCgOfTheProline) {
  // Means 10 apart and widths 1 and 7: the root mean square of the widths is 5, so D is 2; W is
  // ln 7 in units of 0.5.
  const double apart = 2 * 2 + std::pow(2 * std::log(7.0), 2);
  for (std::size_t i = 0; i < statisticCount; ++i) {
    ShiftStatistics plain;
    plain.fill({0, 0, 1, 1});
    plain[i] = {10, 0, 1, 7};
    const std::vector<double> nowhere(statisticCount * 4 + 1, 0);
    std::vector<double> gradient;
    const bool free = i == 6 || i == 10 || i == 11 || i == 18;
    EXPECT_NEAR(statisticsLoss({}, plain, nowhere, 3, gradient), free ? 0 : 1.5 * apart, 1e-12)
        << i;
    // The means come together, cis from above, and the widths too.
    EXPECT_EQ(gradient[4 * i] > 0 && gradient[4 * i + 1] < 0, !free) << i;
    EXPECT_EQ(gradient[4 * i + 2] < 0 && gradient[4 * i + 3] > 0, !free) << i;
    EXPECT_EQ(statisticsLoss({}, plain, nowhere, 0, gradient), 0) << i;
  }
}

TEST(StatisticsFit, TakesBackWhatRepeatedShiftsCountTwice) {
  const std::vector<TrainingSample> samples = randomSamples(1000);
  const ShiftStatistics plain = robustStatistics(samples);
  const FittedStatistics fitted = fitStatistics(samples, plain);
  // Evidence of the three shifts at a typical cis value, in nats.
  const auto evidence = [](const ShiftStatistics& statistics) {
    double sum = 0;
    for (const std::size_t i : {7U, 9U, 10U}) {
      const double zc = (1.5 - statistics[i].cisMean) / statistics[i].cisWidth;
      const double zt = (1.5 - statistics[i].transMean) / statistics[i].transWidth;
      sum += 0.5 * (zt * zt - zc * zc);
    }
    return sum;
  };
  // One shift of unit width with means 1.5 apart says 1.5 * 1.5 / 2 = 1.1 nats there.
  EXPECT_GT(evidence(plain), 2.8);
  EXPECT_LT(evidence(fitted.statistics), 2.2);
  EXPECT_EQ(fitted.statistics[cgIndex].cisWidth, fitted.statistics[cgIndex].transWidth);
}

// --- through the program's own code
// ---------------------------------------------------------------

Protein helixAndStrand() {
  Protein protein;
  for (int i = 0; i < 60; ++i) {
    protein.sequence += "AKLEVTSQRI"[i % 10];
  }
  protein.shifts.assign(
      61, {noShift, noShift, noShift, noShift, noShift, noShift, noShift, noShift, noShift});
  for (std::size_t i = 1; i <= 60; ++i) {
    const double side = i % 2 == 0 ? 1 : -1;
    const double wave = 0.9 * static_cast<double>(i % 7);
    protein.shifts[i].ca = 56 + side * (2 + wave);
    protein.shifts[i].cb = 34 - side * (9 + wave);
  }
  return protein;
}

TEST(CoreRun, FindsTheCarbonErrorThatIsAdded) {
  CoreRun core(SHIPPED_TABLES);
  core.prepare(helixAndStrand());
  const float before = core.offsetEstimates().ca.offset;
  for (const double error : {-2.7, 1.0}) {
    Treatment treatment;
    treatment.carbonError = error;
    core.prepare(helixAndStrand(), treatment);
    // CA minus CB stays, so the lines move up as a whole, but for the first point of each set,
    // which the program leaves out of the sums of products: up to 4 % here.
    EXPECT_NEAR(core.offsetEstimates().ca.offset - before, error, 0.04 * std::fabs(error));
  }
}

TEST(ShippedTables, GiveANumberBesideEveryResidueOfASequence) {
  CoreRun core(SHIPPED_TABLES);
  for (const char code : std::string("ABCDEFGHIJKLMNOPQRSTUVWXYchp?")) {
    Protein protein;
    protein.sequence = std::string(1, code) + "P" + std::string(1, code);
    protein.shifts.assign(4, {120, 4.4, 176, 56, 33, 8.2, 4.0, 4.1, noShift});
    core.prepare(protein);
    const Scored scored = core.score(2);
    EXPECT_FALSE(std::isnan(scored.normalised)) << code;
    EXPECT_TRUE(std::isnan(scored.shifts[atomCount + N])) << "a proline's N is not used";
    EXPECT_TRUE(std::isnan(scored.shifts[atomCount + HN])) << "a proline has no HN";
    EXPECT_EQ(code == 'G', std::isnan(scored.shifts[CB]) && !std::isnan(scored.shifts[CA]))
        << code << ": only glycine lacks CB alone";
  }
}

TEST(ShippedTables, NeverBoundCbOfACisProline) {
  CoreRun core(SHIPPED_TABLES);
  Protein protein;
  protein.sequence = "APP";
  protein.shifts.assign(4, {noShift, 4.4, 176, 63, 36.23, noShift, noShift, noShift, noShift});
  core.prepare(protein);
  // 36.23 ppm is the highest CB of the published cis prolines.
  const SecondaryShifts secondary = core.secondaryShifts();
  EXPECT_FLOAT_EQ(core.score(2).shifts[atomCount + CB], secondary[1][CB]);
}

} // namespace
} // namespace derive
