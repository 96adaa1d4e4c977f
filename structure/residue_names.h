#pragma once

#include <string_view>

/// One-letter code of a three-letter name, "c" for "cys" and "h" for "his"; NUL when unknown.
char residueCode(std::string_view threeLetterName);
