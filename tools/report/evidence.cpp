#include "tools/report/evidence.h"

#include <cmath>

#include "table/number.h"

namespace {

constexpr int cgIndex = 18;
constexpr int atomsPerResidue = 6;
/// Printed likelihoods have three decimals; the sums in single precision may differ in the sixth.
constexpr double printedHalfUnit = 0.0005;
constexpr double arithmetic = 1e-5;

const char* const placeKeys[] = {"_R1", "_R2", "_R3"};

double halfSquare(double x, double mean, double deviation) {
  const double z = (x - mean) / deviation;
  return 0.5 * z * z;
}

void compare(Term& term, CITRANS& run, int index) {
  const auto of = [index](std::map<int, float>& values) {
    return static_cast<double>(values[index]);
  };
  term.cis = of(run.proAvgCis);
  term.trans = of(run.proAvgTrans);
  term.cisDeviation = of(run.proStdCis);
  term.transDeviation = of(run.proStdTrans);
  if (term.present) {
    term.logRatio = halfSquare(term.used, term.trans, term.transDeviation) -
                    halfSquare(term.used, term.cis, term.cisDeviation);
  }
}

struct TripletPair {
  CITRANS::Triplet used;      ///< as the prediction takes them
  CITRANS::Triplet unbounded; ///< as they stand in the table
};

Term shiftTerm(CITRANS& run, const Inputs& inputs, const TripletPair& triplets, int place,
               int atomIndex) {
  const std::string& atom = run.atomNames[atomIndex];
  const std::string key = atom + placeKeys[place - 1];
  Term term;
  term.place = place;
  term.residue = parseInt(triplets.used.at("RESID_R2")) + place - 2;
  term.atom = atom;
  term.applicable = place != 2 || (atom != "N" && atom != "HN");
  term.used = static_cast<double>(parseFloat(triplets.used.at(key)));
  term.shift = static_cast<double>(parseFloat(triplets.unbounded.at(key)));
  term.present = !(term.used > static_cast<double>(shift::largestPredicted));
  term.clipped = term.present && term.used != term.shift;
  const ShiftRow* const row = inputs.shiftOf(term.residue, atom);
  term.readAsZero = term.present && row == nullptr;
  term.rounding = row != nullptr ? row->rounding : 0;
  compare(term, run, atomsPerResidue * (place - 1) + atomIndex - 1);
  return term;
}

Term neighbourTerm(CITRANS& run, int residue, int place, const std::string& name) {
  Term term;
  term.kind = Term::Kind::neighbour;
  term.place = place;
  term.residue = residue;
  term.atom = "type";
  term.present = true;
  term.cis = static_cast<double>(run.proCisSeq[name][place]);
  term.trans = static_cast<double>(run.proTransSeq[name][place]);
  term.logRatio = std::log(term.cis / term.trans);
  return term;
}

Term cgTerm(CITRANS& run, const Inputs& inputs, int proline) {
  Term term;
  term.kind = Term::Kind::cg;
  term.place = 2;
  term.residue = proline;
  term.atom = "CG";
  term.shift = term.used = static_cast<double>(run.cgShifts[proline]);
  term.present = term.used < shift::missingFrom;
  const SummaryRow* const row = inputs.summaryRow(proline);
  term.rounding = row != nullptr ? row->cgRounding : 0;
  compare(term, run, cgIndex);
  return term;
}

/// How far the sum moves when a rounded shift moves by half its last digit.
double sensitivity(const Term& term) {
  if (!term.present || term.kind == Term::Kind::neighbour || term.clipped) {
    return 0;
  }
  const double slope = (term.used - term.trans) / (term.transDeviation * term.transDeviation) -
                       (term.used - term.cis) / (term.cisDeviation * term.cisDeviation);
  return std::fabs(slope) * term.rounding;
}

double logistic(double logOdds) {
  return 1 / (1 + std::exp(-logOdds));
}

void sum(Evidence& evidence) {
  double moved = 0;
  for (const Term& term : evidence.terms) {
    evidence.logRatio += term.logRatio;
    moved += sensitivity(term);
  }
  evidence.pCis = logistic(evidence.logRatio);
  evidence.pCisNorm = normalised(evidence.pCis);
  evidence.rounding = std::fmax(logistic(evidence.logRatio + moved) - evidence.pCis,
                                evidence.pCis - logistic(evidence.logRatio - moved));
}

TripletPair tripletsOf(CITRANS& run, int proline) {
  TripletPair triplets;
  const bool clipOn = run.clipOn;
  triplets.used = run.getTriplet(proline);
  run.clipOn = false;
  triplets.unbounded = run.getTriplet(proline);
  run.clipOn = clipOn;
  return triplets;
}

} // namespace

const char* kindName(Term::Kind kind) {
  return kind == Term::Kind::shift ? "shift" : kind == Term::Kind::cg ? "cg" : "neighbour";
}

const char* stateName(const Term& term) {
  if (!term.applicable) {
    return "unused";
  }
  if (!term.present) {
    return "missing";
  }
  return term.clipped ? "clipped" : term.readAsZero ? "read as 0" : "used";
}

const double logPriorOdds = std::log(19.0);

double normalised(double pCis) {
  return pCis / (pCis + 19 * (1 - pCis));
}

bool Evidence::agreesWith(double printedPCis) const {
  if (std::isnan(printedPCis) || std::isnan(pCis)) {
    return std::isnan(static_cast<double>(core.cis));
  }
  return std::fabs(pCis - printedPCis) <= printedHalfUnit + rounding + arithmetic;
}

Evidence gatherEvidence(CITRANS& run, const Inputs& inputs, int proline) {
  Evidence evidence;
  evidence.residue = proline;
  const TripletPair triplets = tripletsOf(run, proline);
  for (int place = 1; place <= 3; ++place) {
    if (place != 2) {
      const std::string name = triplets.used.at("RESNAME_R" + std::to_string(place));
      evidence.terms.push_back(neighbourTerm(run, proline + place - 2, place, name));
    }
    for (int atom = 1; atom <= atomsPerResidue; ++atom) {
      evidence.terms.push_back(shiftTerm(run, inputs, triplets, place, atom));
    }
    if (place == 2) {
      evidence.terms.push_back(cgTerm(run, inputs, proline));
    }
  }
  evidence.core = run.getLikelihood(triplets.used, run.cgShifts[proline]);
  sum(evidence);
  return evidence;
}
