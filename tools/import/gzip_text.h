#pragma once

#include <string>
#include <string_view>

/// Whether the bytes begin as a gzip file does.
bool isGzip(std::string_view bytes);

/// What a gzip file of one or more members holds; zero bytes after the last are padding.
///
/// \param name  of the file, for messages
/// Throws ToolError(badData) for a file that is cut short, damaged, or followed by anything else,
/// and for one that unpacks to more than `largestUnpacked` bytes.
std::string unpackGzip(std::string_view bytes, const std::string& name);

/// Two gigabytes: more than any deposition or structure takes, less than fills a machine.
constexpr std::size_t largestUnpacked = std::size_t{2} << 30U;
