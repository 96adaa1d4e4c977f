#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "app/settings.h"
#include "predict/prediction.h"
#include "shifts/shift_check.h"
#include "shifts/shift_values.h"
#include "structure/pdb.h"
#include "table/gdb.h"
#include "table/run_end.h"

/// One prediction run: its settings, the tables it reads, the per-residue data it derives and the
/// prediction itself.
///
/// Life of a run: construct, `setArgs`, `runPredict`. The members are defined in the folder that
/// owns them: options and texts in app/, shift preparation in shifts/, prediction in predict/.
/// Shifts are in ppm. Residue numbers are those of the input table; the preparation visits 1 to N,
/// N being the number of letters of the sequence.
///
/// Everything that a run finds stays in the object. What it prints goes to `out` and `errors`, and
/// files are written unless `writesFiles` is off, so that a caller can predict in its own process,
/// silently and as often as it likes:
///
///     CITRANS database;
///     database.keepSilent();
///     database.setArgs({{"tabDir", "tab"}});
///     database.loadDatabase();
///     CITRANS run = database; // a copy shares the text of the tables
///     run.inputTable.loadText(shifts);
///     run.predictInput();
///     for (const Prediction& proline : run.predictions) ...
///
/// What ends the program ends a run as a `RunEnd` with the same message and status: an input or a
/// file that is refused, the usage text, a check alone. Tables and structures may throw
/// std::out_of_range besides. One object is for one thread at a time.
class CITRANS : public Settings {
 public:
  using Options = std::map<std::string, std::string>;
  /// Names and secondary shifts of three consecutive residues as text, by keys such as
  /// "RESNAME_R1" or "CA_R3"; 24 entries.
  using Triplet = std::map<std::string, std::string>;
  using FloatByAtom = std::map<std::string, float, std::less<>>;
  /// A number for each of `atomNames`, in that order.
  using AtomValues = std::array<float, 6>;

  /// Takes the database directory from the environment and fills the accepted option names.
  CITRANS();
  /// Only stores the name of the input table.
  explicit CITRANS(std::string inputName);

  // --- app: options and texts ----------------------------------------------------------------

  /// Applies the options; an empty value counts as not given. "help" prints the usage text and
  /// throws RunEnd with status 0.
  void setArgs(const Options& options);
  /// Whether the command line may hold this option.
  bool acceptsOption(const std::string& name) const;
  /// Prints the banner to `errors`.
  void printInfo() const;
  /// Prints the usage text to `errors` and throws RunEnd with status 0.
  [[noreturn]] void printSyntax() const;
  /// From now on nothing is printed and no file written.
  void keepSilent();

  // --- predict: the run ----------------------------------------------------------------------

  /// The whole run: loads the tables, prepares the shifts, predicts every proline of the range,
  /// writes the summary and prints the listing.
  void runPredict();
  /// The same for an input table and a database that are loaded.
  void predictInput();

  // --- shifts: reference tables ----------------------------------------------------------------

  /// Loads the input table and the database, in place of what an earlier run has left. Throws
  /// RunEnd for a file that cannot be opened.
  void init();
  /// Loads the database alone.
  void loadDatabase();
  /// One-letter code of a three-letter name ("c" for "cys", "h" for "his"); "?" when unknown.
  std::string getOneAAName(const std::string& threeLetterName) const;
  /// Random-coil shift, ppm; `shift::missing` for a residue without a row, 0 for an empty cell.
  float getRC(std::string_view residue, std::string_view atom) const;
  /// Corrections of the random-coil shift for the residue itself, for the residue before and for
  /// the residue after it, ppm; 0 for a residue without a row or an empty cell.
  float getRCadj(std::string_view residue, std::string_view atom) const;
  float getPrevRCadj(std::string_view previousResidue, std::string_view atom) const;
  float getNextRCadj(std::string_view nextResidue, std::string_view atom) const;

  // --- shifts: secondary shifts and checks -------------------------------------------------

  /// Turns the input into secondary shifts, checks them, removes offsets when asked to and saves
  /// the table whose name ends in "AdjCS.tab". Throws RunEnd with status -1 (255 in the shell)
  /// for an input without sequence, columns or rows, and after saving when only a check was asked
  /// for.
  void getResInfo();

  /// The steps of `getResInfo` that make the secondary shifts, without messages or files: fills
  /// `shiftTable`, `missCount`, `adjustments` and `cgShifts` for the residues 1 to `residueCount`
  /// from `sequence`, `inputTable` and the reference tables.
  void fillShiftTable();
  /// Takes `offsets` off the secondary shifts and off the prolines' CG.
  void subtractOffsets();

  /// Bounds a secondary shift by the limits of its residue and atom. A missing shift stays; a
  /// residue without limits is bounded to 0. Adds an empty sequence entry for an unknown residue.
  float clipSShift(int residue, float secondaryShift, const std::string& atom);

  /// The table of secondary shifts as it is saved.
  std::string shiftTableText() const;

  /// Finds outlying secondary shifts and estimates referencing offsets: fills `shiftCheck` and
  /// `offsets`, then prints them; changes no shift.
  void checkCS();

  /// Straight line y = intercept + slope * x by least squares, in single precision.
  ///
  /// Kept: the point with index 0 enters the means of x and y but neither the sums of products nor
  /// the residuals, so the result depends on the order of the points.
  ///
  /// \param x,y  n values each, ppm
  /// \param slope,intercept,error  out: ppm per ppm, ppm, standard error of the mean residual, ppm
  /// \return 1 when fitted; 0 when x and y differ in length, the outputs then untouched
  int LinearLeastSquareFitting(const std::vector<float>& x, const std::vector<float>& y,
                               float& slope, float& intercept, float& error) const;
  /// Mean; 0 for no values.
  float getAverage(const std::vector<float>& values) const;
  /// Root of the sum of squares over (count - 1), about 0 and not about the mean; -0 for no
  /// values, infinite or not-a-number for one.
  float getSTDev(const std::vector<float>& values) const;

  // --- predict: statistics, triplets, likelihood -------------------------------------------

  /// Adds the rows of a shift statistics table to `proAvgCis` and its fellows.
  void getProCSValue(const std::string& fileName);
  /// Adds the rows of a neighbour statistics table to `proCisSeq` and `proTransSeq`.
  void getProSeqOccurence(const std::string& fileName);
  /// Names and (clipped) secondary shifts around a proline; an absent row gives the shift 0.
  Triplet getTriplet(int proline);
  /// Whether a triplet is predicted: two of its residues have at least three shifts, and neither
  /// neighbour lies beyond the chain.
  bool testTriplet(const Triplet& triplet);
  /// Likelihood of cis from a triplet and the proline's CG shift (`shift::missing` without one).
  CisLikelihood getLikelihood(const Triplet& triplet, float cgShift);

  /// printf of a number with a format letter out of "fFeEgG" ('f' for any other) and a precision
  /// of at most 99 (none when negative), into `buf`, which must have room. \return buf
  static char* ftoa(float value, char* buf, char format, int precision);
  /// Decimal text of a number, whatever the base. \return buf
  static char* itoa(int value, char* buf, int base);

  // --- tables ----------------------------------------------------------------------------------

  GDB inputTable;                                ///< observed shifts
  GDB randTable, adjTable, prevTable, nextTable; ///< ppm, by RESNAME and atom
  GDB limitsTable;                               ///< ppm, by RESNAME, columns such as CA_MIN
  GDB isoTable;                                  ///< ppm, by RESNAME, columns CA and CB
  std::map<std::string, FloatByAtom, std::less<>> isoAdj; ///< isotope corrections in use, ppm
  std::map<int, float> proAvgCis, proAvgTrans, proStdCis, proStdTrans; ///< ppm, by index 0 to 18
  /// Neighbour statistics by residue name and place, 1 before and 3 after the proline.
  std::map<std::string, std::map<int, float>, std::less<>> proCisSeq, proTransSeq;

  // --- what a run leaves ---------------------------------------------------------------------

  std::map<int, std::string> sequence; ///< one-letter names, from the header and the rows
  int residueCount = 0;                ///< N, the number of letters of the sequence header
  int firstInRange = 1;   ///< first residue used: the one asked for, limited to the rows
  int lastInRange = 9999; ///< last residue used, likewise
  std::vector<NameMismatch> nameMismatches;
  GDB shiftTable;               ///< secondary shifts, six rows a residue
  std::map<int, int> missCount; ///< atoms without an input row, 0 to 6
  /// Random coil and corrections, ppm, residue 1 first, in the order of `atomNames`.
  std::vector<AtomValues> adjustments;
  std::map<int, float> cgShifts; ///< observed CG, ppm, or shift::missing
  ShiftCheck shiftCheck;         ///< outliers and the estimates behind `offsets`
  FloatByAtom offsets;           ///< referencing offsets by CA, CB, HA, C, ppm
  /// The structure to compare with. It is read from the file `refName`, unless it is there under
  /// that name already.
  PDB reference;
  std::vector<Prediction> predictions; ///< by residue number
  GDB summary;                         ///< the same as the table that is written

 private:
  // app
  void findDatabase();
  void setFileNames(const Options& options);
  void setReferenceNames(const Options& options);
  void setSummaryName(const Options& options);
  void setTableNames(const Options& options);
  void setSwitches(const Options& options);

  // shifts: reference tables
  void forgetProtein();
  void reportReading(const char* what, const std::string& name) const;
  void loadTable(GDB& table, const char* what, const std::string& name) const;
  void loadIsotopeCorrections();

  // shifts: secondary shifts
  void startShiftTable();
  void requireInput() const;
  void reconcileResidueNames();
  void limitResidueRange();
  void addResidue(int residue);
  void addAtom(int residue, const std::string& atom, float adjustment);
  AtomValues adjustmentsOf(int residue);
  /// What a residue of one name adds to the adjustments, ppm, in the order of `atomNames`: its
  /// random coil value and own correction, and its effect as the residue before and after another.
  struct AdjustmentTerms {
    AtomValues randomCoil, own, previous, next;
  };
  const AdjustmentTerms& adjustmentTermsOf(const std::string& name);
  std::size_t findInputShift(std::string_view residueText, std::string_view atom) const;
  void setShift(std::size_t row, double observed, float adjustment);
  void setGlycineHa(std::size_t row, int residue, std::string_view residueText, float adjustment);
  double inputShift(std::string_view residueText, std::string_view atom, double without) const;
  const std::string& nameOf(int residue) const;
  const ShiftLimits& shiftLimits(const std::string& name, const std::string& atom);
  void recordOffsets();
  void applyOffsets();
  void applyOffset(std::size_t row);
  void reportOffset(const char* key, const char* nuclei);
  GDB shiftTableHeader() const;
  void saveShiftTable() const;
  void printNameMismatches() const;
  void printShiftCheck() const;

  // predict
  void predictProlines();
  std::vector<int> prolinesInRange() const;
  Prediction predictProline(const Triplet& triplet, int proline);
  void setUpSummary();
  void addToSummary(const Prediction& prediction);
  void printListing() const;

  int lowestResidue = 0;
  int highestResidue = 0;
  /// By residue name, so that each name is looked up once and not for each of its residues.
  std::unordered_map<std::string, AdjustmentTerms> adjustmentTerms;
  /// By residue name and atom, likewise; 0 where the database has none.
  std::unordered_map<std::string, ShiftLimits> limitsByName;
  mutable char textBuffer[32] = {};
};
