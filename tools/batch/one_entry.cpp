#include "tools/batch/one_entry.h"

#include <cstring>
#include <filesystem>
#include <map>

#include "app/citrans.h"
#include "table/file_io.h"
#include "table/number.h"
#include "tools/batch/process.h"

namespace fs = std::filesystem;

namespace {

/// Files of one entry below the scratch folder.
struct ScratchFiles {
  explicit ScratchFiles(const std::string& folder)
      : table(folder + "/in.tab"), map(folder + "/map.tsv"), summary(folder + "/pred.tab"),
        output(folder + "/stdout"), error(folder + "/stderr") {}
  std::string table, map, summary, output, error;
};

std::string contentOf(const std::string& path) {
  return readWholeFile(path).value_or("");
}

/// Whether the text is a table of the program's own: it has a VARS and a FORMAT line.
bool isTable(const std::string& text) {
  bool vars = false;
  bool format = false;
  std::string_view rest = text;
  for (std::string_view line; takeLine(rest, line) && !(vars && format);) {
    const std::string keyword =
        GDB::split(" ", GDB::simplifyWhiteSpace(std::string(line.substr(0, 80)) + " ."))[0];
    vars = vars || strcasecmp(keyword.c_str(), "VARS") == 0;
    format = format || strcasecmp(keyword.c_str(), "FORMAT") == 0;
  }
  return vars && format;
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
std::map<std::string, std::string> readMap(const std::string& file) {
  std::map<std::string, std::string> authors;
  const std::string text = contentOf(file);
  std::string_view rest = text;
  for (std::string_view line; takeLine(rest, line);) {
    const std::vector<std::string> cells = GDB::split("\t", std::string(line));
    if (cells.size() >= 2) {
      authors[cells[0]] = cells[1];
    }
  }
  return authors;
}

std::vector<ProlineRow> readSummary(const ScratchFiles& files) {
  const std::map<std::string, std::string> authors = readMap(files.map);
  const GDB summary(files.summary);
  std::vector<ProlineRow> rows;
  for (std::size_t at = 0; at < summary.rowCount(); ++at) {
    const auto cell = [&](const char* name) { return std::string(summary.cell(at, name)); };
    ProlineRow row;
    row.resid = cell("RESID");
    const auto author = authors.find(row.resid);
    row.author = author == authors.end() ? row.resid : author->second;
    row.before = cell("RESNAME_R1");
    row.after = cell("RESNAME_R3");
    row.counts[0] = cell("CS_CNT1");
    row.counts[1] = cell("CS_CNT2");
    row.counts[2] = cell("CS_CNT3");
    row.cgShift = parseDouble(cell("CG_SHIFT")) < shift::missingFrom ? cell("CG_SHIFT") : "";
    row.pCis = cell("P_CIS");
    row.pCisNorm = cell("P_CIS_NORM");
    rows.push_back(row);
  }
  return rows;
}

/// True when the process ended well; otherwise fills status and message.
bool endedWell(const ProcessEnd& end, EntryResult& result, const char* failure,
               const std::string& message) {
  if (end.signal != 0) {
    result.status = "crashed";
    result.message = std::string("signal ") + std::to_string(end.signal) + " (" +
                     strsignal(end.signal) + ")" + (message.empty() ? "" : " | ") + message;
    return false;
  }
  if (end.status != 0) {
    result.status = failure;
    result.message = message.empty() ? "exit status " + std::to_string(end.status) : message;
    return false;
  }
  return true;
}

/// Makes the entry's table: the file itself, or what the importer makes of it.
bool makeTable(const ScratchFiles& files, const RunSettings& settings, EntryResult& result) {
  const std::string& path = result.entry.path;
  std::error_code error;
  const std::optional<std::string> text = readWholeFile(path);
  if (!fs::is_regular_file(path, error) || !text) {
    result.status = "missing";
    result.message = "cannot read the file";
    return false;
  }
  if (isTable(*text)) {
    // A link, since the program's command line cannot hold every file name.
    fs::create_symlink(fs::absolute(path), files.table);
    return true;
  }
  const ProcessEnd end = runProcess(
      {settings.importer, fs::absolute(path).string(), "-o", files.table, "--map", files.map},
      files.output, files.error, settings.seconds);
  result.message = messageIn(files.error, "citrans-import");
  return endedWell(end, result, "import", result.message);
}

void predict(const ScratchFiles& files, const RunSettings& settings, EntryResult& result) {
  std::vector<std::string> command = {settings.citrans, "-in", files.table, "-sum", files.summary};
  command.insert(command.end(), settings.options.begin(), settings.options.end());
  const ProcessEnd end = runProcess(command, files.output, files.error, settings.seconds);
  const std::string message = messageIn(files.error, "citrans");
  if (!endedWell(end, result, "refused", message)) {
    return;
  }
  // The program exits with 0 also after an error; only a summary tells that it came to its end.
  if (!fs::exists(files.summary)) {
    result.status = "refused";
    result.message = message;
    return;
  }
  result.prolines = readSummary(files);
  result.status = "ok";
  if (!message.empty()) {
    result.message += (result.message.empty() ? "" : " | ") + message;
  }
}

} // namespace

EntryResult runEntry(const Entry& entry, const RunSettings& settings, const std::string& scratch) {
  EntryResult result;
  result.entry = entry;
  const ScratchFiles files(scratch);
  if (makeTable(files, settings, result)) {
    predict(files, settings, result);
  }
  if (result.status == "ok" && !settings.pages.folder.empty()) {
    writeEntryPage(settings.pages, files.table, files.map, scratch, result);
  }
  for (const fs::directory_entry& left : fs::directory_iterator(scratch)) {
    fs::remove(left.path());
  }
  return result;
}
