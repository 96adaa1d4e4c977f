#pragma once

#include <string>
#include <vector>

namespace derive {

/// Fixed-point text; "-" for not-a-number.
std::string fixed(double value, int decimals);
std::string percent(double share, int decimals = 1);

/// A Markdown table; every row has as many cells as the head.
std::string markdownTable(const std::vector<std::string>& head,
                          const std::vector<std::vector<std::string>>& rows);

} // namespace derive
