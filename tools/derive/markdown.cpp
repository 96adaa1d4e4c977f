#include "tools/derive/markdown.h"

#include <cmath>
#include <cstdio>

namespace derive {
namespace {

std::string markdownRow(const std::vector<std::string>& cells) {
  std::string row = "|";
  for (const std::string& cell : cells) {
    row += " " + cell + " |";
  }
  return row + "\n";
}

} // namespace

std::string fixed(double value, int decimals) {
  if (std::isnan(value)) {
    return "-";
  }
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

std::string percent(double share, int decimals) {
  return std::isnan(share) ? "-" : fixed(100 * share, decimals) + " %";
}

std::string markdownTable(const std::vector<std::string>& head,
                          const std::vector<std::vector<std::string>>& rows) {
  std::string text = markdownRow(head);
  text += markdownRow(std::vector<std::string>(head.size(), "---"));
  for (const auto& row : rows) {
    text += markdownRow(row);
  }
  return text + "\n";
}

} // namespace derive
