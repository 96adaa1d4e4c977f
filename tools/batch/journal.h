#pragma once

#include <cstdio>
#include <map>
#include <string>

#include "tools/batch/entry.h"

/// Results of an unfinished batch on disk, one line of JSON each, so that a batch that was stopped
/// goes on where it was. Entries that changed since are run again.
class Journal {
 public:
  /// \param path  the journal's file; empty for none
  /// \param settings  a text that names everything that results depend on
  /// \param resume  whether to keep what the file holds; it must then come from the same settings
  /// Throws ToolError(badData) for other settings, ToolError(cannotWrite) when it cannot be opened.
  Journal(const std::string& path, const std::string& settings, bool resume);
  ~Journal();
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  /// The result of an entry that has not changed since, or null.
  const EntryResult* find(const Entry& entry) const;

  /// Adds a result, for good when the call returns. Throws ToolError(cannotWrite).
  void add(const EntryResult& result);

  /// Removes the file: the batch is complete.
  void remove();

 private:
  void read(const std::string& settings);
  void append(const std::string& line);

  std::string path_;
  std::FILE* file_ = nullptr;
  std::map<std::string, EntryResult> results_;
};
