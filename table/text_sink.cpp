#include "table/text_sink.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "table/plain_locale.h"

void toStandardOutput(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

void toStandardError(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

void toNowhere(std::string_view /*text*/) {}

std::string formatted(const char* format, ...) {
  std::va_list arguments;
  std::va_list again;
  va_start(arguments, format);
  va_copy(again, arguments);
  const PlainLocale point;
  const int size = std::max(std::vsnprintf(nullptr, 0, format, arguments), 0);
  std::string text(static_cast<std::size_t>(size), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  va_end(arguments);
  return text;
}
