#include <cstdio>

#include "app/citrans.h"
#include "app/version.h"
#include "table/message_text.h"
#include "table/number.h"

namespace {

constexpr char summaryVars[] = "  RESID RESNAME_R1 RESNAME_R2 RESNAME_R3 CS_CNT1 CS_CNT2 CS_CNT3 "
                               "CG_SHIFT P_CIS P_CIS_NORM ";
constexpr char summaryFormat[] = "%3d %1s %1s %1s %2d %2d %2d %8.3f %8.3f %8.3f ";
constexpr char referenceVars[] = "RESNAME_REF OMEGA_REF";
constexpr char referenceFormat[] = "%4s %8.3f";

constexpr const char* columnRemarks[] = {
    "",
    " RESID is the residue number of Pro",
    "",
    " RESNAME_R1 is the residue prior to Pro",
    "",
    " RESNAME_R3 is the residue next to Pro",
    "",
    " CS_CNT is the number of chemical shifts",
    "",
    " CG_SHIFT is the Pro CG chemical shift",
    "",
    " P_CIS is the likelihood of Pro to be in cis form, ",
    " calculated by Eq. 5 of the reference",
    "",
    " P_CIS_NORM is the normalized likelihood of Pro to be ",
    " in cis form, calculated by Eq. 6 of the reference",
    "",
};

constexpr const char* referenceRemarks[] = {
    " RESNAME_REF is the residue type in the reference PDB",
    "",
    " OMEGA_REF is the omega angle from the reference PDB, defined",
    " for RESID = i as torsion CA(i-1) C'(i-1) N(i) CA(i)",
    "",
};

} // namespace

void CITRANS::setUpSummary(GDB& summary) const {
  const bool withReference = !refName.empty();
  summary.VARS_str_parser(std::string(summaryVars) + (withReference ? referenceVars : ""));
  summary.FORMAT_str_parser(std::string(summaryFormat) + (withReference ? referenceFormat : ""));

  summary.addRemark("CITRANS Protein Proline Omega Angle Prediction ");
  summary.addRemark(" Summary table for " + inTitle);
  if (withReference) {
    summary.addRemark(" Reference PDB " + refTitle);
  }
  for (const char* remark : columnRemarks) {
    summary.addRemark(remark);
  }
  if (withReference) {
    for (const char* remark : referenceRemarks) {
      summary.addRemark(remark);
    }
  }
  summary.addRemark("Reference:");
  for (const char* line : origin::citation) {
    summary.addRemark(line);
  }
  summary.addRemark("");
  summary.addRemark(origin::version);
}

void CITRANS::printListing(const GDB& summary) const {
  const bool withReference = !refName.empty();
  std::puts(withReference ? "  #RES1 RES2 RES3 P_CIS  P_CIS_NORM OMEGA\n"
                          : "  #RES1 RES2 RES3 P_CIS  P_CIS_NORM\n");
  for (std::size_t row = 0; row < summary.rowCount(); ++row) {
    const int proline = parseInt(summary.cell(row, "RESID"));
    const std::string before = messageText(summary.cell(row, "RESNAME_R1"));
    const std::string after = messageText(summary.cell(row, "RESNAME_R3"));
    std::printf("   %1s%-3d %1s%-3d %1s%-3d %-6.3f %-6.3f", before.c_str(), proline - 1, "P",
                proline, after.c_str(), proline + 1, parseDouble(summary.cell(row, "P_CIS")),
                parseDouble(summary.cell(row, "P_CIS_NORM")));
    if (withReference) {
      std::printf("     %-8.3f", parseDouble(summary.cell(row, "OMEGA_REF")));
    }
    std::putchar('\n');
  }
}
