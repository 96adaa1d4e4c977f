#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <sstream>
#include <stdexcept>

#include "structure/pdb.h"
#include "tests/unit/support.h"

namespace {

/// An ATOM line of 60 characters, the shortest there may be. The name fills columns 13 to 16.
std::string atomLine(int serial, const char* name, const char* residue, int number, double x = 0,
                     double y = 0, double z = 0, char insertion = ' ') {
  char line[96];
  std::snprintf(line, sizeof line, "ATOM  %5d %-4s %3s A%4d%c   %8.3f%8.3f%8.3f  1.00\n", serial,
                name, residue, number, insertion, x, y, z);
  return line;
}

PDB structureOf(const std::string& text) {
  PDB pdb;
  pdb.loadText(text, "text");
  return pdb;
}

/// Number and code of each residue, and the first and last number ever read.
std::string contentOf(const PDB& pdb) {
  std::string content;
  for (const auto& [residue, code] : pdb.resCodes) {
    content += std::to_string(residue) + code + pdb.resNames.at(residue) + " ";
  }
  return content + std::to_string(pdb.firstResID) + ".." + std::to_string(pdb.lastResID);
}

/// The name under which a line's atom is stored.
std::string storedName(const char* name) {
  PDB pdb;
  CORdata atom;
  pdb.loadPDB_Entry(atomLine(1, name, "ALA", 1), atom);
  return atom.atomName;
}

CORdata atomAt(double x, double y, double z) {
  CORdata atom;
  atom.atomName = "X";
  atom.x = atom.coor[0] = static_cast<float>(x);
  atom.y = atom.coor[1] = static_cast<float>(y);
  atom.z = atom.coor[2] = static_cast<float>(z);
  return atom;
}

/// Turned by 0.7 rad about (1,2,3), then moved: a rigid motion, which changes no angle.
CORdata moved(const CORdata& atom) {
  const double axis[3] = {1 / std::sqrt(14.0), 2 / std::sqrt(14.0), 3 / std::sqrt(14.0)};
  const double p[3] = {static_cast<double>(atom.x), static_cast<double>(atom.y),
                       static_cast<double>(atom.z)};
  const double along = axis[0] * p[0] + axis[1] * p[1] + axis[2] * p[2];
  double turned[3];
  for (int i = 0; i < 3; ++i) {
    const int j = (i + 1) % 3;
    const int k = (i + 2) % 3;
    turned[i] = p[i] * std::cos(0.7) + (axis[j] * p[k] - axis[k] * p[j]) * std::sin(0.7) +
                axis[i] * along * (1 - std::cos(0.7));
  }
  return atomAt(turned[0] + 5, turned[1] - 8, turned[2] + 13);
}

} // namespace

TEST(Structure, ATorsionIsTheAngleItWasBuiltWith) {
  // b-c lies on z, a on the positive x side; looking from b to c, up z, clockwise is from x to -y
  // for the eye and the far atom at (cos t, sin t) is turned by +t as seen from the near end.
  PDB pdb;
  for (const double degrees :
       {-179.0, -150.0, -90.0, -60.0, -1.0, 0.0, 1.0, 45.0, 60.0, 120.0, 179.0, 180.0}) {
    const double t = degrees / 57.29577951308232;
    const CORdata atoms[4] = {atomAt(1.5, 0, -0.5), atomAt(0, 0, 0), atomAt(0, 0, 1.3),
                              atomAt(1.1 * std::cos(t), 1.1 * std::sin(t), 2)};
    const auto torsion = [&](const auto& change) {
      return static_cast<double>(pdb.getDihedralAngle(change(atoms[0]), change(atoms[1]),
                                                      change(atoms[2]), change(atoms[3])));
    };
    const auto same = [](const CORdata& atom) { return atom; };
    const auto mirrored = [](const CORdata& atom) {
      return atomAt(static_cast<double>(atom.x), -static_cast<double>(atom.y),
                    static_cast<double>(atom.z));
    };
    // The arc cosine of a single-precision cosine is good to 0.03 degrees at its flat ends.
    const double tolerance = std::fabs(std::fabs(degrees) - 90) > 85 ? 0.05 : 0.001;
    const auto difference = [](double one, double other) {
      return std::fabs(std::remainder(one - other, 360.0));
    };
    EXPECT_LT(difference(torsion(same), degrees), tolerance) << degrees;
    EXPECT_LT(difference(torsion(moved), degrees), tolerance) << degrees;
    EXPECT_LT(difference(torsion(mirrored), -degrees), tolerance) << degrees;
  }
}

TEST(Structure, PlanarTorsionsAreZeroAndPlus180) {
  PDB pdb;
  const CORdata a = atomAt(1, 0, 0);
  const CORdata b = atomAt(0, 0, 0);
  const CORdata c = atomAt(0, 1, 0);
  EXPECT_EQ(pdb.getDihedralAngle(a, b, c, atomAt(1, 1, 0)), 0.0F);
  EXPECT_FLOAT_EQ(pdb.getDihedralAngle(a, b, c, atomAt(-1, 1, 0)), 180.0F);
  EXPECT_EQ(pdb.getDihedralAngle(a, b, CORdata(), a), PDB::noAngle);
  EXPECT_TRUE(std::isnan(pdb.getDihedralAngle(a, b, b, c)));
  EXPECT_FLOAT_EQ(pdb.getBondAngle(a, b, c), 90.0F);
  EXPECT_FLOAT_EQ(pdb.getBondAngle(a, b, atomAt(-2, 0, 0)), 180.0F);
  EXPECT_EQ(pdb.getDist(CORdata(), CORdata()), 0.0F);
  EXPECT_EQ(pdb.getDist(atomAt(1, 2, 3), atomAt(4, 6, 3)), 5.0F);
  EXPECT_EQ(pdb.arccos_(1.0000001F), 0.0F);
  EXPECT_FLOAT_EQ(pdb.arccos_(-1.2F), 3.14159265F);
  for (const float x : {-0.9F, -0.5F, -0.1F, 0.0F, 0.49F, 0.5F, 0.9F}) {
    EXPECT_NEAR(pdb.arccos_(x), std::acos(x), 1e-6F) << x;
  }
}

TEST(Structure, VectorsAreChangedInPlaceAlsoByThemselves) {
  PDB pdb;
  const struct {
    const char* what;
    std::function<void(float (*)[3])> change; // of the rows (1,2,3), (4,5,6), (2,-3,6)
    std::vector<float> first;
  } rows[] = {
      {"zero", [&](auto m) { pdb.Vec3Zero(m[0]); }, {0, 0, 0}},
      {"copy", [&](auto m) { pdb.Vec3Copy(m[0], m[1]); }, {4, 5, 6}},
      {"scaled", [&](auto m) { pdb.Vec3Scale(m[0], -2); }, {-2, -4, -6}},
      {"sum", [&](auto m) { pdb.Vec3Add(m[0], m[1]); }, {5, 7, 9}},
      {"sum with itself", [&](auto m) { pdb.Vec3Add(m[0], m[0]); }, {2, 4, 6}},
      {"difference", [&](auto m) { pdb.Vec3Sub(m[0], m[2]); }, {-1, 5, -3}},
      {"difference from itself", [&](auto m) { pdb.Vec3Sub(m[0], m[0]); }, {0, 0, 0}},
      {"cross product", [&](auto m) { pdb.Vec3Cross(m[0], m[1]); }, {-3, 6, -3}},
      {"cross product with itself", [&](auto m) { pdb.Vec3Cross(m[0], m[0]); }, {0, 0, 0}},
      // As a row: 1 (1,2,3) + 2 (4,5,6) + 3 (2,-3,6).
      {"times a matrix that holds it", [&](auto m) { pdb.Mat3VecMult(m[0], m); }, {15, 3, 33}},
      {"norm",
       [&](auto m) { pdb.Vec3Norm(m[2]), pdb.Vec3Copy(m[0], m[2]); },
       {2.F / 7, -3.F / 7, 6.F / 7}},
  };
  for (const auto& row : rows) {
    float m[3][3] = {{1, 2, 3}, {4, 5, 6}, {2, -3, 6}};
    row.change(m);
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_FLOAT_EQ(m[0][i], row.first[i]) << row.what << ", " << i;
    }
  }
  float zero[3] = {0, 0, 0};
  const float v[3] = {2, -3, 6};
  const float w[3] = {4, 5, 6};
  EXPECT_EQ(pdb.Vec3Scalar(v, w), 29.0F);
  EXPECT_EQ(pdb.Vec3Abs(v), 7.0F);
  EXPECT_EQ(pdb.Vec3DiffAbs(v, v), 0.0F);
  EXPECT_EQ(pdb.sgn(0.0F), 1.0F);
  pdb.Vec3Norm(zero);
  EXPECT_TRUE(std::isnan(zero[0]));
}

TEST(Structure, ReadsTheFirstChainOfTheFirstModel) {
  PDB pdb(writeFile("chains.pdb",
                    "HEADER\n\nMODEL        1\n" + atomLine(1, " N", "ALA", 5) +
                        atomLine(2, " CA", "ALA", 5, 1) + "HETATM    3 CA    CA A   9\n" +
                        atomLine(4, " CA", "ALA", 5, 2, -3.25, 1e4) + atomLine(5, " N", "MSE", -2) +
                        "ENDMDL\n" + atomLine(6, " N", "GLY", 7)));
  EXPECT_EQ(pdb.firstResID, -2);
  EXPECT_EQ(pdb.lastResID, 5);
  EXPECT_EQ(pdb.resCodes[5] + pdb.resCodes[-2] + pdb.resCodes[9], "AX");
  const CORdata ca = pdb.getEntry(1, 5, "CA");
  EXPECT_EQ(ca.atomNumber, 4) << "of two atoms with one name the last stays";
  EXPECT_EQ(ca.chainID, "A");
  EXPECT_EQ(std::vector<float>({ca.x, ca.y, ca.z, ca.coor[1]}),
            (std::vector<float>{2, -3.25F, 10000, -3.25F}));
  EXPECT_EQ(pdb.getEntry(1, 2).x, 1.0F) << "both are kept by serial number";
  EXPECT_EQ(pdb.getEntry(1, 6).atomName, "");
  EXPECT_EQ(pdb.getOmega(1, 5), PDB::noAngle);
  EXPECT_EQ(PDB().firstResID, 9999);
  const Outcome missing = outcomeOf([] { PDB("no/such.pdb"); });
  EXPECT_EQ(missing.status, 0);
  EXPECT_EQ(missing.err, "\tCan't open file no/such.pdb for reading\n");
  const std::string line = atomLine(1, " N", "ALA", 5);
  EXPECT_EQ(contentOf(structureOf(line.substr(0, 60))), "5AALA 5..5");
  EXPECT_THROW(structureOf(line.substr(0, 59)), std::out_of_range);
}

TEST(Structure, ASecondReadingKeepsOnlyTheReachOfTheFirst) {
  PDB pdb(writeFile("first.pdb", atomLine(1, " SG", "CYS", 5) + atomLine(2, " SG", "CYS", 12)));
  EXPECT_EQ(contentOf(pdb), "5ccys 12ccys 5..12");
  EXPECT_EQ(pdb.getEntry(1, 2).resNumber, 12);
  PDB copy = pdb;
  pdb.loadPDB(writeFile("second.pdb", atomLine(7, " CA", "GLY", 8) + atomLine(8, " N", "CYS", 20)));
  EXPECT_EQ(contentOf(pdb), "8GGLY 20CCYS 5..20");
  EXPECT_EQ(pdb.fileName, scratchPath("second.pdb"));
  EXPECT_EQ(pdb.resNames.size(), 2U);
  EXPECT_EQ(pdb.getEntry(1, 5, "CA").atomName + pdb.getEntry(1, 2).atomName, "");
  EXPECT_EQ(pdb.getEntry(1, 8, "CA").atomNumber, 7);
  EXPECT_EQ(pdb.getEntry(1, 8).resNumber, 20);
  pdb.loadText("", "nothing");
  EXPECT_EQ(contentOf(pdb) + pdb.fileName, "5..20nothing");
  const PDB moved = std::move(copy);
  PDB again = moved;
  EXPECT_EQ(contentOf(again), "5ccys 12ccys 5..12") << "a copy is not touched";
  EXPECT_EQ(again.getEntry(1, 12, "SG").atomNumber, 2);
  EXPECT_EQ(again.getEntry(1, 2).resNumber, 12);
}

TEST(Structure, InsertedResiduesShareTheNumber) {
  PDB pdb = structureOf(
      atomLine(1, " CA", "ALA", 52, 1) + atomLine(2, " CB", "ALA", 52, 2) +
      atomLine(3, " CA", "GLY", 52, 3, 0, 0, 'A') + atomLine(4, " CA", "SER", 53) +
      atomLine(5, " CA", "VAL", 53, 0, 0, 0, 'A') + atomLine(6, " N", "THR", 52, 5, 0, 0, 'B'));
  EXPECT_EQ(contentOf(pdb), "52TTHR 53VVAL 52..53");
  EXPECT_EQ(pdb.getEntry(1, 52, "CA").x, 3.0F) << "the later line";
  EXPECT_EQ(pdb.getEntry(1, 52, "CB").x, 2.0F) << "which only the first has";
  EXPECT_EQ(pdb.getEntry(1, 52, "N").x, 5.0F) << "behind another residue";
  EXPECT_EQ(pdb.getEntry(1, 1).x, 1.0F) << "by serial number";
  EXPECT_EQ(pdb.getEntry(2, 1).atomName + pdb.getEntry(2, 52, "CA").atomName, "");
}

TEST(Structure, FieldsAreFixedColumns) {
  PDB pdb;
  std::string line =
      "ATOM   1234 1HG2AVAL B -12A      1.500  -2.250 100.125  0.50 23.75           H";
  const char* const fields[] = {"",     "ATOM  ",   " 1234",    " 1HG2",    "VAL ",   "B",
                                " -12", "   1.500", "  -2.250", " 100.125", "  0.50", " 23.75"};
  for (int field = 1; field <= 11; ++field) {
    EXPECT_EQ(pdb.getField(line, field), fields[field]) << field;
  }
  EXPECT_EQ(pdb.getField(line, 0) + pdb.getField(line, 12), "");
  EXPECT_THROW(pdb.getField("ATOM", 2), std::out_of_range);
  CORdata atom;
  pdb.loadPDB_Entry(line, atom);
  EXPECT_EQ(atom.atomName + " " + atom.resName + " " + atom.chainID, "HG21 VAL B");
  EXPECT_EQ(std::vector<float>({atom.x, atom.coor[1], atom.z, atom.bFactor}),
            (std::vector<float>{1.5F, -2.25F, 100.125F, 23.75F}));
  EXPECT_EQ(atom.resNumber, -12);
  line[20] = '+';
  pdb.loadPDB_Entry(line, atom);
  EXPECT_EQ(atom.resName, "VAL") << "three of the four columns";
}

TEST(Structure, NamesAreNormalised) {
  const char* const atoms[][2] = {{" H", "HN"},     {"1HG1", "HG11"}, {" 2HB", "HB2"},
                                  {"3HD2", "HD23"}, {"HG11", "HG11"}, {"HH21", "HH21"},
                                  {" 4X", "4X"},    {"", ""}};
  for (const auto& atom : atoms) {
    EXPECT_EQ(storedName(atom[0]), atom[1]) << atom[0];
  }
  PDB pdb;
  for (const char* const code : {"ALA A", "CYS C", "cys c", "HIS H", "TRP W"}) {
    EXPECT_EQ(pdb.getOneAAName(std::string(code, 3)), code + 4);
    EXPECT_EQ(pdb.getThreeAAName(code[4]), std::string(code, 3));
  }
  EXPECT_EQ(pdb.getOneAAName("HIS+") + pdb.getOneAAName("his") + pdb.getOneAAName("Ala"), "HhX");
  EXPECT_EQ(pdb.getThreeAAName('h'), "XXX") << "kept: no way back";
}

TEST(Structure, DisulfidesJoinSulfursMoreThanThreeResiduesApart) {
  const auto sulfur = [](int residue, double x) { return atomLine(1, " SG", "CYS", residue, x); };
  const auto bare = [](int residue) { return atomLine(1, " CA", "CYS", residue, 77); };
  const struct {
    const char* what;
    std::string text;
    const char* content;
  } rows[] = {
      {"three apart", sulfur(10, 50) + sulfur(13, 52), "10CCYS 13CCYS 10..13"},
      {"four apart", sulfur(10, 50) + sulfur(14, 52), "10ccys 14ccys 10..14"},
      {"at the limit", sulfur(10, 50) + sulfur(14, 52.5), "10ccys 14ccys 10..14"},
      {"beyond the limit", sulfur(10, 50) + sulfur(14, 52.501), "10CCYS 14CCYS 10..14"},
      {"three in a row", sulfur(1, 9) + sulfur(6, 11) + sulfur(11, 13), "1ccys 6ccys 11ccys 1..11"},
      {"named as bonded", atomLine(1, " SG", "cys", 1, 9) + sulfur(6, 11), "1ccys 6ccys 1..6"},
      {"kept: missing sulfurs lie at the origin", bare(10) + bare(14), "10ccys 14ccys 10..14"},
      {"one missing, one near the origin", bare(10) + sulfur(14, 2), "10ccys 14ccys 10..14"},
      {"one missing, one elsewhere", bare(10) + sulfur(14, 3), "10CCYS 14CCYS 10..14"},
      {"both missing, three apart", bare(10) + bare(13), "10CCYS 13CCYS 10..13"},
      {"no cysteine", sulfur(10, 1) + atomLine(2, " SG", "SER", 14, 1), "10CCYS 14SSER 10..14"},
  };
  for (const auto& row : rows) {
    PDB pdb = structureOf(row.text);
    EXPECT_EQ(contentOf(pdb), row.content) << row.what;
    const std::map<int, std::string> codes = pdb.resCodes;
    for (const auto& [residue, code] : codes) {
      EXPECT_EQ(pdb.isSSBonded(2, residue), code == "c") << row.what << ", " << residue;
    }
  }
}

TEST(Structure, BackboneTorsionsTakeTheirAtomsFromTheNeighbours) {
  // Bonds along the axes of space, but the last, which halves two of them.
  PDB pdb =
      structureOf(atomLine(1, " C", "ALA", 1, 1, 0, 0) + atomLine(2, " N", "ALA", 2, 0, 0, 0) +
                  atomLine(3, " CA", "ALA", 2, 0, 0, 1) + atomLine(4, " C", "ALA", 2, 0, 1, 1) +
                  atomLine(5, " N", "PRO", 3, 1, 1, 1) + atomLine(6, " CA", "PRO", 3, 1, 2, 2));
  const int least = std::numeric_limits<int>::min();
  const int largest = std::numeric_limits<int>::max();
  const struct {
    float (PDB::*torsion)(int, int);
    int residue;
    float angle;
  } rows[] = {
      {&PDB::getPhi, 2, 90},           {&PDB::getPhi, 1, PDB::noAngle},
      {&PDB::getPhi, 3, PDB::noAngle}, {&PDB::getPhi, least, PDB::noAngle},
      {&PDB::getPsi, 2, -90},          {&PDB::getPsi, 1, PDB::noAngle},
      {&PDB::getPsi, 3, PDB::noAngle}, {&PDB::getPsi, largest, PDB::noAngle},
      {&PDB::getOmega, 3, -135},       {&PDB::getOmega, 2, PDB::noAngle},
  };
  for (const auto& row : rows) {
    EXPECT_FLOAT_EQ((pdb.*row.torsion)(1, row.residue), row.angle) << &row - rows;
    EXPECT_EQ((pdb.*row.torsion)(2, row.residue), PDB::noAngle) << &row - rows;
  }
}

TEST(Structure, SideChainTorsionsEndAtTheResiduesOwnAtoms) {
  // Four atoms at right angles, N to the end of chi1 or CA to that of chi2: 90 degrees.
  const auto chi = [](const std::string& residue, const std::array<const char*, 4>& atoms) {
    const char* const name = residue.c_str();
    return structureOf(atomLine(1, atoms[0], name, 1, 1, 0, 0) + atomLine(2, atoms[1], name, 1) +
                       atomLine(3, atoms[2], name, 1, 0, 0, 1) +
                       atomLine(4, atoms[3], name, 1, 0, 1, 1));
  };
  const struct {
    const char* residues;
    const char* chi1End;
    const char* chi2Third;
    const char* chi2End;
  } rows[] = {{"VAL", "CG2", "CG1", "HG11"},
              {"THR", "OG1", "CG2", "HG21"},
              {"SER", "OG", "OG", "HG"},
              {"CYS cys", "SG", "SG", "HG"},
              {"ILE", "CG1", "CG1", "CD1"},
              {"ASN ASP", "CG", "CG", "OD1"},
              {"HIS", "CG", "CG", "ND1"},
              {"MET", "CG", "CG", "SD"},
              {"LEU PHE TYR TRP", "CG", "CG", "CD1"},
              {"LYS ARG GLU GLN PRO MSE", "CG", "CG", "CD"}};
  for (const auto& row : rows) {
    std::istringstream residues(row.residues);
    for (std::string residue; residues >> residue;) {
      EXPECT_FLOAT_EQ(chi(residue, {"N", "CA", "CB", row.chi1End}).getChi1(1, 1), 90.0F) << residue;
      EXPECT_FLOAT_EQ(chi(residue, {"CA", "CB", row.chi2Third, row.chi2End}).getChi2(1, 1), 90.0F)
          << residue;
    }
  }
  EXPECT_EQ(chi("VAL", {"N", "CA", "CB", "CG1"}).getChi1(1, 1), PDB::noAngle);
  EXPECT_EQ(chi("VAL", {"CA", "CB", "CG1", "CG2"}).getChi2(1, 1), PDB::noAngle);
  for (const char* const none : {"ALA", "GLY"}) {
    EXPECT_EQ(chi(none, {"N", "CA", "CB", "CG"}).getChi1(1, 1), PDB::noAngle);
    EXPECT_EQ(chi(none, {"CA", "CB", "CG", "CD"}).getChi2(1, 1), PDB::noAngle);
  }
}
