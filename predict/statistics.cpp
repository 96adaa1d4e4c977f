#include "app/citrans.h"
#include "table/number.h"

void CITRANS::getProCSValue(const std::string& fileName) {
  GDB table;
  readTable(table, fileName);
  for (std::size_t row = 0; row < table.rowCount(); ++row) {
    const int index = parseInt(table.cell(row, "index"));
    proAvgCis[index] = parseFloat(table.cell(row, "avg_cis"));
    proAvgTrans[index] = parseFloat(table.cell(row, "avg_trans"));
    proStdCis[index] = parseFloat(table.cell(row, "std_cis"));
    proStdTrans[index] = parseFloat(table.cell(row, "std_trans"));
  }
}

void CITRANS::getProSeqOccurence(const std::string& fileName) {
  GDB table;
  readTable(table, fileName);
  for (std::size_t row = 0; row < table.rowCount(); ++row) {
    const std::string name(table.cell(row, "resname"));
    proCisSeq[name][1] = parseFloat(table.cell(row, "cis_prev"));
    proCisSeq[name][3] = parseFloat(table.cell(row, "cis_next"));
    proTransSeq[name][1] = parseFloat(table.cell(row, "trans_prev"));
    proTransSeq[name][3] = parseFloat(table.cell(row, "trans_next"));
  }
}
