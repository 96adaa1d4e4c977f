#pragma once

#include <string>
#include <string_view>

/// Text from a file or the command line as messages show it: what a terminal would obey instead of
/// showing is written out, "\x1b" for an escape, so that no input can change what a message says.
///
/// Written out are the control bytes but the tab, DEL, the C1 controls as UTF-8 or as bare bytes,
/// and the line separators and direction overrides of Unicode. All other text stays byte for byte.
std::string messageText(std::string_view text);
