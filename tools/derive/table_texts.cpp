#include <cmath>
#include <cstdarg>
#include <cstdio>

#include "tools/derive/tables.h"

namespace derive {
namespace {

constexpr char randomCoilSource[] =
    "Wishart, Bigam, Holm, Hodges & Sykes 1995, J Biomol NMR 5:67-81";
constexpr char neighbourSource[] = "Tamiola, Acar & Mulder 2010, J Am Chem Soc 132:18000-18003";
constexpr char isotopeSource[] = "Venters, Farmer, Fierke & Spicer 1996, J Mol Biol 264:1101-1116";
constexpr char trainingSource[] =
    "RefDB: Zhang, Neal & Wishart 2003, J Biomol NMR 25:173-195, which re-references BMRB";

/// Rows of one table in the making.
class TableText {
 public:
  TableText(const Origin& origin, const std::vector<std::string>& remarks) {
    for (const std::string& remark : remarks) {
      add("REMARK " + remark);
    }
    add("REMARK Selection: " + origin.selection);
    add("REMARK Made by " + origin.version + ": " + origin.command);
    add("");
  }

  void columns(const std::string& names, const std::string& formats) {
    add("VARS   " + names);
    add("FORMAT " + formats);
    add("");
  }

  void cell(const std::string& text, int width) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%-*s", width, text.c_str());
    line_ += buffer;
  }

  void cell(double value, int decimals) {
    // No -0: the sign of a rounded nothing would depend on the last bit.
    const double scale = std::pow(10.0, decimals);
    const double rounded = std::round(value * scale) / scale;
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, " %8.*f", decimals, rounded == 0 ? 0.0 : rounded);
    line_ += buffer;
  }

  void endRow() {
    add(line_);
    line_.clear();
  }

  const std::string& text() const { return text_; }

 private:
  void add(const std::string& line) { text_ += line + "\n"; }

  std::string text_;
  std::string line_;
};

constexpr int nameWidth = 4;
constexpr int shiftDecimals = 3;

std::string joinAtoms(const char* suffix1, const char* suffix2) {
  std::string names = "RESNAME";
  for (const char* atom : atomNames) {
    names += std::string(" ") + atom + suffix1;
    if (suffix2 != nullptr) {
      names += std::string(" ") + atom + suffix2;
    }
  }
  return names;
}

std::string formats(const char* first, const char* other, std::size_t others) {
  std::string text = first;
  for (std::size_t i = 0; i < others; ++i) {
    text += other;
  }
  return text;
}

std::string residueTable(const ResidueValues& values, const Origin& origin,
                         const std::vector<std::string>& remarks) {
  TableText table(origin, remarks);
  table.columns(joinAtoms("", nullptr), formats("%-4s", " %8.3f", atomCount));
  for (const ResidueRow& row : residueRows()) {
    table.cell(row.name, nameWidth);
    for (const double value : values[row.letter]) {
      table.cell(value, shiftDecimals);
    }
    table.endRow();
  }
  return table.text();
}

std::string limitsTable(const TableSet& tables, const Origin& origin) {
  TableText table(
      origin,
      {"Limits of secondary shifts in ppm, by residue and atom.",
       "The 1st and 99th percentile of the training shifts; a shift beyond is reported, and "
       "bounded",
       "in the prediction. CB of proline reaches far above every cis proline. An atom that does "
       "not",
       "exist has limits that bound nothing; B, J, O and U have the widest limits of all residues.",
       std::string("Shifts: ") + trainingSource});
  table.columns(joinAtoms("_MIN", "_MAX"), formats("%-4s", " %8.3f", 2 * atomCount));
  for (const ResidueRow& row : sequenceRows()) {
    table.cell(row.name, nameWidth);
    for (const Limit& limit : tables.limits[row.letter]) {
      table.cell(limit.lowest, shiftDecimals);
      table.cell(limit.highest, shiftDecimals);
    }
    table.endRow();
  }
  return table.text();
}

std::string isotopeTable(const TableSet& tables, const Origin& origin) {
  TableText table(origin,
                  {"Deuterium isotope shifts in ppm: deuterated minus protonated, by residue.",
                   "The additive rule -0.29 d1 - 0.13 d2 - 0.07 d3 for full side-chain and HA",
                   "deuteration; glycine CA as tabulated. 9999: no such atom.",
                   std::string("Source: ") + isotopeSource});
  table.columns("RESNAME CA CB", formats("%-4s", " %8.3f", 2));
  for (const ResidueRow& row : residueRows()) {
    table.cell(row.name, nameWidth);
    table.cell(tables.published.isotope[row.letter][0], shiftDecimals);
    table.cell(tables.published.isotope[row.letter][1], shiftDecimals);
    table.endRow();
  }
  return table.text();
}

std::string statisticsTable(const TableSet& tables, const Origin& origin) {
  TableText table(
      origin,
      {"Means and deviations of the secondary shifts around cis and trans prolines, ppm.",
       "Index 0 to 17: N HA C CA CB HN of the residue before, the proline, the residue after;",
       "index 18: the observed CG of the proline. Fitted to the conditional likelihood of the",
       "labels at 1 cis to 19 trans, with CG present and with CG hidden. Penalties hold them near",
       "the robust means and deviations and draw the two forms together, but for CB and CG of the",
       "proline. A proline's N and HN (6 and 11) never meet a shift.",
       std::string("Shifts: ") + trainingSource});
  table.columns("index avg_cis avg_trans std_cis std_trans", formats("%-4d", " %8.4f", 4));
  for (std::size_t i = 0; i < statisticCount; ++i) {
    const ShiftStatistic& row = tables.statistics[i];
    table.cell(std::to_string(i), nameWidth);
    for (const double value : {row.cisMean, row.transMean, row.cisWidth, row.transWidth}) {
      table.cell(value, 4);
    }
    table.endRow();
  }
  return table.text();
}

void neighbourRow(TableText& table, const TableSet& tables, const std::string& name,
                  std::size_t letter) {
  const NeighbourStatistic row = neighbourStatistic(tables.published, letter);
  // Each proline has one residue before and one after: each column carries half the factor.
  const double factor = std::sqrt(tables.cisFactor);
  table.cell(name, nameWidth);
  for (const double value :
       {factor * row.cisPrevious, factor * row.cisNext, row.transPrevious, row.transNext}) {
    table.cell(value, 5);
  }
  table.endRow();
}

std::string neighbourTable(const TableSet& tables, const Origin& origin) {
  char factor[128];
  std::snprintf(factor, sizeof factor,
                "The cis columns carry the factor %.4f each, which the fit of the shift statistics",
                std::sqrt(tables.cisFactor));
  TableText table(origin,
                  {"Frequencies of residues before and after cis and trans prolines.",
                   "Counted from the coordinates of 20,326 protein chains with 206,753 prolines",
                   "(Debian package promod3-data; omega near 0 is cis), smoothed.", factor,
                   "finds: the Gaussians of the likelihood do not hold their widths.",
                   "c has the counts of all cysteines; B, J, O, U, X and ? favour neither form."});
  table.columns("resname cis_prev cis_next trans_prev trans_next", formats("%-4s", " %8.5f", 4));
  for (const ResidueRow& row : sequenceRows()) {
    neighbourRow(table, tables, row.name, row.letter);
  }
  neighbourRow(table, tables, "X", letterCount);
  neighbourRow(table, tables, "?", letterCount);
  for (const ResidueRow& row : residueRows()) {
    if (row.name.size() > 1) {
      neighbourRow(table, tables, row.name, row.letter);
    }
  }
  return table.text();
}

} // namespace

std::map<std::string, std::string> tableTexts(const TableSet& tables, const Origin& origin) {
  const Published& published = tables.published;
  std::map<std::string, std::string> texts;
  texts["randcoil.tab"] = residueTable(
      published.randomCoil, origin,
      {"Random-coil shifts in ppm of X in Ac-GGXAGG-NH2 at pH 5 and 25 C; 9999: no value.",
       "c is the cysteine of a disulfide; h and p have the values of H and P.",
       std::string("Source: ") + randomCoilSource});
  texts["rcadj.tab"] = residueTable(
      tables.adjustments, origin,
      {"Adjustments of the random-coil shifts in ppm, by residue and atom.",
       "Fitted so that the referencing estimate of well-referenced proteins is unbiased for points",
       "with CA - CB below 0 and for the others. N and HN, and proline, need none.",
       std::string("Shifts: ") + trainingSource});
  texts["rcprev.tab"] = residueTable(
      published.previous, origin,
      {"Effect of the preceding residue on a random-coil shift in ppm, by that residue.",
       "Relative to a preceding glycine, as in Ac-GGXAGG-NH2.",
       std::string("Source: ") + neighbourSource});
  texts["rcnext.tab"] = residueTable(
      published.next, origin,
      {"Effect of the following residue on a random-coil shift in ppm, by that residue.",
       "Relative to a following alanine, as in Ac-GGXAGG-NH2.",
       std::string("Source: ") + neighbourSource,
       "Effect of a proline: mean of GGXPGG minus GGXAGG; for CB that on a proline, -1.2 ppm,",
       "because the prediction rests on CB of prolines; the mean of the others is -0.48 ppm.",
       std::string("Source of both: ") + randomCoilSource});
  texts["sslimit.tab"] = limitsTable(tables, origin);
  texts["isoadj.tab"] = isotopeTable(tables, origin);
  texts["Pro.cs.tab"] = statisticsTable(tables, origin);
  texts["Pro.seq.tab"] = neighbourTable(tables, origin);
  return texts;
}

} // namespace derive
