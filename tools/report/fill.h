#pragma once

#include <string>
#include <string_view>

#include <kainjow/mustache.hpp>

/// What a template is filled with: texts, lists and truths by name.
using PageData = kainjow::mustache::data;

inline PageData pageList() {
  return PageData(PageData::type::list);
}

/// A Mustache template with its names replaced; every {{text}} is made safe by `escaped`, a
/// {{{text}}} is taken as the markup that it is. Throws std::logic_error for a template that is
/// none.
std::string filled(std::string_view pageTemplate, const PageData& data);
