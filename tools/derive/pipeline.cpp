#include "tools/derive/pipeline.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "tools/derive/core_run.h"

namespace derive {
namespace {

/// Weight of a label that rests on a structure alone. One cis label in five of these is
/// contradicted by the shifts where both exist.
constexpr double structureWeight = 0.5;
constexpr double structureMislabelled = 0.003;
constexpr double otherMislabelled = 0.001;
/// A proline of a cluster of n weighs n to this power.
constexpr double clusterPower = -0.25;

/// Tables that bound nothing and adjust nothing, to see the secondary shifts as published values
/// give them.
TableSet neutralTables(const Published& published) {
  TableSet tables;
  tables.published = published;
  for (auto& row : tables.limits) {
    row.fill({-999, 998});
  }
  tables.statistics.fill({0, 0, 99, 99});
  return tables;
}

ReferencePoints referencePoints(const Protein& protein,
                                const std::vector<std::array<float, atomCount>>& secondary) {
  // The program visits residues in the order of their numbers as text.
  std::vector<std::pair<std::string, std::size_t>> order;
  for (std::size_t i = 0; i < secondary.size(); ++i) {
    order.emplace_back(std::to_string(i + 1), i);
  }
  std::sort(order.begin(), order.end());
  ReferencePoints points;
  for (const auto& [text, i] : order) {
    const char code = protein.sequence[i];
    const std::size_t letter = letterIndex(code);
    const bool leftOut = code == 'P' || code == 'C' || code == 'c' || letter == letterCount;
    if (leftOut || std::isnan(secondary[i][CA]) || std::isnan(secondary[i][CB])) {
      continue;
    }
    ReferencePoint point{};
    point.letter = static_cast<std::uint8_t>(letter);
    for (std::size_t atom = 0; atom < adjustedCount; ++atom) {
      point.shift[atom] = static_cast<double>(secondary[i][adjustedAtoms[atom]]);
    }
    points.push_back(point);
  }
  return points;
}

std::map<int, int> clusterSizes(const Training& training, const std::vector<bool>& use) {
  std::map<int, int> sizes;
  for (const LabelledProline& proline : training.prolines) {
    if (use[proline.protein]) {
      ++sizes[training.proteins[proline.protein].cluster];
    }
  }
  return sizes;
}

std::size_t neighbourLetter(const Protein& protein, int residue) {
  return letterIndex(protein.sequence[static_cast<std::size_t>(residue) - 1]);
}

double neighbourLogOdds(const Published& published, const Protein& protein, int residue) {
  const NeighbourStatistic before =
      neighbourStatistic(published, neighbourLetter(protein, residue - 1));
  const NeighbourStatistic after =
      neighbourStatistic(published, neighbourLetter(protein, residue + 1));
  return std::log(before.cisPrevious / before.transPrevious * after.cisNext / after.transNext);
}

void scaleToMeanOne(std::vector<TrainingSample>& samples) {
  double sum = 0;
  for (const TrainingSample& sample : samples) {
    sum += sample.weight;
  }
  for (TrainingSample& sample : samples) {
    sample.weight *= static_cast<double>(samples.size()) / sum;
  }
}

} // namespace

Derivation::Derivation(const Training& training, const Published& published,
                       const Progress& progress)
    : training_(training), published_(published) {
  progress("secondary shifts of " + std::to_string(training.proteins.size()) + " proteins");
  const ScratchFolder folder(tableTexts(neutralTables(published), {}));
  CoreRun core(folder.path());
  for (const Protein& protein : training.proteins) {
    core.prepare(protein);
    secondary_.push_back(core.secondaryShifts());
  }
}

Adjustments Derivation::fitAdjustmentsOf(const std::vector<bool>& use) const {
  std::vector<ReferencePoints> proteins;
  for (std::size_t i = 0; i < secondary_.size(); ++i) {
    if (use[i]) {
      proteins.push_back(referencePoints(training_.proteins[i], secondary_[i]));
    }
  }
  return fitAdjustments(proteins);
}

Limits Derivation::limitsOf(const std::vector<bool>& use, const ResidueValues& adjustments,
                            double leastHighestCb) const {
  ShiftsByType shifts;
  for (std::size_t i = 0; i < secondary_.size(); ++i) {
    for (std::size_t residue = 0; use[i] && residue < secondary_[i].size(); ++residue) {
      const std::size_t letter = letterIndex(training_.proteins[i].sequence[residue]);
      for (std::size_t atom = 0; letter < letterCount && atom < atomCount; ++atom) {
        const double shift = static_cast<double>(secondary_[i][residue][atom]);
        if (!std::isnan(shift)) {
          shifts[letter][atom].push_back(shift - adjustments[letter][atom]);
        }
      }
    }
  }
  double highestCisCb = 0;
  for (const LabelledProline& proline : training_.prolines) {
    const auto residue = static_cast<std::size_t>(proline.residue) - 1;
    const float cb = secondary_[proline.protein][residue][CB];
    if (use[proline.protein] && proline.cis && !std::isnan(cb)) {
      highestCisCb = std::max(highestCisCb, static_cast<double>(cb));
    }
  }
  return findLimits(std::move(shifts), highestCisCb, leastHighestCb);
}

void Derivation::fitStatisticsOf(const std::vector<bool>& use, TableSet& tables, double drawing,
                                 const Progress& progress) const {
  const std::vector<TrainingSample> samples = makeSamples(training_, use, tables);
  tables.plainStatistics = robustStatistics(samples);
  const FittedStatistics fitted = fitStatistics(samples, tables.plainStatistics, drawing);
  tables.statistics = fitted.statistics;
  tables.cisFactor = fitted.cisFactor;
  progress("statistics fitted to " + std::to_string(samples.size()) + " prolines in " +
           std::to_string(fitted.evaluations) + " evaluations");
}

TableSet Derivation::derive(const std::vector<bool>& use, const Progress& progress) const {
  TableSet tables = neutralTables(published_);
  progress("adjustments from " + describeSelection(training_, use));
  const Adjustments adjustments = fitAdjustmentsOf(use);
  for (std::size_t atom = 0; atom < adjustedCount; ++atom) {
    for (std::size_t letter = 0; letter < letterCount; ++letter) {
      tables.adjustments[letter][adjustedAtoms[atom]] = adjustments[atom][letter];
    }
  }
  return rederive(use, tables, {}, progress);
}

TableSet Derivation::rederive(const std::vector<bool>& use, TableSet tables, const Choice& choice,
                              const Progress& progress) const {
  tables.limits = limitsOf(use, tables.adjustments, choice.leastHighestCb);
  fitStatisticsOf(use, tables, choice.drawing, progress);
  return tables;
}

ReferencedProtein Derivation::referencedProtein(std::size_t protein, const TableSet& tables) const {
  ReferencedProtein residues;
  const std::string& sequence = training_.proteins[protein].sequence;
  for (std::size_t i = 0; i < sequence.size(); ++i) {
    const std::size_t letter = letterIndex(sequence[i]);
    const bool leftOut = sequence[i] == 'P' || sequence[i] == 'C' || sequence[i] == 'c';
    if (leftOut || letter == letterCount) {
      continue;
    }
    const auto shift = [&](Atom atom) {
      return static_cast<double>(secondary_[protein][i][atom]) - tables.adjustments[letter][atom];
    };
    residues.push_back({shift(CA), shift(CB), shift(HA), shift(C)});
  }
  return residues;
}

referencing::Model Derivation::fitReferencingTo(const std::vector<bool>& use,
                                                const TableSet& tables) const {
  std::vector<ReferencedProtein> proteins;
  for (std::size_t i = 0; i < secondary_.size(); ++i) {
    if (use[i]) {
      proteins.push_back(referencedProtein(i, tables));
    }
  }
  return fitReferencing(proteins);
}

std::vector<TrainingSample> makeSamples(const Training& training, const std::vector<bool>& use,
                                        const TableSet& tables) {
  const ScratchFolder folder(tableTexts(tables, {}));
  CoreRun core(folder.path());
  std::map<int, int> sizes = clusterSizes(training, use);
  std::vector<TrainingSample> samples;
  std::size_t prepared = training.proteins.size();
  for (const LabelledProline& proline : training.prolines) {
    if (!use[proline.protein]) {
      continue;
    }
    const Protein& protein = training.proteins[proline.protein];
    if (prepared != proline.protein) {
      core.prepare(protein);
      prepared = proline.protein;
    }
    const Scored scored = core.score(proline.residue);
    if (!scored.predicted) {
      continue;
    }
    const bool structure = proline.source == Source::structure;
    TrainingSample sample{};
    sample.shifts = scored.shifts;
    sample.neighbourLogOdds = neighbourLogOdds(tables.published, protein, proline.residue);
    sample.cis = proline.cis;
    sample.weight = (structure ? structureWeight : 1) *
                    std::pow(static_cast<double>(sizes[protein.cluster]), clusterPower);
    sample.cluster = protein.cluster;
    sample.mislabelled = structure ? structureMislabelled : otherMislabelled;
    samples.push_back(sample);
  }
  scaleToMeanOne(samples);
  return samples;
}

std::string describeSelection(const Training& training, const std::vector<bool>& use) {
  std::size_t prolines = 0;
  std::size_t cis = 0;
  for (const LabelledProline& proline : training.prolines) {
    prolines += use[proline.protein] ? 1U : 0U;
    cis += use[proline.protein] && proline.cis ? 1U : 0U;
  }
  const auto proteins = std::count(use.begin(), use.end(), true);
  return std::to_string(proteins) + " proteins with " + std::to_string(prolines) +
         " labelled prolines, " + std::to_string(cis) + " of them cis";
}

} // namespace derive
