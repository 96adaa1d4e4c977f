#include "tools/batch/one_entry.h"

#include <cstdio>
#include <filesystem>
#include <map>
#include <unistd.h>

#include "table/file_io.h"
#include "table/gdb.h"
#include "tools/batch/entry_json.h"
#include "tools/batch/process.h"
#include "tools/common/output.h"
#include "tools/common/program_tables.h"
#include "tools/import/import.h"

namespace fs = std::filesystem;

namespace {

/// Files of one entry below the scratch folder.
struct ScratchFiles {
  explicit ScratchFiles(const std::string& folder)
      : table(folder + "/in.tab"), map(folder + "/map.tsv"), output(folder + "/stdout"),
        error(folder + "/stderr") {}
  std::string table, map, output, error;
};

std::string contentOf(const std::string& path) {
  return readWholeFile(path).value_or("");
}

/// The lines of a stream that tell something: without the banner and blank lines, joined.
std::string messageIn(const std::string& file, const std::string& program) {
  std::string message;
  bool banner = false;
  const std::string text = contentOf(file);
  std::string_view rest = text;
  for (std::string_view line; takeLine(rest, line);) {
    std::string simple = GDB::simplifyWhiteSpace(std::string(line));
    if (simple.substr(0, 5) == "*----") {
      banner = !banner;
      continue;
    }
    if (simple.substr(0, program.size() + 2) == program + ": ") {
      simple.erase(0, program.size() + 2);
    }
    if (!banner && !simple.empty()) {
      message += (message.empty() ? "" : " | ") + simple;
    }
  }
  return message;
}

/// Author numbers by table number, from the importer's map; empty for a table.
std::map<std::string, std::string> readMap(std::string_view map) {
  std::map<std::string, std::string> authors;
  for (std::string_view line; takeLine(map, line);) {
    const std::vector<std::string> cells = GDB::split("\t", std::string(line));
    if (cells.size() >= 2) {
      authors[cells[0]] = cells[1];
    }
  }
  return authors;
}

/// SIGALRM ends this process when what is done meanwhile takes longer.
class TimeLimit {
 public:
  explicit TimeLimit(unsigned seconds) { alarm(seconds); }
  ~TimeLimit() { alarm(0); }
  TimeLimit(const TimeLimit&) = delete;
  TimeLimit& operator=(const TimeLimit&) = delete;
};

void addMessage(EntryResult& result, const std::string& kind, const std::string& line) {
  result.message += (result.message.empty() ? "" : " | ") + kind + GDB::simplifyWhiteSpace(line);
}

/// True when the process ended well; otherwise fills status and message.
bool endedWell(const ProcessEnd& end, EntryResult& result, const char* failure,
               const std::string& message) {
  if (end.signal != 0) {
    result.status = "crashed";
    result.message = signalText(end.signal) + (message.empty() ? "" : " | ") + message;
    return false;
  }
  if (end.status != 0) {
    result.status = failure;
    result.message = message.empty() ? "exit status " + std::to_string(end.status) : message;
    return false;
  }
  return true;
}

/// What the program reads for an entry.
struct Table {
  std::string text;
  std::string map; ///< the importer's, or empty
};

/// The importer's table, by its library.
bool importHere(const std::string& path, const RunSettings& settings, Table& table,
                EntryResult& result) {
  const TimeLimit limit(settings.seconds);
  try {
    Imported imported = importDepositionFile(path, Choice());
    for (const std::string& remark : imported.remarks) {
      addMessage(result, "", remark);
    }
    for (const std::string& warning : imported.warnings) {
      addMessage(result, "warning: ", warning);
    }
    table = {std::move(imported.table), std::move(imported.map)};
    return true;
  } catch (const std::exception& refusal) {
    result.status = "import";
    addMessage(result, "", refusal.what());
    return false;
  }
}

/// The importer's table, by the program that the user named.
bool importByProgram(const std::string& path, const RunSettings& settings,
                     const ScratchFiles& files, Table& table, EntryResult& result) {
  const ProcessEnd end =
      runProcess({settings.importer, path, "-o", files.table, "--map", files.map}, files.output,
                 files.error, settings.seconds);
  result.message = messageIn(files.error, "citrans-import");
  if (!endedWell(end, result, "import", result.message)) {
    return false;
  }
  table = {contentOf(files.table), contentOf(files.map)};
  return true;
}

/// The entry's table: the file itself, or what the importer makes of it.
bool makeTable(const ScratchFiles& files, const RunSettings& settings, Table& table,
               EntryResult& result) {
  const std::string& path = result.entry.path;
  std::error_code error;
  std::optional<std::string> text = readWholeFile(path);
  if (!fs::is_regular_file(path, error) || !text) {
    result.status = "missing";
    result.message = "cannot read the file";
    return false;
  }
  if (isProgramTable(*text)) {
    table.text = std::move(*text);
    return true;
  }
  const std::string absolute = fs::absolute(path).string();
  return settings.importer.empty() ? importHere(absolute, settings, table, result)
                                   : importByProgram(absolute, settings, files, table, result);
}

void predict(const Table& table, const RunSettings& settings, const Predictor& predictor,
             EntryResult& result) {
  const TimeLimit limit(settings.seconds);
  const std::string said = std::move(result.message);
  result.message.clear();
  predictor.predict(table.text, result);
  if (result.status == "ok" && !said.empty()) {
    result.message = said + (result.message.empty() ? "" : " | ") + result.message;
  }
  const std::map<std::string, std::string> authors = readMap(table.map);
  for (ProlineRow& row : result.prolines) {
    const auto author = authors.find(row.resid);
    row.author = author == authors.end() ? row.resid : author->second;
  }
}

void writePage(const ScratchFiles& files, const RunSettings& settings, const Table& table,
               const std::string& scratch, EntryResult& result) {
  std::vector<Output> inputs = {{files.table, table.text}};
  if (!table.map.empty()) {
    inputs.push_back({files.map, table.map});
  }
  writeWholeFiles(inputs);
  writeEntryPage(settings.pages, files.table, files.map, scratch, result);
}

} // namespace

EntryResult runEntry(const std::string& path, const RunSettings& settings,
                     const Predictor& predictor, const std::string& scratch) {
  EntryResult result;
  result.entry.path = path;
  const ScratchFiles files(scratch);
  Table table;
  if (makeTable(files, settings, table, result)) {
    predict(table, settings, predictor, result);
  }
  if (result.status == "ok" && !settings.pages.folder.empty()) {
    writePage(files, settings, table, scratch, result);
  }
  for (const fs::directory_entry& left : fs::directory_iterator(scratch)) {
    fs::remove(left.path());
  }
  return result;
}

void serveEntries(const RunSettings& settings, const std::string& scratch) {
  const Predictor predictor(settings.prediction);
  std::string path;
  for (int c = std::getchar(); c != EOF; c = std::getchar()) {
    if (c != '\0') {
      path += static_cast<char>(c);
      continue;
    }
    writeWholeFile("-", lineOf(toJson(runEntry(path, settings, predictor, scratch))));
    path.clear();
  }
}
