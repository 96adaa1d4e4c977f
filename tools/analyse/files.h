#pragma once

#include <string>

#include "tools/analyse/analyse.h"

namespace analyse {

/// The tables of a folder. Throws ToolError(inputMissing) for one that is not there.
TableTexts tablesIn(const std::string& folder);

} // namespace analyse
