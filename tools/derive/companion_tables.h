#pragma once

#include <map>
#include <string>

#include "tools/derive/pipeline.h"

namespace derive {

/// The tables that only the companion programs read: calls.tab and reref.tab. By file name; takes
/// minutes, since they rest on the cross-validation.
std::map<std::string, std::string> companionTables(const Derivation& derivation,
                                                   const Origin& origin, const Progress& progress);

} // namespace derive
