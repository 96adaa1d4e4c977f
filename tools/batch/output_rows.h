#pragma once

#include <string>
#include <vector>

#include "tools/batch/entry.h"

enum class OutputKind { tsv, jsonLines };

/// The whole output of a batch: for each entry in order a row about the entry itself and one per
/// predicted proline.
///
/// TSV has a header line; a cell that does not apply is empty, and tabs, line ends and other
/// control characters inside a text become blanks. JSON Lines has one object a line with the same
/// names; numbers are numbers there, and a cell that does not apply, or is not-a-number, is null.
std::string formatOutput(const std::vector<EntryResult>& results, OutputKind kind);
