#pragma once

#include <string>
#include <string_view>

/// The style sheets of page/, put together.

/// Colours (light, dark where the reader prefers it, light on paper), pictures and layout.
std::string pageStyle();

/// The style of a picture that is a file of its own: plain colours of the light set, since few
/// programs that show SVG know variables.
std::string pictureFileStyle();

/// A colour of the light set as "#rrggbb".
///
/// \param name  as colours.css has it, without the hyphens before it: "cis", "trans-soft"
/// Throws std::out_of_range for a colour that is not there.
std::string colour(std::string_view name);
