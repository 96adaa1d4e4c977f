#pragma once

#include <string>
#include <vector>

/// Refuses outputs that would destroy what they are made from, or each other.
///
/// Names are one file when they lead to the same place, however they are spelled: through links of
/// either kind, through "..", by "-" for a standard stream. Devices other than a standard stream,
/// as /dev/null, may be named as often as one likes.
///
/// \param inputs  files that are read; "-" is standard input; empty names are passed over
/// \param outputs  files that are to be written; "-" is standard output; likewise
/// Throws ToolError(usage) for an output that is an input and for two outputs that are one file.
/// Nothing is opened or written.
void requireDistinctFiles(const std::vector<std::string>& inputs,
                          const std::vector<std::string>& outputs);

/// Whether two names lead to the same file.
bool isSameFile(const std::string& one, const std::string& other);
