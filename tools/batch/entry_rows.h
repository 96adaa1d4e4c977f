#pragma once

#include "tools/analyse/analyse.h"
#include "tools/batch/entry.h"

/// Fills the prolines and the offsets of an entry, and adds what importer and program said to its
/// message. Throws ToolError(badData) for a map that is none.
void takeResult(const analyse::Result& found, EntryResult& result);

/// Adds a line to an entry's message.
void addMessage(const std::string& line, EntryResult& result);

/// The lines of a text that are not empty, joined by " | ".
std::string joinedLines(std::string_view text);
