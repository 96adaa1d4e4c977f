#include <cstdio>
#include <filesystem>

#include "tools/common/command_options.h"
#include "tools/common/file_identity.h"
#include "tools/common/output.h"
#include "tools/common/tool.h"
#include "tools/report/exports.h"
#include "tools/report/page.h"
#include "tools/report/pictures_export.h"

namespace {

constexpr char program[] = "citrans-report";

struct Options {
  InputPaths paths;
  bool noclip = false;
  std::string html, svg, tsv, json, chimerax, pymol;
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
}

void refuse(const std::string& what) {
  throw ToolError(ToolStatus::usage, what + "; see --help");
}

/// A standard stream can carry one thing only.
void checkStreams(Options& options) {
  if (options.html.empty() && options.svg.empty() && options.tsv.empty() && options.json.empty() &&
      options.chimerax.empty() && options.pymol.empty()) {
    options.html = "-";
  }
  int outputs = 0;
  for (const std::string* name : {&options.html, &options.svg, &options.tsv, &options.json,
                                  &options.chimerax, &options.pymol}) {
    outputs += *name == "-" ? 1 : 0;
  }
  int inputs = 0;
  for (const std::string* name :
       {&options.paths.summary, &options.paths.shifts, &options.paths.map}) {
    inputs += *name == "-" ? 1 : 0;
  }
  if (outputs > 1) {
    refuse("only one output can go to standard output");
  }
  if (inputs > 1) {
    refuse("only one file can come from standard input");
  }
  if (options.paths.summary == "-" && options.paths.shifts.empty()) {
    refuse("--shifts is needed when the summary comes from standard input");
  }
}

/// Refuses outputs that are inputs or each other, while nothing is written.
void checkFiles(const InputPaths& paths, const std::vector<Output>& outputs) {
  std::vector<std::string> inputs = {
      paths.summary, paths.shifts.empty() ? shiftTableName(paths.summary) : paths.shifts,
      paths.map};
  const std::string folder = databaseFolder(paths.database);
  for (const char* table : {"/sslimit.tab", "/Pro.cs.tab", "/Pro.seq.tab"}) {
    inputs.push_back(folder + table);
  }
  std::vector<std::string> names;
  for (const Output& output : outputs) {
    names.push_back(output.path);
  }
  requireDistinctFiles(inputs, names);
}

void makeFolder(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error) {
    throw ToolError(ToolStatus::cannotWrite, path + ": cannot make the folder");
  }
}

void writeAll(const Report& report, const Options& options) {
  std::vector<Output> outputs;
  const auto write = [&](const std::string& name, std::string (*text)(const Report&)) {
    if (!name.empty()) {
      outputs.push_back({name, text(report)});
    }
  };
  write(options.html, htmlPage);
  write(options.tsv, tsvText);
  write(options.json, jsonText);
  write(options.chimerax, chimeraxText);
  write(options.pymol, pymolText);
  if (!options.svg.empty()) {
    const std::vector<Output> pictures = pictureFiles(report, options.svg);
    outputs.insert(outputs.end(), pictures.begin(), pictures.end());
  }
  checkFiles(options.paths, outputs);
  if (!options.svg.empty() && !isPictureFile(options.svg)) {
    makeFolder(options.svg);
  }
  writeWholeFiles(outputs);
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
  const Report report = makeReport(options.paths, !options.noclip);
  for (const std::string& warning : report.warnings) {
    std::fprintf(stderr, "%s: warning: %s\n", program, warning.c_str());
  }
  writeAll(report, options);
  return static_cast<int>(ToolStatus::done);
}

} // namespace

int main(int argc, char** argv) {
  return runTool(program, runReport, argc, argv);
}
