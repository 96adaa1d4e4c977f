#pragma once

#include <nlohmann/json_fwd.hpp>

#include "tools/report/index.h"

/// Entries of the list as JSON and back, for lists whose entries were made in other processes.
nlohmann::json toJson(const IndexEntry& entry);
/// Throws nlohmann::json::exception for what `toJson` does not make.
IndexEntry indexEntryFrom(const nlohmann::json& stored);
