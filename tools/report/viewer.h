#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/report/report.h"

/// The calls for programs that show structures, in the colours of the page.

/// Which residues of the structure are meant. Empty texts stand for any.
struct ViewerSettings {
  std::string chain;
  std::string model;                  ///< as the viewer names it; MODEL number in a PDB file
  std::map<int, std::string> numbers; ///< of the structure, by table number; empty: the author's
};

/// A text and what it could not hold, as plain sentences.
struct ViewerText {
  std::string text;
  std::vector<std::string> warnings;
};

/// Throws ToolError(usage) for a chain or model that would end a viewer's command.
void checkViewerSettings(const ViewerSettings& settings);

/// ChimeraX commands that colour the prolines by call.
ViewerText chimeraxText(const Report& report, const ViewerSettings& settings);

/// The same as PyMOL commands.
ViewerText pymolText(const Report& report, const ViewerSettings& settings);

/// A PDB file again, its B factors replaced: 100 P_CIS_NORM for the atoms of predicted prolines, -1
/// for all others, so that any viewer that colours by B factor shows the calls.
///
/// Throws ToolError(badData) when the text has no ATOM lines, or none of the predicted prolines.
ViewerText bFactorText(const Report& report, const ViewerSettings& settings,
                       const NamedText& structure);
