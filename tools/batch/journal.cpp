#include "tools/batch/journal.h"

#include <nlohmann/json.hpp>

#include "table/file_io.h"
#include "tools/batch/entry_json.h"
#include "tools/common/tool.h"

using nlohmann::json;

Journal::Journal(const std::string& path, const std::string& settings, bool resume) : path_(path) {
  if (path.empty()) {
    return;
  }
  if (resume) {
    read(settings);
  }
  const bool fresh = results_.empty();
  file_ = std::fopen(path.c_str(), fresh ? "we" : "ae");
  if (file_ == nullptr) {
    throw ToolError(ToolStatus::cannotWrite, path + ": cannot write");
  }
  // The new line ends one that was cut off when the batch was stopped.
  append(fresh ? lineOf({{"settings", settings}}) : "\n");
}

Journal::~Journal() {
  if (file_ != nullptr) {
    std::fclose(file_);
  }
}

void Journal::read(const std::string& settings) {
  const std::optional<std::string> text = readWholeFile(path_);
  if (!text) {
    return;
  }
  std::string_view rest = *text;
  std::string_view line;
  if (!takeLine(rest, line)) {
    return;
  }
  const json first = json::parse(line, nullptr, false);
  if (first.is_discarded() || lineOf(first) != lineOf({{"settings", settings}})) {
    throw ToolError(ToolStatus::badData,
                    atLine(path_, 1, "this journal was made with other options; remove it"));
  }
  while (takeLine(rest, line)) {
    // A line cut off in the middle of its writing is no result.
    const json stored = json::parse(line, nullptr, false);
    if (!stored.is_discarded()) {
      const EntryResult result = fromJson(stored);
      results_[result.entry.path] = result;
    }
  }
}

const EntryResult* Journal::find(const Entry& entry) const {
  const auto known = results_.find(entry.path);
  const bool same = known != results_.end() && known->second.entry.size == entry.size &&
                    known->second.entry.modified == entry.modified;
  return same ? &known->second : nullptr;
}

void Journal::add(const EntryResult& result) {
  append(lineOf(toJson(result)));
}

void Journal::append(const std::string& line) {
  if (file_ == nullptr) {
    return;
  }
  if (std::fputs(line.c_str(), file_) < 0 || std::fflush(file_) != 0) {
    throw ToolError(ToolStatus::cannotWrite, path_ + ": cannot write");
  }
}

void Journal::remove() {
  std::remove(path_.c_str());
}
