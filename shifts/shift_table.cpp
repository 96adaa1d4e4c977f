#include "app/citrans.h"
#include "app/version.h"
#include "table/number.h"

namespace {

/// Which rows of the working table have a secondary shift.
GDB::RowFilter withShift(const GDB& table) {
  const GDB::Column column = table.column("SHIFT");
  return [&table, column](std::size_t row) {
    return parseDouble(table.cell(row, column)) < shift::missingFrom;
  };
}

} // namespace

GDB CITRANS::shiftTableHeader() const {
  GDB header;
  header.errors = errors;
  header.copyHeader(shiftTable);
  header.addRemark("CITRANS Protein Secondary Chemical Shift Table for " + inName);
  for (const char* remark :
       {"", " SHIFT is secondary chemical shift", "", " CS_OBS is the original chemical shift", "",
        " CS_ADJ is the adjustment used to calculate SHIFT", "", "Reference:"}) {
    header.addRemark(remark);
  }
  for (const char* line : origin::citation) {
    header.addRemark(line);
  }
  header.addRemark("");
  header.addRemark(origin::version);
  return header;
}

void CITRANS::saveShiftTable() const {
  if (writesFiles) {
    shiftTableHeader().saveGDB(sumBase + "AdjCS.tab", shiftTable, withShift(shiftTable));
  }
}

std::string CITRANS::shiftTableText() const {
  return shiftTableHeader().text(shiftTable, withShift(shiftTable));
}
