#include "tools/referencing/model.h"

#include <cmath>

#include "tools/common/checked_table.h"

namespace referencing {
namespace {

constexpr char tableName[] = "reref.tab";
/// By `Nucleus`.
constexpr std::array<const char*, nucleusCount> rowNames = {"CA", "HA", "C"};

NucleusModel readNucleus(const CheckedTable& table, std::size_t row) {
  NucleusModel model;
  model.negative = {table.number(row, "NEG_AT_0"), table.number(row, "NEG_SLOPE")};
  model.positive = {table.number(row, "POS_AT_0"), table.number(row, "POS_SLOPE")};
  model.width = table.number(row, "WIDTH");
  model.proteinVariance = table.number(row, "VAR_PROTEIN");
  model.shiftVariance = table.number(row, "VAR_SHIFT");
  if (!(model.width > 0) || model.proteinVariance < 0 || model.shiftVariance < 0) {
    table.refuse("a width is not above 0, or a variance below it");
  }
  return model;
}

} // namespace

const char* describe(Nucleus nucleus) {
  constexpr const char* names[nucleusCount] = {"CA/CB", "HA", "C'"};
  return names[static_cast<std::size_t>(nucleus)];
}

Model readModel(const GDB& table) {
  const CheckedTable checked(table, tableName);
  Model model;
  for (std::size_t i = 0; i < nucleusCount; ++i) {
    const std::size_t row = table.findRow("NUCLEUS", rowNames[i]);
    if (row == GDB::noRow) {
      checked.refuse(std::string("no row for ") + rowNames[i]);
    }
    model.nuclei[i] = readNucleus(checked, row);
    model.fewestErrors = checked.number(row, "ERRORS");
  }
  return model;
}

Model loadModel(const std::string& tabFolder) {
  return readModel(readTableFile(tabFolder + "/" + tableName));
}

} // namespace referencing
