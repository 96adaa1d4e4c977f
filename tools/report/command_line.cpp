#include "tools/report/command_line.h"

#include <algorithm>
#include <iterator>

#include "tools/common/command_options.h"
#include "tools/common/tool.h"

namespace {

constexpr char program[] = "citrans-report";

void declareInputs(CLI::App& app, ReportOptions& options) {
  app.add_option("input", options.input,
                 "summary of citrans, or shifts to predict from: NMR-STAR, NEF or a table; - for "
                 "standard input")
      ->required();
  app.add_option("--tab", options.tables,
                 "folder of the database tables (default: tab below CITRANS_DIR or here, else the "
                 "installed)");
  app.add_option("--structure", options.structure,
                 "with shifts, a PDB or mmCIF file to compare with; with a summary, the PDB file "
                 "for --bfactor");
  app.add_option("--structure-map", options.structureMap,
                 "residue numbers of the structure, as a map (default: those of --map)");
  app.add_option("--chain", options.viewer.chain, "chain of the structure (default: any)");
  app.add_option("--model", options.viewer.model, "model, as the viewer names it (default: any)");
}

void declareOutputs(CLI::App& app, ReportOptions& options) {
  app.add_option("-o,--output", options.html,
                 "HTML page; - for standard output (default when no output is named)");
  app.add_option("--svg", options.svg, "pictures: one file ending in .svg, or a folder for all");
  app.add_option("--tsv", options.tsv, "contributions, one a row");
  app.add_option("--json", options.json, "everything as JSON");
  app.add_option("--chimerax", options.chimerax, "ChimeraX commands that colour the prolines");
  app.add_option("--pymol", options.pymol, "PyMOL commands that colour the prolines");
  app.add_option("--bfactor", options.bFactor,
                 "the structure as PDB with 100 P_CIS_NORM as B factors");
}

void declareOfSummary(CLI::Option_group& group, ReportOptions& options) {
  group.add_option("--shifts", options.shifts,
                   "secondary-shift table (default: as citrans names it beside the summary)");
  group.add_option("--map", options.map, "author numbers, from citrans-import --map");
}

void declareOfShifts(CLI::Option_group& group, ReportOptions& options) {
  analyse::Settings& settings = options.analysis;
  group.add_option("--entity", settings.choice.entity, "molecule to take, by ID or chain");
  group.add_option("--list", settings.choice.list, "shift list to take, by ID or name");
  group.add_option("--copy", settings.choice.copy, "copy of the molecule to take");
  group.add_flag("--iso", settings.isotope, "correct for deuteration, as citrans -iso");
  group.add_flag("--no-rereference", options.noRereference, "leave the referencing as it is");
}

void refuse(const std::string& what) {
  throw ToolError(ToolStatus::usage, what + "; see --help");
}

/// A standard stream can carry one thing only.
void checkStreams(const ReportOptions& options) {
  const std::string* const outputs[] = {&options.html,   &options.svg,      &options.tsv,
                                        &options.json,   &options.chimerax, &options.pymol,
                                        &options.bFactor};
  const std::string* const inputs[] = {&options.input, &options.shifts, &options.map,
                                       &options.structure, &options.structureMap};
  const auto isStream = [](const std::string* name) { return *name == "-"; };
  if (std::count_if(std::begin(outputs), std::end(outputs), isStream) > 1) {
    refuse("only one output can go to standard output");
  }
  if (std::count_if(std::begin(inputs), std::end(inputs), isStream) > 1) {
    refuse("only one file can come from standard input");
  }
}

} // namespace

bool parseReportOptions(int argc, char** argv, ReportOptions& options) {
  CLI::App app("Shows what the calls of citrans rest on: a page with pictures, and its parts.",
               program);
  app.set_version_flag("--version", versionLine(program));
  declareInputs(app, options);
  declareOutputs(app, options);
  CLI::Option_group& ofSummary = *app.add_option_group("With a summary");
  CLI::Option_group& ofShifts = *app.add_option_group("With shifts");
  declareOfSummary(ofSummary, options);
  declareOfShifts(ofShifts, options);
  app.add_flag("--noclip", options.noclip,
               "leave extreme shifts, as citrans -noclip; with a summary: the run did");
  if (!parseOptions(app, argc, argv)) {
    return false;
  }
  options.analysis.clip = !options.noclip;
  options.analysis.rereference = !options.noRereference;
  options.analysis.structure = {options.viewer.chain, options.viewer.model};
  options.forSummary = ofSummary.count_all() > 0;
  options.forShifts = ofShifts.count_all() > 0;
  const std::string* const outputs[] = {&options.svg,      &options.tsv,   &options.json,
                                        &options.chimerax, &options.pymol, &options.bFactor};
  if (std::all_of(std::begin(outputs), std::end(outputs),
                  [](const std::string* name) { return name->empty(); }) &&
      options.html.empty()) {
    options.html = "-";
  }
  checkStreams(options);
  if (!options.bFactor.empty() && options.structure.empty()) {
    refuse("--bfactor needs --structure");
  }
  checkViewerSettings(options.viewer);
  return true;
}
