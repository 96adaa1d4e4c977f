#include "tools/referencing/estimate.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "table/number.h"

namespace referencing {
namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
/// Tukey's constant: 95 % as efficient as the mean where no value is wild.
constexpr double biweightReach = 4.685;
constexpr int mostSteps = 100;
constexpr double fineEnough = 1e-9; ///< widths

double middleValue(std::vector<double>& values) {
  const auto half = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), half, values.end());
  if (values.size() % 2 == 1) {
    return *half;
  }
  return (*half + *std::max_element(values.begin(), half)) / 2;
}

/// Proline and both forms of cysteine have CA and CB of their own.
bool isLeftOut(const std::string& name) {
  return name == "P" || name == "C" || name == "c";
}

void set(ResidueShifts& shifts, std::string_view atom, double value) {
  if (atom == "CA") {
    shifts.ca = value;
  } else if (atom == "CB") {
    shifts.cb = value;
  } else if (atom == "HA") {
    shifts.ha = value;
  } else if (atom == "C") {
    shifts.c = value;
  }
}

double shiftOf(const ResidueShifts& shifts, Nucleus nucleus) {
  switch (nucleus) {
  case Nucleus::carbon:
    return shifts.ca;
  case Nucleus::alphaProton:
    return shifts.ha;
  case Nucleus::carbonyl:
    break;
  }
  return shifts.c;
}

Estimate estimateNucleus(const Model& model, Nucleus nucleus,
                         const std::vector<ResidueShifts>& residues) {
  const NucleusModel& lines = model[nucleus];
  std::vector<double> misses;
  for (const ResidueShifts& shifts : residues) {
    const double difference = shifts.ca - shifts.cb;
    const double miss = shiftOf(shifts, nucleus) - lines.expected(difference);
    if (!std::isnan(miss)) {
      misses.push_back(miss);
    }
  }
  Estimate found;
  found.points = static_cast<int>(misses.size());
  if (found.points < fewestPoints) {
    return found;
  }
  found.error = std::sqrt(lines.proteinVariance + lines.shiftVariance / found.points);
  found.offset = robustMiddle(std::move(misses), lines.width);
  found.applies = std::fabs(found.offset) > model.fewestErrors * found.error;
  return found;
}

} // namespace

double robustMiddle(std::vector<double> values, double width) {
  if (values.empty()) {
    return none;
  }
  double middle = middleValue(values);
  for (int step = 0; step < mostSteps; ++step) {
    double sum = 0;
    double weights = 0;
    for (const double value : values) {
      const double distance = (value - middle) / (biweightReach * width);
      const double inside = std::max(0.0, 1 - distance * distance);
      weights += inside * inside;
      sum += inside * inside * value;
    }
    if (weights <= 0) {
      return middle;
    }
    const double before = middle;
    middle = sum / weights;
    if (std::fabs(middle - before) <= fineEnough * width) {
      break;
    }
  }
  return middle;
}

std::vector<ResidueShifts> residuesOf(const CITRANS& run) {
  std::map<int, ResidueShifts> byNumber;
  const GDB& table = run.shiftTable;
  const GDB::Column resid = table.column("RESID");
  const GDB::Column atom = table.column("ATOMNAME");
  const GDB::Column shift = table.column("SHIFT");
  for (std::size_t row = 0; row < table.rowCount(); ++row) {
    const int residue = parseInt(table.cell(row, resid));
    const double value = parseDouble(table.cell(row, shift));
    const auto name = run.sequence.find(residue);
    if (value < shift::missingFrom && (name == run.sequence.end() || !isLeftOut(name->second))) {
      set(byNumber.try_emplace(residue, ResidueShifts{none, none, none, none}).first->second,
          table.cell(row, atom), value);
    }
  }
  std::vector<ResidueShifts> residues;
  for (const auto& [number, shifts] : byNumber) {
    if (!std::isnan(shifts.ca) && !std::isnan(shifts.cb)) {
      residues.push_back(shifts);
    }
  }
  return residues;
}

Estimates estimate(const Model& model, const std::vector<ResidueShifts>& residues) {
  return {estimateNucleus(model, Nucleus::carbon, residues),
          estimateNucleus(model, Nucleus::alphaProton, residues),
          estimateNucleus(model, Nucleus::carbonyl, residues)};
}

} // namespace referencing
