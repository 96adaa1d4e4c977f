#pragma once

#include <map>
#include <string>
#include <string_view>

#include "structure/atom_list.h"
#include "structure/cordata.h"

/// One protein structure, the first chain of the first model of a PDB file, and its geometry.
///
/// Residue numbers are those of the file. Conformers are counted from 1; a file fills only 1.
/// Looking up an atom that is not there gives a default record, and indexing `resNames` or
/// `resCodes` by a residue that is not there adds an empty entry; no look-up fails.
class PDB {
 public:
  /// "No angle": an atom is missing. Degrees beyond any real angle.
  static constexpr float noAngle = 9999.0F;
  /// An atom line must reach this column (0-based start of the temperature factor).
  static constexpr std::size_t shortestAtomLine = 60;

  /// An empty structure: `firstResID` 9999, `lastResID` -9999.
  PDB();
  /// Reads the file at once.
  explicit PDB(const std::string& path);
  ~PDB();

  // --- reading -----------------------------------------------------------------------------

  /// Reads the ATOM lines up to the first line that begins with TER or END, replacing what was
  /// read before (`firstResID` and `lastResID` keep widening), then marks disulfide-bonded
  /// cysteines. Of atoms with one residue number and name the last stays.
  ///
  /// Ends the run with status 0 and one line on standard error when the file cannot be opened.
  /// Throws std::out_of_range for an ATOM line shorter than 60 characters.
  void loadPDB(const std::string& path);

  /// Fills `atom` from one ATOM line. Text that is no number reads as 0. Throws as `loadPDB`.
  void loadPDB_Entry(const std::string& line, CORdata& atom);

  /// The columns of field 1 to 11 (record, serial, atom, residue, chain, residue number, x, y, z,
  /// occupancy, temperature factor); empty for another number. Throws std::out_of_range when the
  /// line ends before the field begins.
  std::string getField(const std::string& line, int field);

  // --- look-ups ----------------------------------------------------------------------------

  /// A copy of an atom; a default record when there is none.
  CORdata getEntry(int conformer, int residue, const std::string& atomName);
  CORdata getEntry(int conformer, int serial);

  /// One-letter code of a three-letter name ("c" for "cys", "h" for "his"); "X" when unknown.
  std::string getOneAAName(const std::string& threeLetterName);
  /// Three-letter name of a code; "XXX" when unknown, also for 'h'.
  std::string getThreeAAName(char oneLetterCode);

  /// Whether a cysteine's SG lies within 2.5 Angstrom of another's, more than three residues away.
  ///
  /// Kept: conformer 1 is searched whatever `conformer` says, and a cysteine without SG counts as
  /// having it at the origin. False for other residues.
  bool isSSBonded(int conformer, int residue);

  // --- geometry: vectors in Angstrom, angles in degrees unless said ------------------------
  // The first argument is changed in place where the result is a vector.

  void Vec3Zero(float v[3]);
  void Vec3Copy(float dst[3], const float src[3]);
  void Vec3Scale(float v[3], float s);
  void Vec3Add(float a[3], const float b[3]);
  void Vec3Sub(float a[3], const float b[3]);
  float Vec3Scalar(const float a[3], const float b[3]); ///< dot product
  void Vec3Cross(float a[3], const float b[3]);
  void Mat3VecMult(float v[3], const float m[3][3]); ///< row vector times matrix
  float Vec3Abs(const float v[3]);                   ///< length
  float Vec3DiffAbs(const float a[3], const float b[3]);
  void Vec3Norm(float v[3]); ///< a zero vector becomes not-a-number
  float sgn(float x);        ///< +1 for x >= 0, else -1

  float getDist(const float a[3], const float b[3]);
  float getDist(CORdata a, CORdata b);

  /// Angle at b, in [0, 180]; not-a-number when two atoms coincide. Missing atoms are not noticed.
  float getBondAngle(CORdata a, CORdata b, CORdata c);

  /// Inverse cosine in radians; x beyond [-1, 1] counts as the nearer end.
  float arccos_(float x);

  /// Torsion angle a-b-c-d about the bond b-c: 0 eclipsed (cis), 180 anti (trans), positive when
  /// the far bond is turned clockwise as seen from b to c.
  ///
  /// \return degrees, in [-180, 180]; +180, never -180, for a planar trans arrangement; `noAngle`
  ///         when an `atomName` is empty; not-a-number when three consecutive atoms lie on a line
  float getDihedralAngle(const CORdata& a, const CORdata& b, const CORdata& c, const CORdata& d);

  /// Backbone torsions of a residue, in degrees, or `noAngle`. Neighbours are the residues with
  /// the next lower and higher number, whatever stands between them.
  float getOmega(int conformer, int residue); ///< CA(i-1) C(i-1) N(i) CA(i)
  float getPhi(int conformer, int residue);   ///< C(i-1) N(i) CA(i) C(i)
  float getPsi(int conformer, int residue);   ///< N(i) CA(i) C(i) N(i+1)

  /// Side-chain torsions, in degrees, or `noAngle`, which glycine and alanine always give. Kept:
  /// chi1 of valine ends at CG2, and chi2 of valine, threonine, serine and cysteine at a hydrogen.
  float getChi1(int conformer, int residue);
  float getChi2(int conformer, int residue);

  /// White space made single blanks, none at the ends.
  std::string simplifyWhiteSpace(const std::string& text);
  /// True for codes 9 to 13 and the blank.
  bool isSpace(char c);

  // --- content -----------------------------------------------------------------------------

  std::string fileName;                ///< the path last read
  std::map<int, std::string> resNames; ///< as read; "cys" for a disulfide-bonded cysteine
  std::map<int, std::string> resCodes; ///< one letter; "c" for a disulfide-bonded cysteine
  int firstResID;                      ///< smallest residue number read; 9999 before any
  int lastResID;                       ///< largest residue number read; -9999 before any

 private:
  void clear();
  void readAtoms(std::string_view text);
  void storeAtom(const CORdata& atom, const CORdata& before);
  void markDisulfides();
  CORdata atom(int conformer, long long residue, std::string_view atomName) const;

  AtomList atoms_; ///< of conformer 1

  // For hydrogen-bond and ring-shift analyses, which nothing fills yet; reading empties them.
  std::map<int, int> donors_;
  std::map<int, int> acceptors_;
  std::map<int, std::map<std::string, float>> ringShifts_;
};
