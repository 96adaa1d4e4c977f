#include "tools/batch/report_pages.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>

#include "table/file_io.h"
#include "tools/batch/process.h"
#include "tools/common/output.h"
#include "tools/common/tool.h"
#include "tools/report/index.h"

namespace fs = std::filesystem;

namespace {

constexpr char pageFolder[] = "pages";

std::string fileName(const std::string& path) {
  return fs::path(path).filename().string();
}

/// A text with nothing that a command line, a URL or a file system takes amiss.
std::string harmless(const std::string& text) {
  constexpr std::size_t longest = 60;
  std::string safe;
  for (const char c : text.substr(0, longest)) {
    const bool plain = (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z') ||
                       (c == '.' && !safe.empty()) || (c == '-' && !safe.empty());
    safe += plain ? c : '_';
  }
  return safe.empty() ? "_" : safe;
}

/// FNV-1a of 32 bits.
std::uint32_t numberOf(const std::string& text) {
  std::uint32_t hash = 2166136261U;
  for (const char c : text) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  }
  return hash;
}

std::string pagePath(const PageSettings& settings, const Entry& entry, const char* ending) {
  return settings.folder + "/" + pageFolder + "/" + pageName(entry.path) + ending;
}

bool ran(const std::vector<std::string>& command, const std::string& scratch, unsigned seconds) {
  const ProcessEnd end = runProcess(command, scratch + "/page.out", scratch + "/page.err", seconds);
  return end.signal == 0 && end.status == 0;
}

} // namespace

std::string pageName(const std::string& entryPath) {
  char number[16];
  std::snprintf(number, sizeof number, "-%08x", numberOf(entryPath));
  return harmless(fileName(entryPath)) + number;
}

void leaveOutPages(const PageSettings& settings, std::vector<Entry>& entries) {
  std::error_code error;
  const std::string folder = (fs::weakly_canonical(settings.folder, error) / "").string();
  const auto isPage = [&](const Entry& entry) {
    const std::string path = fs::weakly_canonical(entry.path, error).string();
    return path.compare(0, folder.size(), folder) == 0;
  };
  entries.erase(std::remove_if(entries.begin(), entries.end(), isPage), entries.end());
}

void makePageFolders(const PageSettings& settings) {
  std::error_code error;
  fs::create_directories(settings.folder + "/" + pageFolder, error);
  if (error) {
    throw ToolError(ToolStatus::cannotWrite, settings.folder + ": cannot make the folder");
  }
}

void writeEntryPage(const PageSettings& settings, const std::string& table, const std::string& map,
                    const std::string& scratch, EntryResult& result) {
  const std::string summary = scratch + "/page.tab";
  std::vector<std::string> predict = {
      settings.citrans, "-in",  table, "-inTitle", harmless(fileName(result.entry.path)),
      "-sum",           summary};
  predict.insert(predict.end(), settings.options.begin(), settings.options.end());
  std::vector<std::string> report = {settings.report,
                                     summary,
                                     "-o",
                                     pagePath(settings, result.entry, ".html"),
                                     "--json",
                                     pagePath(settings, result.entry, ".json")};
  if (fs::exists(map)) {
    report.insert(report.end(), {"--map", map});
  }
  for (const std::string& option : settings.options) {
    if (option == "-noclip") {
      report.emplace_back("--noclip");
    }
  }
  if (!ran(predict, scratch, settings.seconds) || !ran(report, scratch, settings.seconds)) {
    result.message += (result.message.empty() ? "" : " | ") + std::string("no page could be made");
  }
}

void writeIndex(const PageSettings& settings, const std::vector<EntryResult>& results) {
  std::vector<IndexEntry> entries;
  entries.reserve(results.size());
  for (const EntryResult& result : results) {
    IndexEntry entry;
    entry.name = fileName(result.entry.path);
    entry.message = result.status + ": " + result.message;
    if (result.status == "ok") {
      entry.json = readWholeFile(pagePath(settings, result.entry, ".json")).value_or("");
      entry.page = entry.json.empty()
                       ? ""
                       : std::string(pageFolder) + "/" + pageName(result.entry.path) + ".html";
    }
    entries.push_back(entry);
  }
  writeWholeFile(settings.folder + "/index.html", indexPage(entries));
}
