#include "app/citrans.h"
#include "app/version.h"
#include "table/number.h"

GDB CITRANS::shiftTableToSave() const {
  GDB output;
  output.errors = errors;
  output.copyHeader(shiftTable);
  output.reserveRows(shiftTable.rowCount());
  const GDB::Column shift = shiftTable.column("SHIFT");
  for (std::size_t row = 0; row < shiftTable.rowCount(); ++row) {
    if (parseDouble(shiftTable.cell(row, shift)) < shift::missingFrom) {
      output.appendRowFrom(shiftTable, row);
    }
  }
  output.addRemark("CITRANS Protein Secondary Chemical Shift Table for " + inName);
  for (const char* remark :
       {"", " SHIFT is secondary chemical shift", "", " CS_OBS is the original chemical shift", "",
        " CS_ADJ is the adjustment used to calculate SHIFT", "", "Reference:"}) {
    output.addRemark(remark);
  }
  for (const char* line : origin::citation) {
    output.addRemark(line);
  }
  output.addRemark("");
  output.addRemark(origin::version);
  return output;
}

void CITRANS::save(const GDB& table, const std::string& name) const {
  if (writesFiles) {
    table.saveGDB(name);
  }
}
