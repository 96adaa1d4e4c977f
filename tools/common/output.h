#pragma once

#include <string>
#include <vector>

/// A text and where it is to go: a file, a device or pipe, or "-" for standard output.
struct Output {
  std::string path;
  std::string text;
};

/// Writes whole files, all or none: the texts go beside their files, and these take their names
/// when every text is complete. Standard output, devices and pipes are written as they stand,
/// just before.
///
/// Throws ToolError(cannotWrite) when any byte does not reach the system; older files of those
/// names are then left as they were.
void writeWholeFiles(const std::vector<Output>& outputs);
void writeWholeFile(const std::string& path, const std::string& text);
