#pragma once

#include <string>

/// Writes a whole file or none: the text goes beside the file, and takes its name when complete.
///
/// \param path  "-" for standard output; a device or a pipe is written as it stands
/// Throws ToolError(cannotWrite) when any byte does not reach the system; an older file of that
/// name is then left as it was.
void writeWholeFile(const std::string& path, const std::string& text);
