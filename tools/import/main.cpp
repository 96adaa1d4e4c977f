#include <cstdio>
#include <filesystem>

#include "table/file_io.h"
#include "table/gdb.h"
#include "tools/common/command_options.h"
#include "tools/common/file_identity.h"
#include "tools/common/output.h"
#include "tools/common/program_tables.h"
#include "tools/common/tool.h"
#include "tools/import/import.h"
#include "tools/import/structure_file.h"
#include "tools/import/structure_text.h"
#include "tools/referencing/database.h"

namespace {

constexpr char program[] = "citrans-import";

struct Options {
  std::string input;
  std::string output = "-";
  std::string map;
  Choice choice;
  bool listContents = false;
  bool quiet = false;
  std::string structure;
  StructureChoice structureChoice;
  bool rereference = false;
  bool isotope = false;
  std::string shiftBy;
  std::string tabFolder;
};

void declareOptions(CLI::App& app, Options& options) {
  app.set_version_flag("--version", versionLine(program));
  app.add_option("input", options.input,
                 "NMR-STAR or NEF file, - for standard input; with --structure the input table")
      ->required();
  app.add_option("-o,--output", options.output, "output file; - for standard output")
      ->capture_default_str();
  app.add_option("--map", options.map, "write table number, author number and residue name here");
  app.add_flag("--list-contents", options.listContents,
               "show molecules and shift lists, then stop");
  app.add_option("--entity", options.choice.entity, "molecule to take, by ID or chain");
  app.add_option("--list", options.choice.list, "shift list to take, by ID or name");
  app.add_option("--copy", options.choice.copy,
                 "copy of the molecule to take, where the assembly has several");
  app.add_flag("--oxidised-by-cb,--oxidized-by-cb", options.choice.oxidisedByCb,
               "cysteines with a CB above 34 ppm are oxidised");
  app.add_flag("--quiet", options.quiet, "say nothing of decisions, only warnings");
  app.add_option("--structure", options.structure,
                 "mmCIF or PDB file, gzipped or not: write it renumbered to the input table");
  auto* const estimate =
      app.add_flag("--rereference", options.rereference,
                   "estimate referencing offsets and take them off; the input may be a table");
  app.add_flag("--iso", options.isotope,
               "for --rereference: the sample is deuterated, as for citrans -iso")
      ->needs(estimate);
  app.add_option("--shift-by", options.shiftBy,
                 "shift the nuclei by what is known, as in C=-2.36,HA=0.02 (ppm; C: all carbons, "
                 "CA: with CB and side chains, CO: carbonyl); the input may be a table")
      ->excludes(estimate);
  app.add_option("--tab", options.tabFolder, "folder of the tables, for --rereference");
  app.add_option("--chain", options.structureChoice.chain, "chain of the structure");
  app.add_option("--model", options.structureChoice.model, "model of the structure");
}

void say(const char* kind, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) {
    std::string text = line;
    for (char& c : text) {
      c = static_cast<unsigned char>(c) < ' ' || c == '\x7f' ? ' ' : c;
    }
    std::fprintf(stderr, "%s: %s%s\n", program, kind, text.c_str());
  }
}

/// A deposition as a table, or a table as it is where one may be corrected.
Imported readShifts(const Options& options) {
  if (!options.rereference && options.shiftBy.empty()) {
    return importDepositionFile(options.input, options.choice);
  }
  std::string text = readInput(options.input);
  if (!isProgramTable(text)) {
    return options.input == "-" ? importDeposition(text, options.input, options.choice)
                                : importDepositionFile(options.input, options.choice);
  }
  if (!options.map.empty()) {
    throw ToolError(ToolStatus::usage, "a table has no numbers of authors for --map");
  }
  Imported table;
  table.table = std::move(text);
  return table;
}

void correctReferencing(const Options& options, Imported& imported) {
  referencing::Corrected corrected;
  if (options.rereference) {
    const referencing::Database database(tableFolder(options.tabFolder),
                                         options.isotope ? CITRANS::Options{{"iso", "true"}}
                                                         : CITRANS::Options());
    corrected = referencing::rereference(database, imported.table);
  } else if (!options.shiftBy.empty()) {
    corrected = referencing::shiftBy(referencing::parseShiftBy(options.shiftBy), imported.table);
  } else {
    return;
  }
  imported.table = std::move(corrected.text);
  imported.remarks.insert(imported.remarks.end(), corrected.notes.begin(), corrected.notes.end());
}

void importShifts(const Options& options) {
  if (options.listContents) {
    writeWholeFile(options.output, depositionContentsOfFile(options.input));
    return;
  }
  Imported imported = readShifts(options);
  correctReferencing(options, imported);
  std::vector<Output> outputs;
  outputs.push_back({options.output, std::move(imported.table)});
  if (!options.map.empty()) {
    outputs.push_back({options.map, std::move(imported.map)});
  }
  writeWholeFiles(outputs);
  if (!options.quiet) {
    say("", imported.remarks);
  }
  say("warning: ", imported.warnings);
}

void importStructure(const Options& options) {
  const bool piped = options.input == "-"; // which can be read once only
  if (!piped) {
    readInput(options.input);
  }
  const GDB table(piped ? "/dev/stdin" : options.input);
  std::string letters;
  for (const auto& [number, name] : table.residueNames()) {
    letters += name;
  }
  if (letters.empty() || table.residueNames().begin()->first != 1) {
    throw ToolError(ToolStatus::badData,
                    options.input + ": no table with a sequence from residue 1");
  }
  const Structure structure = readStructure(readInput(options.structure), options.structure);
  const FittedStructure fitted =
      fitStructure(structure.models, letters, options.structureChoice, options.structure);
  writeWholeFile(options.output, fitted.pdb);
  if (!options.quiet) {
    say("", structureNotes(fitted));
  }
  say("warning: ", structure.warnings);
  say("warning: ", structureWarnings(fitted));
}

int runImport(int argc, char** argv) {
  CLI::App app("Turns an NMR deposition into the input table of citrans.", program);
  Options options;
  declareOptions(app, options);
  if (!parseOptions(app, argc, argv)) {
    return static_cast<int>(ToolStatus::done);
  }
  if (options.input == "-" && options.structure == "-") {
    throw ToolError(ToolStatus::usage, "table and structure cannot both come from standard input");
  }
  if (options.output == "-" && options.map == "-") {
    throw ToolError(ToolStatus::usage, "table and map cannot both go to standard output");
  }
  requireDistinctFiles({options.input, options.structure}, {options.output, options.map});
  if (options.structure.empty()) {
    importShifts(options);
  } else {
    importStructure(options);
  }
  return static_cast<int>(ToolStatus::done);
}

} // namespace

int main(int argc, char** argv) {
  return runTool(program, runImport, argc, argv);
}
