#include "tools/import/star_document.h"

#include <gemmi/cif.hpp>

#include "tools/common/tool.h"
#include "tools/import/star_text.h"

namespace cif = gemmi::cif;

namespace {

std::string lowerCase(std::string text) {
  for (char& c : text) {
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  }
  return text;
}

std::string valueOf(const std::string& raw) {
  return cif::is_null(raw) ? "" : cif::as_string(raw);
}

StarLoop convertLoop(const cif::Loop& loop, int line) {
  StarLoop converted;
  converted.line = static_cast<std::size_t>(line);
  for (const std::string& tag : loop.tags) {
    converted.tags.push_back(lowerCase(tag));
  }
  for (const std::string& value : loop.values) {
    converted.values.push_back(valueOf(value));
  }
  return converted;
}

void convertItems(const std::vector<cif::Item>& items, const std::string& name,
                  std::vector<StarFrame>& frames) {
  const std::size_t own = frames.size();
  frames.emplace_back();
  frames[own].name = name;
  for (const cif::Item& item : items) {
    if (item.type == cif::ItemType::Pair) {
      frames[own].tags[lowerCase(item.pair[0])] = valueOf(item.pair[1]);
    } else if (item.type == cif::ItemType::Loop) {
      frames[own].loops.push_back(convertLoop(item.loop, item.line_number));
    } else if (item.type == cif::ItemType::Frame) {
      convertItems(item.frame.items, item.frame.name, frames);
    }
  }
}

} // namespace

int StarLoop::column(std::initializer_list<const char*> names) const {
  for (const char* name : names) {
    for (std::size_t i = 0; i < tags.size(); ++i) {
      if (tags[i] == name) {
        return static_cast<int>(i);
      }
    }
  }
  return -1;
}

const std::string& StarLoop::value(std::size_t row, int column) const {
  static const std::string none;
  return column < 0 ? none : values[row * tags.size() + static_cast<std::size_t>(column)];
}

std::string StarFrame::tag(std::initializer_list<const char*> names) const {
  for (const char* wanted : names) {
    const auto found = tags.find(wanted);
    if (found != tags.end() && !found->second.empty()) {
      return found->second;
    }
  }
  return "";
}

std::vector<StarBlock> readStar(std::string_view text, const std::string& file) {
  const std::string readable = readableStar(text);
  cif::Document document;
  try {
    tao::pegtl::memory_input<> input(readable, file);
    cif::parse_input(document, input);
  } catch (const std::exception& error) {
    throw ToolError(ToolStatus::badData, error.what());
  }
  std::vector<StarBlock> blocks;
  for (const cif::Block& block : document.blocks) {
    convertItems(block.items, "", blocks.emplace_back());
  }
  return blocks;
}
