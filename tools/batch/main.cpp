#include <cstdio>

#include "tools/analyse/files.h"
#include "tools/batch/entries.h"
#include "tools/batch/one_entry.h"
#include "tools/batch/output_rows.h"
#include "tools/batch/process.h"
#include "tools/batch/report_pages.h"
#include "tools/batch/worker_pool.h"
#include "tools/common/command_options.h"
#include "tools/common/file_identity.h"
#include "tools/common/output.h"
#include "tools/common/program_tables.h"
#include "tools/common/tool.h"

namespace {

constexpr char program[] = "citrans-batch";
/// What a shell reports for a program that a signal ended, less the signal.
constexpr int signalStatus = 128;

struct Options {
  std::vector<std::string> inputs;
  std::string list;
  std::string output = "-";
  std::string journal;
  OutputKind kind = OutputKind::tsv;
  RunSettings run;
  PoolSettings pool;
  bool resume = false;
  bool quiet = false;
  bool noRereference = false;
  bool noclip = false;
  /// The scratch folder of a process that runs entries for another one of its kind.
  std::string serve;
};

void declareOptions(CLI::App& app, Options& options) {
  app.set_version_flag("--version", versionLine(program));
  app.add_option("inputs", options.inputs, "files and folders: NMR-STAR, NEF or tables");
  app.add_option("--list", options.list, "file with one input a line; - for standard input");
  app.add_option("-o,--output", options.output, "output file; - for standard output")
      ->capture_default_str();
  app.add_option("--format", options.kind, "tsv or jsonl")
      ->transform(CLI::CheckedTransformer(std::map<std::string, OutputKind>{
          {"tsv", OutputKind::tsv}, {"jsonl", OutputKind::jsonLines}}));
  app.add_option("-j,--jobs", options.pool.workers, "entries at a time")
      ->check(CLI::Range(1, 1024))
      ->capture_default_str();
  app.add_option("--timeout", options.run.seconds, "seconds for one entry; 0 for no limit")
      ->capture_default_str();
  app.add_flag("--resume", options.resume, "go on with a batch that was stopped");
  app.add_flag("--fail-fast", options.pool.failFast, "stop at the first entry that fails");
  app.add_flag("--quiet", options.quiet, "no progress");
  app.add_flag("--no-rereference", options.noRereference, "leave the referencing as it is");
  app.add_flag("--offset", options.run.analysis.offset,
               "correct as citrans -offset does, which spoils calls that use CG");
  app.add_flag("--iso", options.run.analysis.isotope, "correct for deuteration, as citrans -iso");
  app.add_flag("--noclip", options.noclip, "leave extreme shifts, as citrans -noclip");
  app.add_option("--journal", options.journal,
                 "file for results so far (default: the output's name and .journal, none for -)");
  app.add_option("--report", options.run.reports,
                 "folder for a page about each entry and index.html, the list of them");
  app.add_option("--tab", options.run.tables, "folder of the tables");
  app.add_option("--import", options.run.importer,
                 "a program that imports in place of the importer's library");
  app.add_option("--serve", options.serve)->group(""); // for its own processes
}

/// Fills what follows from the options, and the command of a process that runs entries: this
/// program with the same settings.
void completeSettings(Options& options) {
  RunSettings& run = options.run;
  run.tables = tableFolder(run.tables);
  run.analysis.rereference = !options.noRereference;
  run.analysis.clip = !options.noclip;
  run.analysis.report = !run.reports.empty();
  std::vector<std::string>& command = options.pool.command;
  command = {programBeside(program), "--tab", run.tables, "--timeout", std::to_string(run.seconds)};
  const std::pair<bool, const char*> switches[] = {{run.analysis.offset, "--offset"},
                                                   {run.analysis.isotope, "--iso"},
                                                   {options.noclip, "--noclip"},
                                                   {options.noRereference, "--no-rereference"}};
  for (const auto& [given, name] : switches) {
    if (given) {
      command.emplace_back(name);
    }
  }
  const std::pair<std::string, const char*> named[] = {{run.importer, "--import"},
                                                       {run.reports, "--report"}};
  for (const auto& [value, name] : named) {
    if (!value.empty()) {
      command.insert(command.end(), {name, value});
    }
  }
  command.emplace_back("--serve");
}

/// All that a stored result depends on besides its entry.
std::string settingsText(const Options& options) {
  std::string text = versionLine(program);
  for (std::size_t i = 1; i < options.pool.command.size(); ++i) {
    text += " " + options.pool.command[i];
  }
  return text;
}

int stoppedEarly(const Options& options, const std::vector<EntryResult>& results) {
  if (stoppedBySignal() != 0) {
    std::fprintf(stderr, "%s: stopped; go on with --resume\n", program);
    return signalStatus + stoppedBySignal();
  }
  for (const EntryResult& result : results) {
    if (!result.status.empty() && result.status != "ok") {
      throw ToolError(ToolStatus::badData, result.entry.path + ": " + result.status + ": " +
                                               result.message + "; no output, results so far in " +
                                               options.journal);
    }
  }
  return static_cast<int>(ToolStatus::badData);
}

/// Refuses outputs that are inputs or each other, while nothing is written.
void checkFiles(const Options& options, const std::vector<Entry>& entries,
                const std::vector<std::string>& outputs) {
  std::vector<std::string> inputs = {options.list};
  for (const Entry& entry : entries) {
    inputs.push_back(entry.path);
  }
  requireDistinctFiles(inputs, outputs);
}

int runBatch(int argc, char** argv) {
  CLI::App app("Predicts the prolines of many entries into one table.", program);
  Options options;
  declareOptions(app, options);
  if (!parseOptions(app, argc, argv)) {
    return static_cast<int>(ToolStatus::done);
  }
  completeSettings(options);
  if (!options.serve.empty()) {
    serveEntries(options.run, options.serve);
    return static_cast<int>(ToolStatus::done);
  }
  if (options.inputs.empty() && options.list.empty()) {
    throw ToolError(ToolStatus::usage, "no input; see --help");
  }
  if (options.journal.empty() && options.output != "-") {
    options.journal = options.output + ".journal";
  }
  // Refuses tables of the database before anything is written.
  static_cast<void>(analyse::Analyser(analyse::tablesIn(options.run.tables)));
  const std::vector<std::string> outputs = {options.output, options.journal};
  std::vector<Entry> entries = collectEntries(options.inputs, options.list, outputs);
  if (!options.run.reports.empty()) {
    leaveOutPages(options.run.reports, entries);
  }
  checkFiles(options, entries, outputs);
  if (!options.run.reports.empty()) {
    makePageFolders(options.run.reports);
  }
  Journal journal(options.journal, settingsText(options), options.resume);
  Progress progress(entries.size(), options.quiet);
  std::vector<EntryResult> results;
  if (!runAll(entries, options.pool, journal, progress, results)) {
    return stoppedEarly(options, results);
  }
  if (!options.run.reports.empty()) {
    writeIndex(options.run.reports, results);
  }
  writeWholeFile(options.output, formatOutput(results, options.kind));
  journal.remove();
  return static_cast<int>(ToolStatus::done);
}

} // namespace

int main(int argc, char** argv) {
  return runTool(program, runBatch, argc, argv);
}
