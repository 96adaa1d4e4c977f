#include "table/row_store.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>

namespace {

constexpr std::size_t firstBlockSize = std::size_t{4} * 1024;
/// Cells that a row gets at once, if there are so many names.
constexpr std::size_t fewestCells = 8;

} // namespace

void* Arena::allocate(std::size_t size) {
  if (blocks_.empty() || capacity_ - used_ < size) {
    const std::size_t next = std::min(std::max(capacity_ * 2, firstBlockSize), largestBlock_);
    capacity_ = std::max(next, size);
    used_ = 0;
    blocks_.emplace_back(new char[capacity_]);
  }
  char* const start = blocks_.back().get() + used_;
  used_ += size;
  return start;
}

PackedCell* Arena::allocateCells(std::size_t count) {
  // Blocks begin aligned, and cells follow nothing but cells.
  PackedCell* const cells = static_cast<PackedCell*>(allocate(count * sizeof(PackedCell)));
  std::uninitialized_default_construct_n(cells, count);
  return cells;
}

std::string_view Arena::keep(std::string_view text) {
  char* const start = static_cast<char*>(allocate(std::max<std::size_t>(text.size(), 1)));
  if (!text.empty()) {
    std::memcpy(start, text.data(), text.size());
  }
  return {start, text.size()};
}

void Arena::clear() {
  blocks_.clear();
  used_ = 0;
  capacity_ = 0;
}

RowStore::Slot RowStore::slot(std::string_view name) {
  if (const std::optional<Slot> known = findSlot(name)) {
    return *known;
  }
  const Slot added = static_cast<Slot>(names_.size());
  names_.emplace_back(name);
  if (firstNames_.size() < fewestCells) {
    firstNames_.push_back(names_.back());
  }
  slotsByName_.emplace(names_.back(), added);
  return added;
}

std::optional<RowStore::Slot> RowStore::findSlot(std::string_view name) const {
  // Most tables have few names, and comparing a few is quicker than hashing.
  for (Slot slot = 0; slot < firstNames_.size(); ++slot) {
    if (firstNames_[slot] == name) {
      return slot;
    }
  }
  if (firstNames_.size() == names_.size()) {
    return std::nullopt;
  }
  const auto found = slotsByName_.find(name);
  if (found == slotsByName_.end()) {
    return std::nullopt;
  }
  return found->second;
}

std::size_t RowStore::findOrInsert(int number) {
  const Row empty{number, 0, 0, nullptr};
  if (rows_.empty() || rows_.back().number < number) {
    indexes_.clear();
    rows_.push_back(empty);
    return rows_.size() - 1;
  }
  const auto at = std::lower_bound(rows_.begin(), rows_.end(), number,
                                   [](const Row& row, int n) { return row.number < n; });
  const std::size_t position = static_cast<std::size_t>(at - rows_.begin());
  if (at->number != number) {
    indexes_.clear();
    rows_.insert(at, empty);
  }
  return position;
}

void RowStore::set(std::size_t position, Slot slot, std::string_view text) {
  setView(position, slot, texts_.keep(text));
}

void RowStore::setView(std::size_t position, Slot slot, std::string_view text) {
  Row& row = rows_[position];
  if (slot >= row.width || row.shared) {
    // At least doubled, so that setting all cells one by one stays linear.
    const std::size_t wanted = std::max(fewestCells, 2 * std::size_t{row.width});
    copyCells(row, std::max<std::size_t>(slot + 1, std::min(wanted, names_.size())));
  }
  if (!indexes_.empty()) {
    forgetIndexesOf(slot);
  }
  row.cells[slot] = packed(text);
}

PackedCell RowStore::packed(Cell text) {
  if (text.size() < PackedCell::shortestLong) {
    return PackedCell(text);
  }
  longCells_.push_back(text);
  return PackedCell(&longCells_.back());
}

void RowStore::setRow(std::size_t position, const std::vector<Slot>& slots,
                      const std::vector<std::string_view>& texts) {
  Row& row = rows_[position];
  if (row.shared || row.width < names_.size()) {
    copyCells(row, names_.size());
  }
  indexes_.clear();
  for (std::size_t i = 0; i < slots.size(); ++i) {
    row.cells[slots[i]] = packed(texts[i]);
  }
}

std::size_t RowStore::appendCopy(int number, const RowStore& from, std::size_t position) {
  const std::size_t added = findOrInsert(number);
  const Row& source = from.rows_[position];
  if (sharesLayout(from, source.width)) {
    rows_[added].width = source.width;
    rows_[added].shared = 1;
    rows_[added].cells = source.cells;
    return added;
  }
  for (Slot column = 0; column < source.width; ++column) {
    const Cell text = source.cells[column].view();
    if (text.data() != nullptr) {
      setView(added, slot(from.names_[column]), text);
    }
  }
  return added;
}

bool RowStore::sharesLayout(const RowStore& other, std::size_t width) const {
  return width <= names_.size() &&
         std::equal(names_.begin(), names_.begin() + static_cast<std::ptrdiff_t>(width),
                    other.names_.begin());
}

void RowStore::copyCells(Row& row, std::size_t width) {
  PackedCell* const cells = cells_.allocateCells(width);
  std::copy_n(row.cells, row.width, cells);
  row.cells = cells;
  row.width = static_cast<std::uint32_t>(width) & 0x7FFFFFFFU;
  row.shared = 0;
}

std::size_t RowStore::firstMatch(Slot slot, std::string_view value) const {
  return firstMatch(slot, value, noSlot, std::string_view());
}

std::size_t RowStore::firstMatch(Slot slot1, std::string_view value1, Slot slot2,
                                 std::string_view value2) const {
  const Index& built = index(slot1, slot2);
  const std::uint32_t found = built.places[placeOf(built, value1, value2).at];
  return found == 0 ? npos : found - 1;
}

const RowStore::Index& RowStore::index(Slot first, Slot second) const {
  for (const Index& known : indexes_) {
    if (known.first == first && known.second == second) {
      return known;
    }
  }
  indexes_.push_back(buildIndex(first, second));
  return indexes_.back();
}

RowStore::Index RowStore::buildIndex(Slot first, Slot second) const {
  std::size_t count = 4;
  while (count / 4 * 3 < rows_.size()) {
    count *= 2;
  }
  Index built{first, second, std::vector<std::uint32_t>(count), std::vector<std::uint8_t>(count)};
  for (std::size_t position = 0; position < rows_.size(); ++position) {
    const Place place = placeOf(built, cellAt(position, first), cellAt(position, second));
    if (built.places[place.at] == 0) {
      built.places[place.at] = static_cast<std::uint32_t>(position + 1);
      built.tags[place.at] = place.tag;
    }
  }
  return built;
}

/// Where the first row with these two cells stands in the index, or the free place for it.
RowStore::Place RowStore::placeOf(const Index& index, std::string_view value1,
                                  std::string_view value2) const {
  const std::hash<std::string_view> hashOf;
  const std::size_t hash = hashOf(value1) * 31 + hashOf(value2);
  const std::size_t mask = index.places.size() - 1;
  Place place{hash & mask, static_cast<std::uint8_t>(hash >> 56)};
  for (; index.places[place.at] != 0; place.at = (place.at + 1) & mask) {
    const std::size_t position = index.places[place.at] - 1;
    if (index.tags[place.at] == place.tag && cellAt(position, index.first) == value1 &&
        cellAt(position, index.second) == value2) {
      break;
    }
  }
  return place;
}

void RowStore::forgetIndexesOf(Slot slot) {
  const auto concerned = [slot](const Index& known) {
    return known.first == slot || known.second == slot;
  };
  indexes_.erase(std::remove_if(indexes_.begin(), indexes_.end(), concerned), indexes_.end());
}

void RowStore::clear() {
  rows_.clear();
  indexes_.clear();
  cells_.clear();
  texts_.clear();
  longCells_.clear();
}

void RowStore::reset() {
  clear();
  names_.clear();
  firstNames_.clear();
  slotsByName_.clear();
}
