#include <cstdio>
#include <filesystem>

#include "table/file_io.h"
#include "table/gdb.h"
#include "tools/common/command_options.h"
#include "tools/common/file_identity.h"
#include "tools/common/output.h"
#include "tools/common/tool.h"
#include "tools/import/import.h"
#include "tools/import/structure_file.h"
#include "tools/import/structure_text.h"

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

void importShifts(const Options& options) {
  if (options.listContents) {
    writeWholeFile(options.output, depositionContentsOfFile(options.input));
    return;
  }
  Imported imported = importDepositionFile(options.input, options.choice);
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
