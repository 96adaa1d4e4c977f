#include "tools/report/style.h"

#include <stdexcept>

#include "tools/report/embedded.h"

namespace {

constexpr std::string_view variable = "var(--";

} // namespace

std::string colour(std::string_view name) {
  const std::string declaration = "--" + std::string(name) + ": ";
  constexpr std::size_t length = 7; // of "#rrggbb"
  const std::size_t at = embedded::colours.find(declaration);
  if (at == std::string_view::npos) {
    throw std::out_of_range("no colour " + std::string(name));
  }
  return std::string(embedded::colours.substr(at + declaration.size(), length));
}

std::string pictureFileStyle() {
  std::string style;
  std::string_view rest = embedded::picture;
  for (std::size_t at = rest.find(variable); at != std::string_view::npos;
       at = rest.find(variable)) {
    style += rest.substr(0, at);
    rest.remove_prefix(at + variable.size());
    const std::size_t end = rest.find(')');
    style += colour(rest.substr(0, end));
    rest.remove_prefix(end + 1);
  }
  return style + std::string(rest);
}

std::string pageStyle() {
  std::string style = ":root { color-scheme: light dark; }\n";
  for (const std::string_view sheet : {embedded::colours, embedded::picture, embedded::style}) {
    style += sheet;
  }
  return style;
}
