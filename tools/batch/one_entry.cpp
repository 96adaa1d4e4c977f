#include "tools/batch/one_entry.h"

#include <cstdio>
#include <filesystem>
#include <unistd.h>

#include "table/file_io.h"
#include "tools/analyse/files.h"
#include "tools/batch/entry_json.h"
#include "tools/batch/entry_rows.h"
#include "tools/batch/process.h"
#include "tools/batch/report_pages.h"
#include "tools/common/output.h"
#include "tools/common/program_tables.h"

namespace fs = std::filesystem;

namespace {

/// The lines of a stream that tell something: without the program's name and blank lines, joined.
std::string messageIn(const std::string& file, const std::string& program) {
  const std::string text = readWholeFile(file).value_or("");
  std::string_view rest = text;
  std::string said;
  for (std::string_view line; takeLine(rest, line);) {
    const std::string_view name = line.substr(0, program.size() + 2);
    said += std::string(line.substr(name == program + ": " ? name.size() : 0)) + "\n";
  }
  return joinedLines(said);
}

/// SIGALRM ends this process when what is done meanwhile takes longer.
class TimeLimit {
 public:
  explicit TimeLimit(unsigned seconds) { alarm(seconds); }
  ~TimeLimit() { alarm(0); }
  TimeLimit(const TimeLimit&) = delete;
  TimeLimit& operator=(const TimeLimit&) = delete;
};

/// True when the process ended well; otherwise fills status and message.
bool endedWell(const ProcessEnd& end, EntryResult& result, const std::string& message) {
  if (end.signal != 0) {
    result.status = "crashed";
    result.message = signalText(end.signal) + (message.empty() ? "" : " | ") + message;
    return false;
  }
  if (end.status != 0) {
    result.status = "import";
    result.message = message.empty() ? "exit status " + std::to_string(end.status) : message;
    return false;
  }
  return true;
}

/// What the program that the user named makes of a deposition; nothing when it fails.
std::optional<Imported> importByProgram(const std::string& path, const RunSettings& settings,
                                        const std::string& scratch, EntryResult& result) {
  const std::string table = scratch + "/in.tab";
  const std::string map = scratch + "/map.tsv";
  const std::string error = scratch + "/stderr";
  const ProcessEnd end =
      runProcess({settings.importer, fs::absolute(path).string(), "-o", table, "--map", map},
                 scratch + "/stdout", error, settings.seconds);
  result.message = messageIn(error, "citrans-import");
  if (!endedWell(end, result, result.message)) {
    return std::nullopt;
  }
  Imported imported;
  imported.table = readWholeFile(table).value_or("");
  imported.map = readWholeFile(map).value_or("");
  return imported;
}

/// Everything there is to say of the entry; nothing when the importing program fails.
std::optional<analyse::Result> analyseEntry(const std::string& bytes, const RunSettings& settings,
                                            const analyse::Analyser& analyser,
                                            const std::string& scratch, EntryResult& result) {
  const std::string name = fileName(result.entry.path);
  if (settings.importer.empty() || isProgramTable(bytes)) {
    const TimeLimit limit(settings.seconds);
    return analyser.analyse({name, bytes}, std::nullopt, settings.analysis);
  }
  const std::optional<Imported> imported =
      importByProgram(result.entry.path, settings, scratch, result);
  if (!imported) {
    return std::nullopt;
  }
  const TimeLimit limit(settings.seconds);
  return analyser.analyse(*imported, name, settings.analysis);
}

void refuse(const analyse::Refusal& refusal, EntryResult& result) {
  result.status = refusal.step() == analyse::Step::import ? "import" : "refused";
  result.message = joinedLines(refusal.said());
}

void runReadable(const std::string& bytes, const RunSettings& settings,
                 const analyse::Analyser& analyser, const std::string& scratch,
                 EntryResult& result) {
  try {
    const std::optional<analyse::Result> found =
        analyseEntry(bytes, settings, analyser, scratch, result);
    if (!found) {
      return;
    }
    takeResult(*found, result);
    result.status = "ok";
    if (!settings.reports.empty()) {
      writeEntryPage(settings.reports, *found, result);
    }
  } catch (const analyse::Refusal& refusal) {
    if (refusal.step() != analyse::Step::report) {
      refuse(refusal, result);
      return;
    }
    // The predictions stand without their page.
    RunSettings without = settings;
    without.reports.clear();
    without.analysis.report = false;
    result.message.clear();
    runReadable(bytes, without, analyser, scratch, result);
    addMessage(std::string("no page could be made: ") + refusal.what(), result);
  } catch (const std::exception& fault) {
    result.status = "refused";
    addMessage(fault.what(), result);
  }
}

} // namespace

EntryResult runEntry(const std::string& path, const RunSettings& settings,
                     const analyse::Analyser& analyser, const std::string& scratch) {
  EntryResult result;
  result.entry.path = path;
  std::error_code error;
  const std::optional<std::string> bytes = readWholeFile(path);
  if (!fs::is_regular_file(path, error) || !bytes) {
    result.status = "missing";
    result.message = "cannot read the file";
    return result;
  }
  runReadable(*bytes, settings, analyser, scratch, result);
  for (const fs::directory_entry& left : fs::directory_iterator(scratch)) {
    fs::remove(left.path());
  }
  return result;
}

void serveEntries(const RunSettings& settings, const std::string& scratch) {
  const analyse::Analyser analyser(analyse::tablesIn(settings.tables));
  std::string path;
  for (int c = std::getchar(); c != EOF; c = std::getchar()) {
    if (c != '\0') {
      path += static_cast<char>(c);
      continue;
    }
    writeWholeFile("-", lineOf(toJson(runEntry(path, settings, analyser, scratch))));
    path.clear();
  }
}
