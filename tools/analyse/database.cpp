#include "tools/analyse/analyse.h"
#include "tools/analyse/tables.h"
#include "tools/common/tool.h"

namespace analyse {
namespace {

/// Hands over tables in place of files.
auto tableReader(const TableTexts& tables) {
  return [&tables](GDB& table, const std::string& name) {
    const auto found = tables.find(name);
    if (found == tables.end()) {
      throw ToolError(ToolStatus::badData, name + ": not among the tables of the database");
    }
    table.loadText(found->second);
  };
}

/// A silent run that holds all tables, those for deuteration included.
CITRANS loadedRun(const TableTexts& tables) {
  CITRANS run;
  run.keepSilent();
  run.setArgs({{"iso", "iso"}});
  run.randName = "randcoil.tab";
  run.adjName = "rcadj.tab";
  run.prevName = "rcprev.tab";
  run.nextName = "rcnext.tab";
  run.limitsName = "sslimit.tab";
  run.isoName = "isoadj.tab";
  run.proCSName = "Pro.cs.tab";
  run.proSeqName = "Pro.seq.tab";
  run.readTable = tableReader(tables);
  run.loadDatabase();
  run.readTable = &GDB::loadGDB;
  return run;
}

GDB tableOf(const TableTexts& tables, const std::string& name) {
  GDB table;
  tableReader(tables)(table, name);
  return table;
}

Database databaseOf(const TableTexts& tables) {
  try {
    return {loadedRun(tables), calls::Rules(tableOf(tables, "calls.tab")),
            referencing::readModel(tableOf(tables, "reref.tab")),
            statisticsMadeBy(tableOf(tables, "Pro.cs.tab"))};
  } catch (const RunEnd& refusal) {
    throw ToolError(ToolStatus::badData, GDB::simplifyWhiteSpace(refusal.message()));
  }
}

} // namespace

Analyser::Analyser(const TableTexts& tables) : database_(databaseOf(tables)) {}

TableTexts builtInTables() {
  using namespace embedded;
  return {{"Pro.cs.tab", std::string(shiftStatistics)},
          {"Pro.seq.tab", std::string(neighbourStatistics)},
          {"calls.tab", std::string(callRules)},
          {"isoadj.tab", std::string(isotopeShifts)},
          {"randcoil.tab", std::string(randomCoil)},
          {"rcadj.tab", std::string(randomCoilAdjustments)},
          {"rcnext.tab", std::string(nextResidue)},
          {"rcprev.tab", std::string(previousResidue)},
          {"reref.tab", std::string(referencingModel)},
          {"sslimit.tab", std::string(limits)}};
}

} // namespace analyse
