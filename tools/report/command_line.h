#pragma once

#include <string>

#include "tools/analyse/analyse.h"
#include "tools/report/viewer.h"

/// What the user asks citrans-report for. Files may be "-"; empty for none.
struct ReportOptions {
  std::string input;  ///< summary, or shifts to analyse
  std::string shifts; ///< secondary shifts of a summary; empty: beside it, as citrans names them
  std::string map;    ///< author numbers of a summary
  std::string tables; ///< folder of the database; empty: where citrans looks
  std::string html, svg, tsv, json, chimerax, pymol, bFactor;
  std::string structure, structureMap;
  ViewerSettings viewer;
  bool noclip = false, noRereference = false;
  analyse::Settings analysis; ///< of shifts that are analysed here

  /// Whether any option was given that is for a summary, or for shifts.
  bool forSummary = false, forShifts = false;
};

/// Reads the command line and checks what can be checked without reading a file. Throws
/// ToolError(usage).
///
/// \return false when all was said with an answer to --help or --version
bool parseReportOptions(int argc, char** argv, ReportOptions& options);
