#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <set>

#include "table/file_io.h"
#include "tools/analyse/files.h"
#include "tools/common/file_identity.h"
#include "tools/common/output.h"
#include "tools/common/program_tables.h"
#include "tools/import/gzip_text.h"
#include "tools/report/command_line.h"
#include "tools/report/exports.h"
#include "tools/report/files.h"
#include "tools/report/page.h"
#include "tools/report/pictures_export.h"
#include "tools/report/table_file.h"

namespace {

constexpr char program[] = "citrans-report";

/// What the outputs are made of.
struct Material {
  Report report;
  NamedText structure;       ///< PDB file to set the B factors of; without a name for none
  ViewerSettings viewer;     ///< for commands
  ViewerSettings structured; ///< for that file
};

[[noreturn]] void refuse(const std::string& what) {
  throw ToolError(ToolStatus::usage, what + "; see --help");
}

/// Every warning once.
void warn(const std::vector<std::string>& warnings, std::set<std::string>& said) {
  for (const std::string& warning : warnings) {
    if (said.insert(warning).second) {
      std::fprintf(stderr, "%s: warning: %s\n", program, warning.c_str());
    }
  }
}

/// Whether any line begins as one of a STAR file; depositions without a header are about.
bool isStar(std::string_view text) {
  for (std::string_view line; takeLine(text, line);) {
    const std::string_view word = line.substr(std::min(line.find_first_not_of(" \t"), line.size()));
    for (const char* const keyword : {"data_", "loop_", "save_"}) {
      if (word.substr(0, 5) == keyword) {
        return true;
      }
    }
  }
  return false;
}

/// Whether a text holds shifts to predict from; any other table is taken for a summary.
bool isShifts(const NamedText& input) {
  if (isGzip(input.text) || isStar(input.text)) {
    return true;
  }
  if (!isProgramTable(input.text)) {
    throw ToolError(ToolStatus::badData,
                    input.name + ": no table (no VARS and FORMAT lines), NMR-STAR or NEF file");
  }
  const TableFile table(input);
  return table.hasColumn("ATOMNAME") && !table.hasColumn("CS_OBS");
}

/// What a file is called in titles.
std::string fileName(const NamedText& file, const std::string& path) {
  return path == "-" ? "input" : std::filesystem::path(file.name).filename().string();
}

/// Predicts from shifts, and compares with the structure when there is one.
Material analyseShifts(const analyse::Analyser& analyser, const NamedText& shifts,
                       const ReportOptions& options, std::set<std::string>& said) {
  if (options.forSummary) {
    refuse("--shifts and --map are for a summary, and this holds shifts");
  }
  NamedText structure;
  std::optional<analyse::File> reference;
  if (!options.structure.empty()) {
    structure = readText(options.structure);
    structure.name = fileName(structure, options.structure);
    reference = {structure.name, structure.text};
  }
  analyse::Result result =
      analyser.analyse({fileName(shifts, options.input), shifts.text}, reference, options.analysis);
  warn(result.warnings(), said);
  Material material;
  material.report = std::move(result.report);
  material.structure = {result.structureName, std::move(result.structure)};
  material.viewer = material.structured = options.viewer;
  for (const auto& [residue, name] : material.report.inputs.sequence) {
    material.structured.numbers[residue] = std::to_string(residue); // it was renumbered
  }
  return material;
}

std::string shiftsOf(const ReportOptions& options) {
  return options.shifts.empty() ? shiftTableName(options.input) : options.shifts;
}

/// Takes what citrans wrote.
Material readResults(const analyse::Analyser& analyser, NamedText summary,
                     const ReportOptions& options, std::set<std::string>& said) {
  if (options.forShifts) {
    refuse("--entity, --list, --copy, --iso and --no-rereference are for shifts, and this is a "
           "summary");
  }
  Sources sources;
  sources.summary = std::move(summary);
  sources.shifts = readText(shiftsOf(options));
  if (!options.map.empty()) {
    sources.map = readText(options.map);
  }
  sources.clip = options.analysis.clip;
  Material material;
  material.report = analyser.report(sources);
  warn(material.report.warnings, said);
  material.viewer = options.viewer;
  if (!options.structureMap.empty()) {
    material.viewer.numbers = readAuthorMap(readText(options.structureMap));
  }
  material.structured = material.viewer;
  if (!options.structure.empty()) {
    material.structure = readText(options.structure);
  }
  return material;
}

/// All that was asked for, made before the first file is written.
std::vector<Output> makeOutputs(const Material& material, const ReportOptions& options,
                                std::set<std::string>& said) {
  const Report& report = material.report;
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
    addViewer(options.chimerax, chimeraxText(report, material.viewer));
  }
  if (!options.pymol.empty()) {
    addViewer(options.pymol, pymolText(report, material.viewer));
  }
  if (!options.bFactor.empty()) {
    addViewer(options.bFactor, bFactorText(report, material.structured, material.structure));
  }
  if (!options.svg.empty()) {
    for (Output& picture : pictureFiles(report, options.svg)) {
      outputs.push_back(std::move(picture));
    }
  }
  return outputs;
}

/// Refuses outputs that are inputs or each other, while nothing is written.
void checkFiles(const ReportOptions& options, const std::string& tables,
                const std::vector<Output>& outputs) {
  std::vector<std::string> inputs = {options.input, shiftsOf(options), options.map,
                                     options.structure, options.structureMap};
  for (const auto& [name, text] : analyse::builtInTables()) {
    inputs.push_back(tables + "/" + name);
  }
  std::vector<std::string> names;
  names.reserve(outputs.size());
  for (const Output& output : outputs) {
    names.push_back(output.path);
  }
  requireDistinctFiles(inputs, names);
}

int runReport(int argc, char** argv) {
  ReportOptions options;
  if (!parseReportOptions(argc, argv, options)) {
    return static_cast<int>(ToolStatus::done);
  }
  const std::string tables = tableFolder(options.tables);
  NamedText input = readText(options.input);
  const bool shifts = isShifts(input);
  if (!shifts && options.input == "-" && options.shifts.empty()) {
    refuse("--shifts is needed when the summary comes from standard input");
  }
  const analyse::Analyser analyser(analyse::tablesIn(tables));
  std::set<std::string> said;
  const Material material = shifts ? analyseShifts(analyser, input, options, said)
                                   : readResults(analyser, std::move(input), options, said);
  const std::vector<Output> outputs = makeOutputs(material, options, said);
  checkFiles(options, tables, outputs);
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
