#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "structure/cordata.h"

/// One protein structure, the first chain of the first model of a PDB file, and its geometry.
///
/// Residue numbers are those of the file. Conformers are counted from 1; a file fills only 1.
/// Looking up an atom that is not there gives a default record, and indexing `resNames` or
/// `resCodes` by a residue that is not there adds an empty entry; no look-up fails. Copies are
/// independent of each other.
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

  // --- reading -----------------------------------------------------------------------------

  /// Reads the ATOM lines up to the first line that begins with TER or END, replacing what was
  /// read before (`firstResID` and `lastResID` keep widening), then marks disulfide-bonded
  /// cysteines. Of atoms with one residue number and name the last stays.
  ///
  /// Throws RunEnd, with status 0 and its line, when the file cannot be opened, and
  /// std::out_of_range for an ATOM line shorter than 60 characters.
  void loadPDB(const std::string& path);

  /// The same for the text of a file; `name` becomes `fileName`.
  void loadText(std::string_view text, const std::string& name);

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
  // The first argument is changed in place where the result is a vector. It may be the second one,
  // or a row of it.

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

  std::string fileName;                ///< the path or name last read
  std::map<int, std::string> resNames; ///< as read; "cys" for a disulfide-bonded cysteine
  std::map<int, std::string> resCodes; ///< one letter; "c" for a disulfide-bonded cysteine
  int firstResID;                      ///< smallest residue number read; 9999 before any
  int lastResID;                       ///< largest residue number read; -9999 before any

 private:
  /// Where the SG of a cysteine is; at the origin when it has none.
  struct Sulfur {
    int residue;
    float place[3];
  };

  void clear();
  void addAtom(const CORdata& added);
  const CORdata& atom(int conformer, long long residue, std::string_view atomName) const;
  Sulfur sulfurOf(int residue) const;
  std::vector<Sulfur> sulfurs() const;
  bool hasPartner(const Sulfur& sulfur, const std::vector<Sulfur>& others);
  void markDisulfides();

  /// The atoms of conformer 1, in the order of the file.
  std::vector<CORdata> atoms_;
  /// Where among them runs of atoms with one residue number begin. The numbers are wider than
  /// `int`, so that every residue has neighbours.
  std::unordered_map<long long, std::vector<std::size_t>> runsOfResidue_;
  /// Where among them the last of a serial number is; empty until the first question by serial.
  std::unordered_map<int, std::size_t> atomOfSerial_;

  // For hydrogen-bond and ring-shift analyses, which nothing fills yet; reading empties them.
  std::map<int, int> donors_;
  std::map<int, int> acceptors_;
  std::map<int, std::map<std::string, float>> ringShifts_;
};
