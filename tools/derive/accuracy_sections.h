#pragma once

#include <string>

#include "tools/derive/clustered.h"
#include "tools/derive/cross_validation.h"

/// The sections of docs/accuracy.md, each as Markdown text that ends with an empty line.
namespace derive {

/// The calls of one experiment on the prolines that it predicts and `keep` accepts.
template <class Keep>
std::vector<ClusteredCall> clusteredCallsOf(const CrossValidation& result, std::size_t experiment,
                                            Keep keep) {
  std::vector<ClusteredCall> calls;
  for (const ScoredProline& proline : result.prolines) {
    if (proline.predicted[experiment] && keep(proline)) {
      calls.push_back({{proline.probability[experiment], proline.label.cis},
                       result.clusters[proline.label.protein]});
    }
  }
  return calls;
}

template <class Keep>
std::vector<Call> callsOf(const CrossValidation& result, std::size_t experiment, Keep keep) {
  std::vector<Call> calls;
  for (const ClusteredCall& clustered : clusteredCallsOf(result, experiment, keep)) {
    calls.push_back(clustered.call);
  }
  return calls;
}

/// Whether the label rests on more than a structure.
inline bool shiftsAgree(const ScoredProline& proline) {
  return proline.label.source != Source::structure;
}

inline bool anyTruth(const ScoredProline&) {
  return true;
}

/// How many of the sixteen triplet shifts are there.
int presentShifts(const ScoredProline& proline);

/// Heads and cells of a row of measures, after a first cell with the row's name.
std::vector<std::string> measureHead(const std::string& name);
std::vector<std::string> measureRow(const std::string& name, const std::vector<Call>& calls);

struct NamedExperiment {
  const char* name;
  std::size_t experiment;
};
/// A row of measures for each experiment, on the prolines whose label rests on more than a
/// structure.
std::string experimentTable(const CrossValidation& result, const std::string& name,
                            const std::vector<NamedExperiment>& experiments);

std::string truthSection(const CrossValidation& result);
std::string presenceSection(const CrossValidation& result);
std::string comparisonSection(const CrossValidation& result, const PublishedRule& rule);
std::string penaltySection(const CrossValidation& result);
std::string labelSection(const Training& training, const CrossValidation& result);
std::string calibrationSection(const Training& training, const CrossValidation& result,
                               const TableSet& tables);
std::string referencingSection(const CrossValidation& result);
std::string correctionSection(const CrossValidation& result);
std::string callSection(const CrossValidation& result);
std::string experimentSection(const CrossValidation& result);
std::string statisticsSection(const TableSet& tables);
std::string wrongSection(const Training& training, const CrossValidation& result);

} // namespace derive
