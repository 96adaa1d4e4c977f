#include "tools/batch/one_entry.h"

#include <cstring>
#include <filesystem>
#include <map>

#include "app/citrans.h"
#include "table/file_io.h"
#include "table/number.h"
#include "tools/batch/entry_json.h"
#include "tools/batch/process.h"
#include "tools/common/program_tables.h"

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
  if (isProgramTable(*text)) {
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
  std::vector<std::string> command = settings.predictor;
  command.push_back(files.table);
  const ProcessEnd end = runProcess(command, files.output, files.error, settings.seconds);
  if (!endedWell(end, result, "refused", messageIn(files.error, "citrans-batch"))) {
    return;
  }
  EntryResult predicted = fromJson(nlohmann::json::parse(contentOf(files.output)));
  result.status = predicted.status;
  result.message +=
      (result.message.empty() || predicted.message.empty() ? "" : " | ") + predicted.message;
  result.offsets = predicted.offsets;
  result.prolines = std::move(predicted.prolines);
  const std::map<std::string, std::string> authors = readMap(files.map);
  for (ProlineRow& row : result.prolines) {
    const auto author = authors.find(row.resid);
    row.author = author == authors.end() ? row.resid : author->second;
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
