#pragma once

/// What the banner and the remarks of every output say about the program's origin.
namespace origin {
extern const char* const webAddress;
extern const char* const citation[3];
extern const char* const credit;
extern const char* const version;
} // namespace origin
