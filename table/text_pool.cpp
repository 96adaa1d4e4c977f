#include "table/text_pool.h"

#include <algorithm>

std::string_view TextPool::keep(std::string_view text) {
  constexpr std::size_t smallestBlock = 512;
  constexpr std::size_t largestBlock = std::size_t{256} * 1024;
  if (blocks_.empty() || blocks_.back().capacity() - blocks_.back().size() < text.size()) {
    const std::size_t last = blocks_.empty() ? 0 : blocks_.back().capacity();
    blocks_.emplace_back().reserve(
        std::max(text.size(), std::min(std::max(2 * last, smallestBlock), largestBlock)));
  }
  std::string& block = blocks_.back(); // never filled beyond its room, so it stays in place
  block.append(text);
  return std::string_view(block).substr(block.size() - text.size());
}
