#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "table/gdb.h"
#include "table/text_sink.h"

/// What a run is told: the members that options set, and what a caller of the library may replace.
struct Settings {
  std::string citransDir;           ///< database directory
  std::string pathSep;              ///< between directory and file name
  std::string tabDir;               ///< directory of the reference tables
  std::string inName;               ///< input table
  std::string inTitle = "None";     ///< its title in outputs
  std::string refName;              ///< reference structure; empty for none
  std::string refTitle = "None";    ///< its title in outputs
  std::string sumName = "pred.tab"; ///< summary output
  std::string sumBase = "pred";     ///< summary output up to its last "."
  std::string randName, adjName, prevName, nextName, limitsName, isoName; ///< tables of shifts/
  std::string proCSName, proSeqName;                                      ///< tables of predict/
  int firstResID = 1;      ///< first residue asked for
  int lastResID = 9999;    ///< last residue asked for
  bool clipOn = true;      ///< bound extreme secondary shifts
  bool reportClip = false; ///< report each bounded shift; no option sets it
  bool checkOnly = false;  ///< stop after the shift check
  bool quiet = true;       ///< no listing of predictions
  bool noPath = true;      ///< progress messages without file names
  bool isoOn = false;      ///< correct for deuteration
  bool offsetOn = false;   ///< remove estimated referencing offsets
  /// Loads a table of the database by its name; the default opens the file. A caller that has the
  /// tables elsewhere puts its own in place before `loadDatabase`.
  std::function<void(GDB&, const std::string&)> readTable = &GDB::loadGDB;
  std::vector<std::string> argNames; ///< accepted option names
  /// The backbone atoms, in the order of all that is done for each.
  std::map<int, std::string> atomNames = {{1, "N"},  {2, "HA"}, {3, "C"},
                                          {4, "CA"}, {5, "CB"}, {6, "HN"}};
  TextSink out = toStandardOutput;   ///< takes progress, findings and the listing
  TextSink errors = toStandardError; ///< takes banner, usage text and warnings
  bool writesFiles = true;           ///< whether the two tables are saved
};
