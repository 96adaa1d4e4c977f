#include "tools/import/places.h"

namespace {

/// Places named in a warning, at most.
constexpr std::size_t mostNamed = 8;

} // namespace

bool Places::nearProline(int position) const {
  for (int near = position - 1; near <= position + 1; ++near) {
    if (position > 0 && near >= 1 && static_cast<std::size_t>(near) <= letters_.size() &&
        letters_[static_cast<std::size_t>(near) - 1] == 'P') {
      return true;
    }
  }
  return false;
}

void Places::add(int position, const std::string& place) {
  ++count_;
  std::vector<std::string>& places = nearProline(position) ? prolines_ : others_;
  if (places.size() < mostNamed) {
    places.push_back(place);
  }
}

std::string Places::text() const {
  std::string text;
  std::size_t named = 0;
  for (const auto* places : {&prolines_, &others_}) {
    for (std::size_t i = 0; i < places->size() && named < mostNamed; ++i, ++named) {
      text += (named > 0 ? ", " : "") + (*places)[i];
    }
  }
  return text + (count_ > named ? " and " + std::to_string(count_ - named) + " more" : "");
}

std::string counted(std::size_t count, const std::string& one, const std::string& many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}
