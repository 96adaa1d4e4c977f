#pragma once

#include <string_view>

/// What a file is by its first bytes when it is none that an importer reads, for messages: "an HTML
/// page", "a zip file". Empty when nothing tells.
std::string_view foreignKind(std::string_view bytes);
