#pragma once

#include <string>
#include <string_view>

/// Where the tables of the database are: `given`, when a user names a folder; else where citrans
/// looks, below CITRANS_DIR or the current directory; else, when that is not there, those that are
/// installed with this program.
std::string tableFolder(const std::string& given = "");

/// Whether a text is a table of the program's own: it has a VARS and a FORMAT line.
bool isProgramTable(std::string_view text);
