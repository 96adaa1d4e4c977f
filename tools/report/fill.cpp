#include "tools/report/fill.h"

#include <stdexcept>

#include "tools/report/text.h"

std::string filled(std::string_view pageTemplate, const PageData& data) {
  kainjow::mustache::mustache page{std::string(pageTemplate)};
  if (!page.is_valid()) {
    throw std::logic_error("template: " + page.error_message());
  }
  page.set_custom_escape([](const std::string& text) { return escaped(text); });
  std::string result;
  page.render(data, [&result](const std::string& part) { result += part; });
  return result;
}
