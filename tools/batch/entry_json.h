#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tools/batch/entry.h"

/// A result as JSON, for the journal and between processes. `fromJson` throws nlohmann's exceptions
/// for JSON that is none of these.
nlohmann::json toJson(const EntryResult& result);
EntryResult fromJson(const nlohmann::json& stored);

/// One line of text. Bytes that are no UTF-8, as file names may hold, become the replacement
/// character.
std::string lineOf(const nlohmann::json& value);
