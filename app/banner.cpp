#include "app/citrans.h"
#include "app/version.h"

#ifndef CITRANS_VERSION
#define CITRANS_VERSION "unknown"
#endif

namespace origin {
const char* const webAddress = "   README.md and docs/ of the source distribution";
const char* const citation[3] = {
    "   The CITRANS developers (2026). CITRANS: Xaa-Pro peptide bond",
    "   conformation from backbone chemical shifts.",
    "   Cite the program by name and version (see CITATION.cff).",
};
const char* const credit = "   The CITRANS developers";
const char* const version = " CITRANS version " CITRANS_VERSION;
} // namespace origin

namespace {

constexpr char frame[] = "*----------------------------------------------------------------*";

constexpr const char* usage[] = {
    "General Options:",
    " -in         inName  [None]      Input Shift Table.",
    " -ref        pdbName [None]      Reference PDB Structure Input.",
    " -sum        sumName [pred.tab]  Prediction Summary Output.",
    " -first      resID1  [First]     First RESID to use.",
    " -last       resIDN  [Last]      Last RESID to use.",
    "",
    "Chemical Shift (CS) Quality Check and Correction:",
    " -iso                            Apply 2H Isotope Correction to CA/CB shifts.",
    " -offset                         Apply CS offset correction if needed.",
    " -check                          Quality check only, without CITRAMS prediction.",
    " -clip                           Clip Extreme Shifts (Default).",
    " -noclip                         No Clipping of Shifts.",
    "",
    "Auto Format-Conversion Options for Input Shifts:",
    " -auto                           Test Input File Formats, Auto-Convert BMRB",
    "                                 NMR-Star Format if Needed (Default).",
    " -noauto                         No Input Format Testing or Conversion.",
    " -bmrb       bName   [bmrb.tab]  Intermediate Output for Converted Shifts.",
    "",
    "CITRANS Database: ",
    " -citransDir mDir    [CITRANS_DIR]    Main Database Directory.",
    " -tabDir     tDir    [tab]            Subdirectory of master tables.",
    " -rand       rName   [randcoil.tab]   Random Coil Shift Table.",
    " -adj        aName   [rcadj.tab]      Adjustment Table.",
    "                                      (None for no adjustment).",
    " -prev       pName   [rcprev.tab]     Previous Residue Adjustment.",
    "                                      (None for no adjustment).",
    " -next       nName   [rcnext.tab]     Next Residue Adjustment.",
    "                                      (None for no adjustment).",
    " -limits     lName   [sslimit.tab]    Secondary Shift Limits.",
    "                                      (Used only with -clip).",
    "",
    "Examples:",
    " citrans -in plastocyanin.tab     Form predictions from the given shifts.",
};

/// One piece a line, since standard error hands over each piece at once.
void printLine(const TextSink& sink, const char* line) {
  sink(std::string(line) + "\n");
}

} // namespace

void CITRANS::printInfo() const {
  printLine(errors, frame);
  printLine(errors, " CITRANS: Proline Omega angle prediction from chemical shifts");
  printLine(errors, " The CITRANS Program predicts dipeptide conformation, i.e.,");
  printLine(errors, " cis or trans, of Prolines in proteins from backbone chemical");
  printLine(errors, " shifts and sequence");
  printLine(errors, " For more information, see:");
  printLine(errors, origin::webAddress);
  printLine(errors, " Reference:");
  for (const char* line : origin::citation) {
    printLine(errors, line);
  }
  printLine(errors, "");
  printLine(errors, origin::credit);
  printLine(errors, "");
  printLine(errors, origin::version);
  printLine(errors, frame);
}

void CITRANS::printSyntax() const {
  for (const char* line : usage) {
    printLine(errors, line);
  }
  throw RunEnd(0);
}
