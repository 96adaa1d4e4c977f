#pragma once

#include <map>
#include <string>

namespace derive {

/// Writes several files of a folder, or none: all are written beside their names first and renamed
/// once every one is complete. Makes the folder when it is missing.
///
/// Throws ToolError(cannotWrite) when a byte does not reach the system; the older files are then
/// as they were.
void writeFilesTogether(const std::string& folder,
                        const std::map<std::string, std::string>& textByName);

} // namespace derive
