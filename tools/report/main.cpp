#include <algorithm>
#include <cstdio>
#include <iterator>
#include <set>

#include "tools/common/command_options.h"
#include "tools/common/file_identity.h"
#include "tools/common/output.h"
#include "tools/common/program_tables.h"
#include "tools/common/tool.h"
#include "tools/report/exports.h"
#include "tools/report/files.h"
#include "tools/report/page.h"
#include "tools/report/pictures_export.h"
#include "tools/report/viewer.h"

namespace {

constexpr char program[] = "citrans-report";

struct Options {
  InputPaths paths;
  bool noclip = false;
  std::string html, svg, tsv, json, chimerax, pymol, bFactor;
  std::string structure, structureMap;
  ViewerSettings viewer;
};

void declareOptions(CLI::App& app, Options& options) {
  app.set_version_flag("--version", versionLine(program));
  app.add_option("summary", options.paths.summary, "summary of citrans; - for standard input")
      ->required();
  app.add_option("--shifts", options.paths.shifts,
                 "secondary-shift table (default: as citrans names it beside the summary)");
  app.add_option(
      "--tab", options.paths.database,
      "folder of the database tables (default: tab below CITRANS_DIR or here, else the installed)");
  app.add_option("--map", options.paths.map, "author numbers, from citrans-import --map");
  app.add_flag("--noclip", options.noclip, "the run had -noclip");
  app.add_option("-o,--output", options.html,
                 "HTML page; - for standard output (default when no output is named)");
  app.add_option("--svg", options.svg, "pictures: one file ending in .svg, or a folder for all");
  app.add_option("--tsv", options.tsv, "contributions, one a row");
  app.add_option("--json", options.json, "everything as JSON");
  app.add_option("--chimerax", options.chimerax, "ChimeraX commands that colour the prolines");
  app.add_option("--pymol", options.pymol, "PyMOL commands that colour the prolines");
  app.add_option("--bfactor", options.bFactor,
                 "the PDB file of --structure with 100 P_CIS_NORM as B factors");
  app.add_option("--structure", options.structure, "PDB file for --bfactor");
  app.add_option("--structure-map", options.structureMap,
                 "residue numbers of the structure, as a map (default: those of --map)");
  app.add_option("--chain", options.viewer.chain, "chain of the structure (default: any)");
  app.add_option("--model", options.viewer.model, "model, as the viewer names it (default: any)");
}

void refuse(const std::string& what) {
  throw ToolError(ToolStatus::usage, what + "; see --help");
}

/// A standard stream can carry one thing only.
void checkStreams(Options& options) {
  const std::string* const outputs[] = {&options.html,   &options.svg,      &options.tsv,
                                        &options.json,   &options.chimerax, &options.pymol,
                                        &options.bFactor};
  const std::string* const inputs[] = {&options.paths.summary, &options.paths.shifts,
                                       &options.paths.map, &options.structure,
                                       &options.structureMap};
  const auto isStream = [](const std::string* name) { return *name == "-"; };
  if (std::all_of(std::begin(outputs), std::end(outputs),
                  [](const std::string* name) { return name->empty(); })) {
    options.html = "-";
  }
  if (std::count_if(std::begin(outputs), std::end(outputs), isStream) > 1) {
    refuse("only one output can go to standard output");
  }
  if (std::count_if(std::begin(inputs), std::end(inputs), isStream) > 1) {
    refuse("only one file can come from standard input");
  }
  if (options.paths.summary == "-" && options.paths.shifts.empty()) {
    refuse("--shifts is needed when the summary comes from standard input");
  }
  if (options.bFactor.empty() != options.structure.empty()) {
    refuse("--bfactor and --structure go together");
  }
  checkViewerSettings(options.viewer);
}

void warn(const std::vector<std::string>& warnings, std::set<std::string>& said) {
  for (const std::string& warning : warnings) {
    if (said.insert(warning).second) {
      std::fprintf(stderr, "%s: warning: %s\n", program, warning.c_str());
    }
  }
}

/// All that was asked for, made before the first file is written.
std::vector<Output> makeOutputs(const Report& report, const Options& options,
                                std::set<std::string>& said) {
  std::vector<Output> outputs;
  const auto add = [&](const std::string& name, std::string (*text)(const Report&)) {
    if (!name.empty()) {
      outputs.push_back({name, text(report)});
    }
  };
  const auto addViewer = [&](const std::string& name, const ViewerText& viewer) {
    warn(viewer.warnings, said);
    outputs.push_back({name, viewer.text});
  };
  add(options.html, htmlPage);
  add(options.tsv, tsvText);
  add(options.json, jsonText);
  if (!options.chimerax.empty()) {
    addViewer(options.chimerax, chimeraxText(report, options.viewer));
  }
  if (!options.pymol.empty()) {
    addViewer(options.pymol, pymolText(report, options.viewer));
  }
  if (!options.bFactor.empty()) {
    addViewer(options.bFactor, bFactorText(report, options.viewer, readText(options.structure)));
  }
  if (!options.svg.empty()) {
    for (Output& picture : pictureFiles(report, options.svg)) {
      outputs.push_back(std::move(picture));
    }
  }
  return outputs;
}

/// Refuses outputs that are inputs or each other, while nothing is written.
void checkFiles(const Options& options, const std::vector<Output>& outputs) {
  const InputPaths& paths = options.paths;
  std::vector<std::string> inputs = {
      paths.summary, paths.shifts.empty() ? shiftTableName(paths.summary) : paths.shifts, paths.map,
      options.structure, options.structureMap};
  const std::string folder = tableFolder(paths.database);
  for (const char* table :
       {"/sslimit.tab", "/Pro.cs.tab", "/Pro.seq.tab", "/calls.tab", "/reref.tab"}) {
    inputs.push_back(folder + table);
  }
  std::vector<std::string> names;
  names.reserve(outputs.size());
  for (const Output& output : outputs) {
    names.push_back(output.path);
  }
  requireDistinctFiles(inputs, names);
}

int runReport(int argc, char** argv) {
  CLI::App app("Shows what the calls of citrans rest on: a page with pictures, and its parts.",
               program);
  Options options;
  declareOptions(app, options);
  if (!parseOptions(app, argc, argv)) {
    return static_cast<int>(ToolStatus::done);
  }
  checkStreams(options);
  Sources sources = readSources(options.paths);
  sources.clip = !options.noclip;
  const Report report = makeReport(sources, readDatabase(tableFolder(options.paths.database)));
  std::set<std::string> said;
  warn(report.warnings, said);
  if (!options.structureMap.empty()) {
    options.viewer.numbers = readAuthorMap(readText(options.structureMap));
  }
  const std::vector<Output> outputs = makeOutputs(report, options, said);
  checkFiles(options, outputs);
  if (!options.svg.empty() && !isPictureFile(options.svg)) {
    makeFolder(options.svg);
  }
  writeWholeFiles(outputs);
  return static_cast<int>(ToolStatus::done);
}

} // namespace

int main(int argc, char** argv) {
  return runTool(program, runReport, argc, argv);
}
