#include "tools/referencing/model.h"

#include <cmath>
#include <filesystem>

#include "tools/common/plain_number.h"
#include "tools/common/tool.h"

namespace referencing {
namespace {

constexpr char tableName[] = "reref.tab";
/// By `Nucleus`.
constexpr std::array<const char*, nucleusCount> rowNames = {"CA", "HA", "C"};

[[noreturn]] void refuse(const GDB& table, const std::string& what) {
  const std::string name = table.fileName().empty() ? tableName : table.fileName();
  throw ToolError(ToolStatus::badData, name + ": " + what);
}

double number(const GDB& table, std::size_t row, const char* column) {
  const std::string_view text = table.cell(row, column);
  const std::optional<double> value = plainNumber(text);
  if (!value) {
    refuse(table, std::string(column) + " is no number: '" + std::string(text) + "'");
  }
  return *value;
}

NucleusModel readNucleus(const GDB& table, std::size_t row) {
  NucleusModel model;
  model.negative = {number(table, row, "NEG_AT_0"), number(table, row, "NEG_SLOPE")};
  model.positive = {number(table, row, "POS_AT_0"), number(table, row, "POS_SLOPE")};
  model.width = number(table, row, "WIDTH");
  model.proteinVariance = number(table, row, "VAR_PROTEIN");
  model.shiftVariance = number(table, row, "VAR_SHIFT");
  if (!(model.width > 0) || model.proteinVariance < 0 || model.shiftVariance < 0) {
    refuse(table, "a width is not above 0, or a variance below it");
  }
  return model;
}

} // namespace

const char* describe(Nucleus nucleus) {
  constexpr const char* names[nucleusCount] = {"CA/CB", "HA", "C'"};
  return names[static_cast<std::size_t>(nucleus)];
}

Model readModel(const GDB& table) {
  Model model;
  for (std::size_t i = 0; i < nucleusCount; ++i) {
    const std::size_t row = table.findRow("NUCLEUS", rowNames[i]);
    if (row == GDB::noRow) {
      refuse(table, std::string("no row for ") + rowNames[i]);
    }
    model.nuclei[i] = readNucleus(table, row);
    model.fewestErrors = number(table, row, "ERRORS");
  }
  return model;
}

Model loadModel(const std::string& tabFolder) {
  const std::string path = tabFolder + "/" + tableName;
  if (!std::filesystem::is_regular_file(path)) {
    throw ToolError(ToolStatus::inputMissing, path + ": cannot read the file");
  }
  return readModel(GDB(path));
}

} // namespace referencing
