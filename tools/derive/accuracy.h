#pragma once

#include <map>
#include <string>

#include "tools/derive/pipeline.h"

namespace derive {

/// Measures the derivation by cross-validation and writes what it finds: accuracy.md and its
/// pictures, by file name. Takes some minutes.
std::map<std::string, std::string> accuracyDocuments(const Derivation& derivation,
                                                     const Progress& progress);

} // namespace derive
