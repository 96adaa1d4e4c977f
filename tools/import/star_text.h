#pragma once

#include <string>
#include <string_view>

/// Makes NMR-STAR text readable for a strict CIF reader without adding or removing a line, so that
/// line numbers in messages stay those of the file.
///
/// Values that begin with "$" (pointers to save frames) and bare values with bytes outside
/// printable ASCII are put in quotes; vertical tabs, form feeds, carriage returns and other control
/// characters between values become blanks. Text fields, quoted values and comments stay as they
/// are. A text that begins without a data block gets the header of one on its first line.
std::string readableStar(std::string_view text);
