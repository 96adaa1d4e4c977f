#include "tools/derive/training.h"

#include <map>

#include "tools/common/tool.h"
#include "tools/derive/text_table.h"

namespace derive {
namespace {

using Places = std::map<std::string, std::size_t>;

constexpr ObservedShifts nothing = {noShift, noShift, noShift, noShift, noShift,
                                    noShift, noShift, noShift, noShift};

void readSequences(const std::string& path, Training& training, Places& places) {
  const TextTable table = TextTable::readTable(path, {"ENTRY", "CLUSTER", "SEQUENCE"});
  for (const TextRow& row : table.rows()) {
    Protein protein;
    protein.entry = table.text(row, "ENTRY");
    protein.cluster = table.integer(row, "CLUSTER");
    protein.sequence = table.text(row, "SEQUENCE");
    protein.shifts.assign(protein.sequence.size() + 1, nothing);
    if (!places.emplace(protein.entry, training.proteins.size()).second) {
      table.refuse(row, "entry " + protein.entry + " occurs twice");
    }
    training.proteins.push_back(std::move(protein));
  }
}

/// The protein that a row belongs to, and the row's residue number, which lies in its sequence.
std::size_t findResidue(const TextTable& table, const TextRow& row, const Training& training,
                        const Places& places, int& residue) {
  const auto found = places.find(table.text(row, "ENTRY"));
  if (found == places.end()) {
    table.refuse(row, "no sequence for entry " + table.text(row, "ENTRY"));
  }
  const std::size_t length = training.proteins[found->second].sequence.size();
  residue = table.integer(row, "RESID");
  if (residue < 1 || static_cast<std::size_t>(residue) > length) {
    table.refuse(row, "residue " + std::to_string(residue) + " outside a sequence of " +
                          std::to_string(length));
  }
  return found->second;
}

void readShifts(const std::string& path, Training& training, const Places& places) {
  const std::vector<std::string> columns = {"ENTRY", "RESID", "N",   "HA",  "C", "CA",
                                            "CB",    "HN",    "HA2", "HA3", "CG"};
  const TextTable table = TextTable::readTable(path, columns);
  for (const TextRow& row : table.rows()) {
    int residue = 0;
    const std::size_t place = findResidue(table, row, training, places, residue);
    const auto shift = [&](const char* column) {
      const double value = table.number(row, column);
      return value < missingFrom ? value : noShift;
    };
    training.proteins[place].shifts[static_cast<std::size_t>(residue)] = {
        shift("N"),  shift("HA"),  shift("C"),   shift("CA"), shift("CB"),
        shift("HN"), shift("HA2"), shift("HA3"), shift("CG")};
  }
}

Source parseSource(const TextTable& table, const TextRow& row) {
  const std::string& source = table.text(row, "SOURCE");
  if (source == "both") {
    return Source::both;
  }
  if (source == "shifts") {
    return Source::shifts;
  }
  if (source != "structure") {
    table.refuse(row, "SOURCE is none of both, shifts, structure: '" + source + "'");
  }
  return Source::structure;
}

/// CB - CG below and above which a label from shifts is trans and cis, ppm.
constexpr double transBelow = 6.5;
constexpr double cisAbove = 8;

void countDisputed(const LabelledProline& proline, Training& training) {
  ++training.disputed;
  if (proline.source == Source::both) {
    training.contradictedCis += proline.delta < transBelow ? 1U : 0U;
    training.contradictedTrans += proline.delta > cisAbove && proline.delta < missingFrom ? 1U : 0U;
  }
}

void readProlines(const std::string& path, Training& training, const Places& places) {
  const TextTable table =
      TextTable::readTable(path, {"ENTRY", "RESID", "LABEL", "SOURCE", "DELTA"});
  std::size_t cis = 0;
  for (const TextRow& row : table.rows()) {
    LabelledProline proline{};
    proline.protein = findResidue(table, row, training, places, proline.residue);
    const std::string& sequence = training.proteins[proline.protein].sequence;
    if (sequence[static_cast<std::size_t>(proline.residue) - 1] != 'P') {
      table.refuse(row, "residue " + std::to_string(proline.residue) + " is no proline");
    }
    const std::string& label = table.text(row, "LABEL");
    proline.source = parseSource(table, row);
    proline.delta = table.number(row, "DELTA");
    if (label == "disputed") {
      countDisputed(proline, training);
      continue;
    }
    if (label != "cis" && label != "trans") {
      table.refuse(row, "LABEL is none of cis, trans, disputed: '" + label + "'");
    }
    proline.cis = label == "cis";
    cis += proline.cis ? 1U : 0U;
    training.prolines.push_back(proline);
  }
  if (cis == 0 || cis == training.prolines.size()) {
    table.refuseFile(cis == 0 ? "no cis proline" : "no trans proline");
  }
}

} // namespace

Training readTraining(const std::string& folder) {
  Training training;
  Places places;
  readSequences(folder + "/training_sequences.tab", training, places);
  readShifts(folder + "/training_shifts.tab", training, places);
  readProlines(folder + "/training_prolines.tab", training, places);
  return training;
}

} // namespace derive
