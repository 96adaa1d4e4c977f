#include "tools/batch/report_pages.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>

#include "tools/batch/entry_rows.h"
#include "tools/common/output.h"
#include "tools/common/tool.h"
#include "tools/report/exports.h"
#include "tools/report/page.h"

namespace fs = std::filesystem;

namespace {

constexpr char pageFolder[] = "pages";

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

} // namespace

std::string fileName(const std::string& path) {
  return fs::path(path).filename().string();
}

std::string pageName(const std::string& entryPath) {
  char number[16];
  std::snprintf(number, sizeof number, "-%08x", numberOf(entryPath));
  return harmless(fileName(entryPath)) + number;
}

void leaveOutPages(const std::string& folder, std::vector<Entry>& entries) {
  std::error_code error;
  const std::string pages = (fs::weakly_canonical(folder, error) / "").string();
  const auto isPage = [&](const Entry& entry) {
    const std::string path = fs::weakly_canonical(entry.path, error).string();
    return path.compare(0, pages.size(), pages) == 0;
  };
  entries.erase(std::remove_if(entries.begin(), entries.end(), isPage), entries.end());
}

void makePageFolders(const std::string& folder) {
  std::error_code error;
  fs::create_directories(folder + "/" + pageFolder, error);
  if (error) {
    throw ToolError(ToolStatus::cannotWrite, folder + ": cannot make the folder");
  }
}

void writeEntryPage(const std::string& folder, const analyse::Result& found, EntryResult& result) {
  const std::string name = std::string(pageFolder) + "/" + pageName(result.entry.path);
  try {
    writeWholeFiles({{folder + "/" + name + ".html", htmlPage(found.report)},
                     {folder + "/" + name + ".json", jsonText(found.report)}});
    result.listed = indexEntry(found.report);
    result.listed->page = name + ".html";
  } catch (const ToolError& fault) {
    addMessage(std::string("no page: ") + fault.what(), result);
  }
}

void writeIndex(const std::string& folder, const std::vector<EntryResult>& results) {
  std::vector<IndexEntry> entries;
  entries.reserve(results.size());
  for (const EntryResult& result : results) {
    IndexEntry entry;
    entry.remark = result.status + ": " + result.message;
    entry = result.listed.value_or(entry);
    entry.name = fileName(result.entry.path);
    entries.push_back(std::move(entry));
  }
  writeWholeFile(folder + "/index.html", indexPage(entries));
}
