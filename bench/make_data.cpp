/// Makes the inputs of the benchmarks from the proteins in examples/.
///
///   bench_make_data EXAMPLES FOLDER
///
/// Residues follow each other cyclically through the example proteins, with the shifts and the
/// coordinates that they have there, renumbered from 1. Same examples, same bytes.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "structure/pdb.h"
#include "table/file_io.h"
#include "table/gdb.h"
#include "table/number.h"

namespace {

struct Shift {
  std::string atom;
  std::string value;
};

struct Residue {
  std::string name;
  std::vector<Shift> shifts;
};

constexpr int proteinCount = 2000;
constexpr int largestResidueNumber = 9999; // of a PDB file
constexpr int atomCount = 100000;
/// Side-chain names that fill a residue up; only backbone atoms are in the examples.
constexpr const char* sideChainNames[] = {" CB ", " CG ", " CD ", " HA ", " HB2", " HB3"};

std::vector<Residue> readResidues(const std::string& path) {
  const GDB table(path);
  std::vector<Residue> residues;
  for (const auto& [number, name] : table.residueNames()) {
    Residue residue{name, {}};
    for (std::size_t row = 0; row < table.rowCount(); ++row) {
      if (parseInt(table.cell(row, "RESID")) == number) {
        residue.shifts.push_back(
            {std::string(table.cell(row, "ATOMNAME")), std::string(table.cell(row, "SHIFT"))});
      }
    }
    residues.push_back(residue);
  }
  return residues;
}

std::string headerOf(const std::vector<Residue>& pool, std::size_t start, int count) {
  std::string header = "REMARK made by bench_make_data\n\n";
  for (int i = 0; i < count; ++i) {
    header += i % 50 == 0 ? "\nDATA SEQUENCE " : i % 10 == 0 ? " " : "";
    header += pool[(start + static_cast<std::size_t>(i)) % pool.size()].name;
  }
  return header + "\n\nVARS   RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s  %8.3f\n\n";
}

/// A table of `count` residues, or of `rows` rows when that is not 0.
void writeTable(const std::string& path, const std::vector<Residue>& pool, std::size_t start,
                int count, int rows) {
  OutputFile file(path);
  file.buffer().append(headerOf(pool, start, rows > 0 ? 1 : count));
  int written = 0;
  for (int i = 0; rows > 0 ? written < rows : i < count; ++i) {
    const Residue& residue = pool[(start + static_cast<std::size_t>(i)) % pool.size()];
    for (const Shift& shift : residue.shifts) {
      char line[64];
      std::snprintf(line, sizeof line, "%4d %1s %4s  %8s\n", i + 1, residue.name.c_str(),
                    shift.atom.c_str(), shift.value.c_str());
      file.buffer().append(rows == 0 || written < rows ? line : "");
      ++written;
    }
    file.flushIfLarge();
  }
  if (!file.close()) {
    std::perror(path.c_str());
    std::exit(1);
  }
}

struct Place {
  float x;
  float y;
  float z;
};

void writeAtom(std::string& out, int serial, const char* name, const char* residueName, int residue,
               const Place& at) {
  char line[96];
  std::snprintf(line, sizeof line,
                "ATOM  %5d %4s %3s A%4d    %8.3f%8.3f%8.3f  1.00 20.00           %c\n", serial,
                name, residueName, residue, static_cast<double>(at.x), static_cast<double>(at.y),
                static_cast<double>(at.z), name[1]);
  out.append(line);
}

/// Copies of the backbone on a lattice, side chains of six atoms at made-up places near CA, and a
/// cysteine at every tenth residue.
void writeStructure(const std::string& path, const std::string& example) {
  PDB model(example);
  const int length = model.lastResID - model.firstResID + 1;
  OutputFile file(path);
  int serial = 0;
  for (int residue = 0; residue <= largestResidueNumber && serial < atomCount; ++residue) {
    const int copy = residue / length;
    const int source = model.firstResID + residue % length;
    const Place shift{static_cast<float>(copy % 5) * 90, static_cast<float>(copy / 5 % 5) * 90,
                      static_cast<float>(copy / 25) * 90};
    const auto placed = [&](const char* atom) {
      const CORdata found = model.getEntry(1, source, atom);
      return Place{found.x + shift.x, found.y + shift.y, found.z + shift.z};
    };
    const bool cysteine = residue % 10 == 0;
    const std::string name = cysteine ? "CYS" : model.resNames[source];
    for (const char* atom : {" N  ", " CA ", " C  ", " O  "}) {
      writeAtom(file.buffer(), serial++, atom, name.c_str(), residue,
                placed(GDB::simplifyWhiteSpace(atom).c_str()));
    }
    Place side = placed("CA");
    for (const char* atom : sideChainNames) {
      side.x += 0.9F;
      const bool sulfur = cysteine && atom == sideChainNames[1];
      writeAtom(file.buffer(), serial++, sulfur ? " SG " : atom, name.c_str(), residue, side);
    }
    file.flushIfLarge();
  }
  file.buffer().append("TER\nEND\n");
  if (!file.close()) {
    std::perror(path.c_str());
    std::exit(1);
  }
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: bench_make_data EXAMPLES FOLDER\n", stderr);
    return 2;
  }
  const std::string examples = argv[1];
  const std::string folder = argv[2];
  std::vector<Residue> pool;
  for (const char* name : {"/plastocyanin.tab", "/ubiquitin.tab", "/ybbr.tab"}) {
    for (const Residue& residue : readResidues(examples + name)) {
      pool.push_back(residue);
    }
  }
  mkdir(folder.c_str(), 0777);
  mkdir((folder + "/proteins").c_str(), 0777);
  writeTable(folder + "/residues-3000.tab", pool, 0, 3000, 0);
  writeTable(folder + "/residues-30000.tab", pool, 0, 30000, 0);
  writeTable(folder + "/rows-300000.tab", pool, 0, 0, 300000);
  writeStructure(folder + "/atoms-100000.pdb", examples + "/ybbr_2kpu.pdb");
  for (int protein = 0; protein < proteinCount; ++protein) {
    const std::string name = folder + "/proteins/" + std::to_string(protein) + ".tab";
    writeTable(name, pool, static_cast<std::size_t>(protein) * 7, 60 + protein % 120, 0);
  }
  return 0;
}
