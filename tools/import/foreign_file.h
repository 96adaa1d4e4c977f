#pragma once

#include <string_view>

/// What a file is by its first bytes when it is none that an importer reads, for messages: "a web
/// page", "a zip file: unpack it first". Empty when nothing tells.
std::string_view foreignKind(std::string_view bytes);
