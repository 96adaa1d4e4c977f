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

void CITRANS::setUpSummary() {
  summary = GDB();
  summary.errors = errors;
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

void CITRANS::addToSummary(const Prediction& prediction) {
  const auto store = [&](const std::string& column, const std::string& value) {
    summary.setEntry(prediction.residue, column, value);
  };
  store("RESID", itoa(prediction.residue, textBuffer, 10));
  for (int k = 1; k <= 3; ++k) {
    const auto at = static_cast<std::size_t>(k) - 1;
    store("RESNAME_R" + std::to_string(k), prediction.names.at(at));
    store("CS_CNT" + std::to_string(k), itoa(prediction.shiftCounts.at(at), textBuffer, 10));
  }
  store("CG_SHIFT", ftoa(prediction.cgShift, textBuffer, 'g', 6));
  store("P_CIS", ftoa(prediction.likelihood.cis, textBuffer, 'g', 6));
  store("P_CIS_NORM", ftoa(prediction.likelihood.normalised, textBuffer, 'g', 6));
  if (!refName.empty()) {
    store("RESNAME_REF", prediction.referenceName);
    store("OMEGA_REF", ftoa(prediction.referenceOmega, textBuffer, 'g', 6));
  }
}

void CITRANS::printListing() const {
  out("\nPredicting Pro Xaa-Pro Conformation ...\n\n");
  if (quiet) {
    return;
  }
  const bool withReference = !refName.empty();
  out(withReference ? "  #RES1 RES2 RES3 P_CIS  P_CIS_NORM OMEGA\n\n"
                    : "  #RES1 RES2 RES3 P_CIS  P_CIS_NORM\n\n");
  // Read back from the summary, so that both show the same six digits.
  for (std::size_t row = 0; row < summary.rowCount(); ++row) {
    const int proline = parseInt(summary.cell(row, "RESID"));
    const std::string before = messageText(summary.cell(row, "RESNAME_R1"));
    const std::string after = messageText(summary.cell(row, "RESNAME_R3"));
    out(formatted("   %1s%-3d %1s%-3d %1s%-3d %-6.3f %-6.3f", before.c_str(), proline - 1, "P",
                  proline, after.c_str(), proline + 1, parseDouble(summary.cell(row, "P_CIS")),
                  parseDouble(summary.cell(row, "P_CIS_NORM"))));
    if (withReference) {
      out(formatted("     %-8.3f", parseDouble(summary.cell(row, "OMEGA_REF"))));
    }
    out("\n");
  }
}
