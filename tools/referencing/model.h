#pragma once

#include <array>
#include <string>

#include "table/gdb.h"

/// The companions' estimate of the referencing.
///
/// Secondary shifts of CA, HA and C' follow the secondary structure, and so does the difference of
/// those of CA and CB, which an error in the referencing of the carbons leaves alone. Over all
/// well-referenced proteins each of the three lies about two straight lines of that difference,
/// one below 0 and one from 0 on. What a protein's shifts miss these lines by is the error of its
/// referencing, CB sharing that of CA. The idea is that of the estimate that the program prints;
/// here the lines are the same for all proteins, slopes included, single wild shifts do not count,
/// and the error is what such estimates miss by.
namespace referencing {

/// Nuclei that are referenced apart, in the order of all arrays.
enum class Nucleus : std::size_t {
  carbon,      ///< CA, CB and all other aliphatic carbons
  alphaProton, ///< HA
  carbonyl     ///< C'
};
constexpr std::size_t nucleusCount = 3;
/// "CA/CB", "HA", "C'": the words of outputs.
const char* describe(Nucleus nucleus);

/// One straight line of the well-referenced proteins: ppm at a difference of 0, ppm per ppm.
struct Line {
  double intercept = 0, slope = 0;
};

/// What is known of one nucleus.
struct NucleusModel {
  Line negative, positive;    ///< by the sign of CA minus CB, 0 being positive
  double width = 1;           ///< ppm, of single shifts about the lines, from the median deviation
  double proteinVariance = 0; ///< ppm^2, of proteins about the lines, however many their shifts
  double shiftVariance = 0;   ///< ppm^2, adds to it divided by the number of shifts

  double expected(double difference) const {
    const Line& line = difference < 0 ? negative : positive;
    return line.intercept + line.slope * difference;
  }
};

/// All constants of the estimate.
struct Model {
  std::array<NucleusModel, nucleusCount> nuclei;
  /// A correction is worth it from so many errors on.
  double fewestErrors = 0;

  NucleusModel& operator[](Nucleus nucleus) { return nuclei[static_cast<std::size_t>(nucleus)]; }
  const NucleusModel& operator[](Nucleus nucleus) const {
    return nuclei[static_cast<std::size_t>(nucleus)];
  }
};

/// The rows of reref.tab: NUCLEUS (CA, HA or C), NEG_AT_0, NEG_SLOPE, POS_AT_0, POS_SLOPE, WIDTH,
/// VAR_PROTEIN, VAR_SHIFT, ERRORS (the same in all rows).
///
/// Throws ToolError(badData) for a row that is missing, a cell that is no number, a width that is
/// not above 0 and a negative variance.
Model readModel(const GDB& table);

/// Reads reref.tab of a folder of tables. Throws ToolError(inputMissing) when it is not there.
Model loadModel(const std::string& tabFolder);

} // namespace referencing
