#include "tools/derive/published.h"

#include <map>

#include "tools/derive/text_table.h"

namespace derive {
namespace {

constexpr char oxidisedCysteine[] = "C_ox";

std::vector<std::string> withAtoms(std::vector<std::string> columns) {
  columns.insert(columns.end(), atomNames.begin(), atomNames.end());
  return columns;
}

/// Place of a residue as the published tables name it; `letterCount` for rows not used.
std::size_t publishedIndex(const std::string& name) {
  if (name == oxidisedCysteine) {
    return letterIndex('c');
  }
  return name.size() == 1 ? letterIndex(name[0]) : letterCount;
}

ResidueValues readShiftTable(const std::string& path) {
  const TextTable table = TextTable::readTsv(path, withAtoms({"residue"}));
  ResidueValues values{};
  for (auto& row : values) {
    row.fill(noValue);
  }
  for (const TextRow& row : table.rows()) {
    const std::size_t letter = publishedIndex(table.text(row, "residue"));
    for (std::size_t atom = 0; letter < letterCount && atom < atomCount; ++atom) {
      if (table.text(row, atomNames[atom]) != "NA") {
        values[letter][atom] = table.number(row, atomNames[atom]);
      }
    }
  }
  return values;
}

/// Effects of neighbours relative to the peptide GGXAGG, in which glycine precedes and alanine
/// follows; an oxidised cysteine has the effect of a reduced one.
void readNeighbourEffects(const std::string& path, Published& published) {
  const TextTable table = TextTable::readTsv(path, {"X", "atom", "X_at_i+1", "X_at_i-1"});
  std::map<std::string, std::size_t> atoms;
  for (std::size_t atom = 0; atom < atomCount; ++atom) {
    atoms[atomNames[atom]] = atom;
  }
  for (const TextRow& row : table.rows()) {
    const std::size_t letter = publishedIndex(table.text(row, "X"));
    const auto atom = atoms.find(table.text(row, "atom"));
    if (letter == letterCount || atom == atoms.end()) {
      table.refuse(row, "unknown residue or atom");
    }
    published.previous[letter][atom->second] = table.number(row, "X_at_i-1");
    published.next[letter][atom->second] = table.number(row, "X_at_i+1");
  }
  published.previous[letterIndex('c')] = published.previous[letterIndex('C')];
  published.next[letterIndex('c')] = published.next[letterIndex('C')];
  const auto glycine = published.previous[letterIndex('G')];
  const auto alanine = published.next[letterIndex('A')];
  for (std::size_t letter = 0; letter < letterCount; ++letter) {
    for (std::size_t atom = 0; atom < atomCount; ++atom) {
      published.previous[letter][atom] -= glycine[atom];
      published.next[letter][atom] -= alanine[atom];
    }
  }
}

/// The effect of a following proline: the mean over the residues of both peptides. For CB it is
/// that on a proline, more than twice the mean: the prediction rests on this shift, and among the
/// prolines before a proline the mean would hide the cis ones.
void setEffectOfNextProline(const ResidueValues& beforeProline, Published& published) {
  const std::size_t proline = letterIndex('P');
  for (std::size_t atom = 0; atom < atomCount; ++atom) {
    double sum = 0;
    int count = 0;
    for (std::size_t letter = 0; letter < letterCount; ++letter) {
      const double alone = published.randomCoil[letter][atom];
      const double before = beforeProline[letter][atom];
      if ((letter == proline) == (atom == CB) && alone < noValue && before < noValue) {
        sum += before - alone;
        ++count;
      }
    }
    published.next[proline][atom] = count > 0 ? sum / count : 0;
  }
}

/// The additive rule, but for glycine, whose two deuterons on one carbon it overrates.
IsotopeValues readIsotopeShifts(const std::string& path) {
  const TextTable table = TextTable::readTsv(path, {"residue", "rule_CA", "rule_CB", "table_CA"});
  IsotopeValues values{};
  for (const TextRow& row : table.rows()) {
    const std::size_t letter = publishedIndex(table.text(row, "residue"));
    if (letter == letterCount) {
      table.refuse(row, "unknown residue");
    }
    const bool glycine = letter == letterIndex('G');
    values[letter][0] = table.number(row, glycine ? "table_CA" : "rule_CA");
    values[letter][1] = glycine ? noValue : table.number(row, "rule_CB");
  }
  values[letterIndex('c')] = values[letterIndex('C')];
  return values;
}

void readNeighbourCounts(const std::string& path, Published& published) {
  const TextTable table = TextTable::readTsv(path, {"position", "residue", "n_cis", "n_trans"});
  for (const TextRow& row : table.rows()) {
    const std::string& position = table.text(row, "position");
    const std::size_t letter = publishedIndex(table.text(row, "residue"));
    if (letter == letterCount || (position != "-1" && position != "+1")) {
      table.refuse(row, "unknown residue or position");
    }
    NeighbourTable& counts = position == "-1" ? published.before : published.after;
    counts[letter] = {table.number(row, "n_cis"), table.number(row, "n_trans")};
  }
  published.before[letterIndex('c')] = published.before[letterIndex('C')];
  published.after[letterIndex('c')] = published.after[letterIndex('C')];
}

PublishedRule readRule(const std::string& path) {
  const TextTable table = TextTable::readTsv(path, {"isomer", "atom", "mean", "sd"});
  PublishedRule rule;
  for (const TextRow& row : table.rows()) {
    if (table.text(row, "atom") == "CB-CG") {
      const bool cis = table.text(row, "isomer") == "cis";
      (cis ? rule.cisMean : rule.transMean) = table.number(row, "mean");
      (cis ? rule.cisWidth : rule.transWidth) = table.number(row, "sd");
    }
  }
  if (!(rule.cisWidth > 0 && rule.transWidth > 0)) {
    table.refuseFile("no CB-CG rows for both isomers");
  }
  return rule;
}

} // namespace

Published readPublished(const std::string& folder) {
  Published published;
  published.randomCoil = readShiftTable(folder + "/wishart1995_GGXAGG.tsv");
  // A proline has no amide proton, and its nitrogen is not used.
  published.randomCoil[letterIndex('P')][N] = noValue;
  published.randomCoil[letterIndex('P')][HN] = noValue;
  readNeighbourEffects(folder + "/tamiola2010_neighbour_corrections.tsv", published);
  setEffectOfNextProline(readShiftTable(folder + "/wishart1995_GGXPGG.tsv"), published);
  published.isotope = readIsotopeShifts(folder + "/deuterium_isotope_shifts.tsv");
  readNeighbourCounts(folder + "/pdb_proline_neighbours.tsv", published);
  published.rule = readRule(folder + "/proline_cis_trans_shifts.tsv");
  return published;
}

} // namespace derive
