#pragma once

#include <string_view>

/// The files of page/, as the build embeds them.
namespace embedded {

extern const std::string_view page;          ///< page.html: the report, a Mustache template
extern const std::string_view index;         ///< index.html: the list of many reports, likewise
extern const std::string_view indexCode;     ///< index.js: sorts and filters the list
extern const std::string_view indexCodeHash; ///< its SHA-256 in base64
extern const std::string_view colours;       ///< colours.css
extern const std::string_view picture;       ///< picture.css
extern const std::string_view style;         ///< style.css

} // namespace embedded
