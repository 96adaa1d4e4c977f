#include <cstdio>

#include "tools/batch/entries.h"
#include "tools/batch/output_rows.h"
#include "tools/batch/process.h"
#include "tools/batch/worker_pool.h"
#include "tools/common/command_options.h"
#include "tools/common/file_identity.h"
#include "tools/common/output.h"
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
  bool offset = false;
  bool iso = false;
  bool noclip = false;
};

void declareOptions(CLI::App& app, Options& options) {
  options.run.citrans = programBeside("citrans");
  options.run.importer = programBeside("citrans-import");
  options.run.pages.report = programBeside("citrans-report");
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
  app.add_flag("--offset", options.offset, "run citrans with -offset");
  app.add_flag("--iso", options.iso, "run citrans with -iso");
  app.add_flag("--noclip", options.noclip, "run citrans with -noclip");
  app.add_option("--journal", options.journal,
                 "file for results so far (default: the output's name and .journal, none for -)");
  app.add_option("--report", options.run.pages.folder,
                 "folder for a page about each entry and index.html, the list of them");
  app.add_option("--citrans", options.run.citrans, "the program to run");
  app.add_option("--import", options.run.importer, "the importer to run");
}

void passOn(Options& options) {
  const std::pair<bool, const char*> switches[] = {
      {options.offset, "-offset"}, {options.iso, "-iso"}, {options.noclip, "-noclip"}};
  for (const auto& [given, name] : switches) {
    if (given) {
      options.run.options.emplace_back(name);
    }
  }
  options.run.pages.citrans = options.run.citrans;
  options.run.pages.options = options.run.options;
  options.run.pages.seconds = options.run.seconds;
  if (options.journal.empty() && options.output != "-") {
    options.journal = options.output + ".journal";
  }
}

/// All that a stored result depends on besides its entry.
std::string settingsText(const Options& options) {
  std::string text = versionLine(program);
  for (const std::string& option : options.run.options) {
    text += " " + option;
  }
  // A stored result has its page only where it was made.
  text += options.run.pages.folder.empty() ? "" : " --report " + options.run.pages.folder;
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
  if (options.inputs.empty() && options.list.empty()) {
    throw ToolError(ToolStatus::usage, "no input; see --help");
  }
  passOn(options);
  const std::vector<std::string> outputs = {options.output, options.journal};
  std::vector<Entry> entries = collectEntries(options.inputs, options.list, outputs);
  if (!options.run.pages.folder.empty()) {
    leaveOutPages(options.run.pages, entries);
  }
  checkFiles(options, entries, outputs);
  if (!options.run.pages.folder.empty()) {
    makePageFolders(options.run.pages);
  }
  Journal journal(options.journal, settingsText(options), options.resume);
  Progress progress(entries.size(), options.quiet);
  std::vector<EntryResult> results;
  if (!runAll(entries, options.run, options.pool, journal, progress, results)) {
    return stoppedEarly(options, results);
  }
  if (!options.run.pages.folder.empty()) {
    writeIndex(options.run.pages, results);
  }
  writeWholeFile(options.output, formatOutput(results, options.kind));
  journal.remove();
  return static_cast<int>(ToolStatus::done);
}

} // namespace

int main(int argc, char** argv) {
  return runTool(program, runBatch, argc, argv);
}
