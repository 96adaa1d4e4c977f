#include <map>

#include "tools/derive/accuracy_sections.h"
#include "tools/derive/drawing_choice.h"
#include "tools/derive/markdown.h"

namespace derive {
namespace {

struct GainRow {
  const char* name;
  std::size_t before, now, chosen; ///< experiments
  bool (*keep)(const ScoredProline&);
};

constexpr GainRow gainRows[] = {
    {"CG hidden, *both* and *shifts*", earlierHidden, cgHidden, chosenHidden, shiftsAgree},
    {"CG hidden, all truths", earlierHidden, cgHidden, chosenHidden, anyTruth},
    {"CG given, all truths", earlierGiven, cgGiven, chosenGiven, anyTruth},
    {"CG given, *both* and *shifts*", earlierGiven, cgGiven, chosenGiven, shiftsAgree},
    {"no CG, no CB, *both* and *shifts*", earlierNoCb, noCb, chosenNoCb, shiftsAgree}};

std::string gainText(const std::vector<ClusteredCall>& before,
                     const std::vector<ClusteredCall>& after) {
  const Interval gain = matthewsGain(before, after);
  return fixed(gain.low, 3) + " to " + fixed(gain.high, 3);
}

std::vector<std::string> gainCells(const CrossValidation& result, const GainRow& row) {
  std::vector<std::string> scores;
  std::vector<std::string> losses;
  for (const std::size_t experiment : {row.before, row.now, row.chosen}) {
    const Metrics metrics = measure(callsOf(result, experiment, row.keep));
    scores.push_back(fixed(metrics.matthews, 3));
    losses.push_back(fixed(metrics.logLoss, 4));
  }
  const auto before = clusteredCallsOf(result, row.before, row.keep);
  const auto now = clusteredCallsOf(result, row.now, row.keep);
  const auto chosen = clusteredCallsOf(result, row.chosen, row.keep);
  std::vector<std::string> cells = {
      row.name, scores[0], scores[1], gainText(before, now), scores[2], gainText(now, chosen)};
  cells.insert(cells.end(), losses.begin(), losses.end());
  return cells;
}

std::string numbered(double value) {
  return fixed(value, 0);
}

/// "5 in 8 folds, 10 in 2".
std::string choicesOf(const CrossValidation& result) {
  std::map<double, std::size_t> folds;
  for (const double drawing : result.chosenDrawing) {
    ++folds[drawing];
  }
  std::string text;
  for (const auto& [drawing, count] : folds) {
    text += (text.empty() ? "" : ", ") + numbered(drawing) + " in " + std::to_string(count) +
            (text.empty() ? " folds" : "");
  }
  return text;
}

} // namespace

std::string penaltySection(const CrossValidation& result) {
  std::string candidates;
  for (const double drawing : drawingCandidates) {
    candidates += (candidates.empty() ? "" : ", ") + numbered(drawing);
  }
  const std::string shipped = numbered(shippedDrawing);
  std::string text =
      "## What drawing the forms together gains\n\n"
      "*before*: without the penalty that draws the cis and trans curves together, and with CB of "
      "proline\nbounded at the highest cis proline instead of " +
      numbered(shippedHighestCb) + " ppm. *now*: the tables as they are, strength " + shipped +
      ".\n*nested*: the strength that has the least loss within the nine training folds, each left "
      "out in turn,\nof " +
      candidates + ": " + choicesOf(result) +
      ". The scored proteins have no part in that\nchoice, as they have in " + shipped +
      ", which was chosen on these folds; " + shipped +
      " stays unless the nested choice is better\nthroughout. The gain of *now* is that over "
      "*before*, the gain of *nested* that over *now*: 95 % intervals\nof a paired bootstrap over "
      "clusters.\n\n";
  std::vector<std::vector<std::string>> rows;
  for (const GainRow& row : gainRows) {
    rows.push_back(gainCells(result, row));
  }
  return text + markdownTable({"prolines", "MCC before", "now", "gain", "nested", "gain",
                               "log loss before", "now", "nested"},
                              rows);
}

} // namespace derive
