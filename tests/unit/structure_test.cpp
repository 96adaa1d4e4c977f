#include <cmath>
#include <gtest/gtest.h>
#include <stdexcept>

#include "structure/pdb.h"
#include "tests/unit/support.h"

namespace {

/// An ATOM line of 60 characters, the shortest there may be. The name fills columns 13 to 16.
std::string atomLine(int serial, const char* name, const char* residue, int number, double x = 0,
                     double y = 0, double z = 0) {
  char line[96];
  std::snprintf(line, sizeof line, "ATOM  %5d %-4s %3s A%4d    %8.3f%8.3f%8.3f  1.00\n", serial,
                name, residue, number, x, y, z);
  return line;
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

TEST(Structure, VectorsMultiplyAsTheyShould) {
  PDB pdb;
  float v[3] = {1, 2, 3};
  const float w[3] = {4, 5, 6};
  EXPECT_EQ(pdb.Vec3Scalar(v, w), 32.0F);
  pdb.Vec3Cross(v, w);
  EXPECT_EQ(std::vector<float>(v, v + 3), (std::vector<float>{-3, 6, -3}));
  const float m[3][3] = {{1, 2, 0}, {0, 1, 0}, {1, 0, 1}};
  pdb.Mat3VecMult(v, m); // as a row: (-3-3, -6+6, -3)
  EXPECT_EQ(std::vector<float>(v, v + 3), (std::vector<float>{-6, 0, -3}));
  EXPECT_EQ(pdb.sgn(0.0F), 1.0F);
  pdb.Vec3Scale(v, 2);
  pdb.Vec3Add(v, w);
  EXPECT_EQ(std::vector<float>(v, v + 3), (std::vector<float>{-8, 5, 0}));
  pdb.Vec3Copy(v, w);
  EXPECT_EQ(std::vector<float>(v, v + 3), (std::vector<float>{4, 5, 6}));
  pdb.Vec3Zero(v);
  EXPECT_EQ(std::vector<float>(v, v + 3), (std::vector<float>{0, 0, 0}));
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
  EXPECT_THROW(PDB(writeFile("short.pdb", atomLine(1, " N", "ALA", 5).substr(0, 59))),
               std::out_of_range);
}

TEST(Structure, FieldsAreFixedColumns) {
  PDB pdb;
  const std::string line =
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
  const struct {
    const char* what;
    int second;
    double distance;
    bool bonded;
  } rows[] = {{"three apart", 13, 2.0, false},
              {"four apart", 14, 2.0, true},
              {"at the limit", 14, 2.5, true},
              {"beyond the limit", 14, 2.501, false}};
  for (const auto& row : rows) {
    PDB pdb(writeFile("ss.pdb", atomLine(1, " SG", "CYS", 10, 50) +
                                    atomLine(2, " SG", "CYS", row.second, 50 + row.distance)));
    EXPECT_EQ(pdb.resCodes[10], row.bonded ? "c" : "C") << row.what;
    EXPECT_EQ(pdb.resNames[row.second], row.bonded ? "cys" : "CYS") << row.what;
  }
  PDB bare(writeFile("ss.pdb", atomLine(1, " N", "CYS", 1, 9) + atomLine(2, " N", "CYS", 9, 99)));
  EXPECT_TRUE(bare.isSSBonded(1, 1)) << "kept: a missing sulfur lies at the origin";
}

TEST(Structure, SideChainTorsionsEndAtTheResiduesOwnAtoms) {
  // N, CA and CB at right angles; the candidates for the fourth atom stand at +90 and 180.
  const auto chi1 = [](const char* residue, const char* end) {
    PDB pdb(writeFile("chi.pdb", atomLine(1, " N", residue, 1, 1, 0, 0) +
                                     atomLine(2, " CA", residue, 1, 0, 0, 0) +
                                     atomLine(3, " CB", residue, 1, 0, 0, 1) +
                                     atomLine(4, end, residue, 1, 0, 1, 1)));
    return pdb.getChi1(1, 1);
  };
  const char* const ends[][2] = {{"VAL", " CG2"}, {"ILE", " CG1"}, {"THR", " OG1"},
                                 {"SER", " OG"},  {"CYS", " SG"},  {"LYS", " CG"}};
  for (const auto& end : ends) {
    EXPECT_FLOAT_EQ(chi1(end[0], end[1]), 90.0F) << end[0];
  }
  EXPECT_EQ(chi1("VAL", " CG1"), PDB::noAngle);
  EXPECT_EQ(chi1("ALA", " CG"), PDB::noAngle);
}
