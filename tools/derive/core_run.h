#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "app/citrans.h"
#include "shifts/referencing.h"
#include "tools/derive/adjustments.h"
#include "tools/derive/tables.h"
#include "tools/derive/training.h"

/// Training proteins through the code of the program: secondary shifts, clipping, triplets,
/// offsets and the likelihood are its own.
namespace derive {

/// Referencing offsets to take off the observed shifts, ppm.
struct ShiftCorrection {
  double carbon = 0; ///< CA, CB and CG
  double ha = 0;
  double carbonyl = 0;
};

/// What is done to the observed shifts of a protein, or asked of the program, in an experiment.
struct Treatment {
  double carbonError = 0;  ///< added to CA, CB, C' and CG, ppm
  bool deuterated = false; ///< HA gone, CA, CB and CG of proline moved by the isotope shifts
  bool correctIsotope = false;
  bool correctOffsets = false;
  ShiftCorrection correction; ///< taken off after all that
  bool hideCg = false;
  std::array<bool, atomCount> hidden{}; ///< atoms taken from all residues
};

/// The likelihood's input and output for one proline.
struct Scored {
  bool predicted = false;                     ///< whether the program gives it a row
  std::array<float, statisticCount> shifts{}; ///< ppm; not-a-number where skipped
  std::array<int, 3> counts{};                ///< CS_CNT1 to CS_CNT3
  float cis = 0;                              ///< P_CIS
  float normalised = 0;                       ///< P_CIS_NORM
};

/// Secondary shifts of one protein by residue (from index 0) and atom, ppm; not-a-number when
/// there is none.
using SecondaryShifts = std::vector<std::array<float, atomCount>>;

class CoreRun {
 public:
  /// Loads the tables of a folder; every file must be there.
  explicit CoreRun(const std::string& tableFolder);

  /// Makes the secondary shifts of a protein, and corrects offsets when asked to.
  void prepare(const Protein& protein, const Treatment& treatment = {});

  SecondaryShifts secondaryShifts() const;
  OffsetEstimates offsetEstimates() const;
  /// The triplet of a proline through the likelihood, whether the program predicts it or not.
  /// \param hideCg  score it as if it had no CG
  Scored score(int residue, bool hideCg = false);

  CITRANS& program() { return run_; }
  const CITRANS& program() const { return run_; }

 private:
  void fillInput(const Protein& protein, const Treatment& treatment);
  void addRow(int residue, const char* atom, double shift);
  void recordOffsets();

  CITRANS run_;
};

/// A folder of its own under the system's temporary folder, with files; gone with the object.
class ScratchFolder {
 public:
  explicit ScratchFolder(const std::map<std::string, std::string>& files);
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

} // namespace derive
