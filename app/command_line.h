#pragma once

#include "app/citrans.h"

/// Cuts the arguments into option names and values.
///
/// The arguments are joined with blanks and cut at every " -": an option is what follows a hyphen
/// after a blank, its value everything after its first blank up to the next such hyphen. So values
/// may hold several words, but none may begin with a hyphen. An option without a value is its own
/// value; "noclip", "nodetail" and "check" are always "true"; the last of several wins.
///
/// A name that `run` does not accept throws RunEnd with status 0.
CITRANS::Options readCommandLine(const CITRANS& run, int argumentCount, char* const* arguments);
