#include "tools/derive/cross_validation.h"

#include <cmath>
#include <cstdint>
#include <memory>

#include "tools/derive/drawing_choice.h"

namespace derive {
namespace {

Treatment hiding(std::initializer_list<Atom> atoms) {
  Treatment treatment;
  treatment.hideCg = true;
  for (const Atom atom : atoms) {
    treatment.hidden[atom] = true;
  }
  return treatment;
}

Treatment misreferenced(double error, bool corrected, bool hideCg = false) {
  Treatment treatment;
  treatment.hideCg = hideCg;
  treatment.carbonError = error;
  treatment.correctOffsets = corrected;
  return treatment;
}

Treatment deuteratedSample(bool corrected) {
  Treatment treatment;
  treatment.deuterated = true;
  treatment.correctIsotope = corrected;
  return treatment;
}

Treatment treatmentOf(std::size_t experiment) {
  switch (experiment) {
  case cgHidden:
  case plainHidden:
  case earlierHidden:
  case chosenHidden:
    return hiding({});
  case noCb:
  case earlierNoCb:
  case chosenNoCb:
    return hiding({CB});
  case noHa:
    return hiding({HA});
  case noCbNoHa:
    return hiding({CB, HA});
  case noCarbonyl:
    return hiding({C});
  case protonsOnly:
    return hiding({N, C, CA, CB});
  case amidesOnly:
    return hiding({HA, C, CA, CB});
  case error27Down:
    return misreferenced(injectedErrors[0], false);
  case error10Down:
    return misreferenced(injectedErrors[1], false);
  case error10Up:
    return misreferenced(injectedErrors[2], false);
  case error27Up:
    return misreferenced(injectedErrors[3], false);
  case error27DownCorrected:
    return misreferenced(injectedErrors[0], true);
  case error10DownCorrected:
    return misreferenced(injectedErrors[1], true);
  case error10UpCorrected:
    return misreferenced(injectedErrors[2], true);
  case error27UpCorrected:
    return misreferenced(injectedErrors[3], true);
  case error27DownNoCg:
    return misreferenced(injectedErrors[0], false, true);
  case error27UpNoCg:
    return misreferenced(injectedErrors[3], false, true);
  case error27DownNoCgCorrected:
    return misreferenced(injectedErrors[0], true, true);
  case error27UpNoCgCorrected:
    return misreferenced(injectedErrors[3], true, true);
  case offsetCorrected:
    return misreferenced(0, true);
  case deuterated:
    return deuteratedSample(false);
  case deuteratedCorrected:
    return deuteratedSample(true);
  default:
    return {};
  }
}

/// The tables of one fold: as they ship, with plain statistics, and by other choices.
/// The last two are left out when nobody asks for them.
enum Tables : std::size_t { fitted, plain, earlier, chosen };
using FoldTables = std::vector<TableSet>;

Tables tablesOf(std::size_t experiment) {
  switch (experiment) {
  case plainGiven:
  case plainHidden:
    return plain;
  case earlierGiven:
  case earlierHidden:
  case earlierNoCb:
    return earlier;
  case chosenGiven:
  case chosenHidden:
  case chosenNoCb:
    return chosen;
  default:
    return fitted;
  }
}

double frequencyLogOdds(const Published& published, const Protein& protein, int residue) {
  const auto last = static_cast<int>(protein.sequence.size());
  if (residue <= 1 || residue >= last) {
    return 0;
  }
  const auto place = static_cast<std::size_t>(residue);
  const NeighbourStatistic before =
      neighbourStatistic(published, letterIndex(protein.sequence[place - 2]));
  const NeighbourStatistic after =
      neighbourStatistic(published, letterIndex(protein.sequence[place]));
  return std::log(before.cisPrevious / before.transPrevious * after.cisNext / after.transNext);
}

OffsetTrial tryOffsets(CoreRun& core, const Protein& protein) {
  OffsetTrial trial;
  core.prepare(protein);
  const OffsetEstimates estimates = core.offsetEstimates();
  std::size_t nucleus = 0;
  for (const OffsetEstimate& estimate : {estimates.ca, estimates.ha, estimates.c}) {
    trial.estimated[nucleus] = estimate.error > 0 && estimate.points > 10;
    trial.recorded[nucleus] = estimate.counts;
    trial.offset[nucleus] = static_cast<double>(estimate.offset);
    ++nucleus;
  }
  for (std::size_t i = 0; i < injectedErrors.size(); ++i) {
    core.prepare(protein, misreferenced(injectedErrors[i], false));
    const OffsetEstimate estimate = core.offsetEstimates().ca;
    trial.found[i] = estimate.counts ? static_cast<double>(estimate.offset) : 0;
  }
  return trial;
}

/// The tables of one fold, in the program's hands.
class FoldRun {
 public:
  FoldRun(const Derivation& derivation, const FoldTables& tables,
          const referencing::Model& referencing)
      : derivation_(derivation), published_(tables[fitted].published), referencing_(referencing) {
    for (const TableSet& set : tables) {
      const ScratchFolder folder(tableTexts(set, {}));
      runs_.push_back(std::make_unique<CoreRun>(folder.path()));
    }
  }

  /// Scores the prolines from `first` on that belong to one protein.
  void scoreProtein(std::vector<ScoredProline>& prolines, std::size_t first, std::size_t end) {
    const Protein& protein = derivation_.training().proteins[prolines[first].label.protein];
    for (std::size_t experiment = 0; experiment < experimentCount; ++experiment) {
      if (tablesOf(experiment) >= runs_.size()) {
        continue;
      }
      CoreRun& core = *runs_[tablesOf(experiment)];
      core.prepare(protein, treatmentOf(experiment));
      for (std::size_t i = first; i < end; ++i) {
        ScoredProline& proline = prolines[i];
        const Scored scored = core.score(proline.label.residue);
        proline.predicted[experiment] = scored.predicted;
        proline.probability[experiment] = static_cast<double>(scored.normalised);
        if (experiment == cgGiven) {
          proline.shifts = scored.shifts;
        }
      }
    }
    std::vector<int> residues;
    for (std::size_t i = first; i < end; ++i) {
      residues.push_back(prolines[i].label.residue);
    }
    std::vector<ProlineTrials> trials =
        tryProlines(*runs_[fitted], referencing_, protein, residues);
    for (std::size_t i = first; i < end; ++i) {
      prolines[i].trials = std::move(trials[i - first]);
      const auto residue = static_cast<std::size_t>(prolines[i].label.residue);
      prolines[i].cbMinusCg = protein.shifts[residue].cb - protein.shifts[residue].cg;
      prolines[i].neighbourLogOdds =
          frequencyLogOdds(published_, protein, prolines[i].label.residue);
    }
  }

  OffsetTrial offsetsOf(const Protein& protein) { return tryOffsets(*runs_[fitted], protein); }

 private:
  const Derivation& derivation_;
  const Published published_;
  const referencing::Model& referencing_;
  std::vector<std::unique_ptr<CoreRun>> runs_; ///< by Tables
};

FoldTables deriveFold(const Derivation& derivation, const std::vector<bool>& use, Extent extent,
                      const Progress& progress, CrossValidation& result) {
  const TableSet tables = derivation.derive(use, progress);
  TableSet unfitted = tables;
  unfitted.statistics = tables.plainStatistics;
  unfitted.cisFactor = 1;
  if (extent == Extent::shippedChoice) {
    return {tables, unfitted};
  }
  const double drawing = chooseDrawing(makeSamples(derivation.training(), use, tables));
  result.chosenDrawing.push_back(drawing);
  return {tables, unfitted, derivation.rederive(use, tables, {0, 0}, progress),
          derivation.rederive(use, tables, {drawing, shippedHighestCb}, progress)};
}

void runFold(const Derivation& derivation, int fold, Extent extent, const Progress& progress,
             CrossValidation& result) {
  const Training& training = derivation.training();
  std::vector<bool> use;
  for (const Protein& protein : training.proteins) {
    use.push_back(foldOf(protein.cluster) != fold);
  }
  const FoldTables foldTables = deriveFold(derivation, use, extent, progress, result);
  const TableSet& tables = foldTables[fitted];
  const referencing::Model referencing = derivation.fitReferencingTo(use, tables);
  FoldRun run(derivation, foldTables, referencing);
  auto& prolines = result.prolines;
  for (std::size_t first = 0; first < prolines.size();) {
    std::size_t end = first;
    while (end < prolines.size() && prolines[end].label.protein == prolines[first].label.protein) {
      ++end;
    }
    if (!use[prolines[first].label.protein]) {
      run.scoreProtein(prolines, first, end);
    }
    first = end;
  }
  for (std::size_t i = 0; i < training.proteins.size(); ++i) {
    if (!use[i]) {
      result.offsets[i] = run.offsetsOf(training.proteins[i]);
      result.estimates[i] = estimate(referencing, derivation.referencedProtein(i, tables));
    }
  }
}

} // namespace

int foldOf(int cluster) {
  // A 64-bit mixer (splitmix64): neighbouring cluster numbers are often of one kind.
  auto x = static_cast<std::uint64_t>(cluster) + 0x9e3779b97f4a7c15U;
  x = (x ^ (x >> 30U)) * 0xbf58476d1ce4e5b9U;
  x = (x ^ (x >> 27U)) * 0x94d049bb133111ebU;
  return static_cast<int>((x ^ (x >> 31U)) % foldCount);
}

CrossValidation crossValidate(const Derivation& derivation, Extent extent,
                              const Progress& progress) {
  CrossValidation result;
  for (const LabelledProline& label : derivation.training().prolines) {
    ScoredProline proline;
    proline.label = label;
    proline.fold = foldOf(derivation.training().proteins[label.protein].cluster);
    result.prolines.push_back(proline);
  }
  for (const Protein& protein : derivation.training().proteins) {
    result.clusters.push_back(protein.cluster);
  }
  result.offsets.resize(result.clusters.size());
  result.estimates.resize(result.clusters.size());
  for (int fold = 0; fold < foldCount; ++fold) {
    progress("fold " + std::to_string(fold + 1) + " of " + std::to_string(foldCount));
    runFold(derivation, fold, extent, progress, result);
  }
  return result;
}

} // namespace derive
