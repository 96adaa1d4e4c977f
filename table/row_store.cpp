#include "table/row_store.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace {

constexpr std::size_t firstBlockSize = std::size_t{4} * 1024;
constexpr std::size_t largestBlockSize = std::size_t{1024} * 1024;

/// Second slot of an index over one column only.
constexpr RowStore::Slot noSlot = static_cast<RowStore::Slot>(-1);

} // namespace

void* Arena::allocate(std::size_t size) {
  const std::size_t rounded = (size + alignof(Cell) - 1) / alignof(Cell) * alignof(Cell);
  if (blocks_.empty() || capacity_ - used_ < rounded) {
    const std::size_t next = std::min(std::max(capacity_ * 2, firstBlockSize), largestBlockSize);
    capacity_ = std::max(next, rounded);
    used_ = 0;
    blocks_.emplace_back(new char[capacity_]);
  }
  char* const start = blocks_.back().get() + used_;
  used_ += rounded;
  return start;
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

std::size_t RowStore::KeyHash::operator()(const Key& key) const {
  const std::hash<std::string_view> hash;
  return hash(key.first) * 31 + hash(key.second);
}

RowStore::Slot RowStore::slot(std::string_view name) {
  const auto added = slotsByName_.emplace(std::string(name), static_cast<Slot>(names_.size()));
  if (added.second) {
    names_.emplace_back(name);
  }
  return added.first->second;
}

std::optional<RowStore::Slot> RowStore::findSlot(std::string_view name) const {
  const auto found = slotsByName_.find(std::string(name));
  if (found == slotsByName_.end()) {
    return std::nullopt;
  }
  return found->second;
}

std::size_t RowStore::find(int number) const {
  const auto at = std::lower_bound(rows_.begin(), rows_.end(), number,
                                   [](const Row& row, int n) { return row.number < n; });
  if (at == rows_.end() || at->number != number) {
    return npos;
  }
  return static_cast<std::size_t>(at - rows_.begin());
}

std::size_t RowStore::findOrInsert(int number) {
  auto at = rows_.end();
  if (!rows_.empty() && rows_.back().number >= number) {
    at = std::lower_bound(rows_.begin(), rows_.end(), number,
                          [](const Row& row, int n) { return row.number < n; });
    if (at->number == number) {
      return static_cast<std::size_t>(at - rows_.begin());
    }
  }
  indexes_.clear();
  const auto added = rows_.insert(at, Row{number, 0, nullptr});
  return static_cast<std::size_t>(added - rows_.begin());
}

void RowStore::set(std::size_t position, Slot slot, std::string_view text) {
  setView(position, slot, texts_.keep(text));
}

void RowStore::setView(std::size_t position, Slot slot, std::string_view text) {
  Row& row = rows_[position];
  if (slot >= row.width) {
    // At least doubled, so that setting all cells one by one stays linear.
    widen(row, std::max<std::size_t>(slot + 1, 2 * std::size_t{row.width}));
  }
  forgetIndexesOf(slot);
  row.cells[slot] = text;
}

std::size_t RowStore::appendCopy(int number, const RowStore& from, std::size_t position) {
  const std::size_t added = findOrInsert(number);
  const Slot width = from.rows_[position].width;
  widen(rows_[added], std::min<std::size_t>(width, names_.size()));
  for (Slot source = 0; source < width; ++source) {
    const Cell cell = from.cellAt(position, source);
    if (cell.data() != nullptr) {
      const std::string& name = from.names_[source];
      const bool sameSlot = source < names_.size() && names_[source] == name;
      setView(added, sameSlot ? source : slot(name), cell);
    }
  }
  return added;
}

void RowStore::widen(Row& row, std::size_t width) {
  if (width <= row.width) {
    return;
  }
  Cell* const cells = static_cast<Cell*>(cells_.allocate(width * sizeof(Cell)));
  for (std::size_t slot = 0; slot < width; ++slot) {
    new (cells + slot) Cell(slot < row.width ? row.cells[slot] : Cell());
  }
  row.cells = cells;
  row.width = static_cast<std::uint32_t>(width);
}

std::size_t RowStore::firstMatch(Slot slot, std::string_view value) const {
  return firstMatch(slot, value, noSlot, std::string_view());
}

std::size_t RowStore::firstMatch(Slot slot1, std::string_view value1, Slot slot2,
                                 std::string_view value2) const {
  const Index& built = index(slot1, slot2);
  const auto found = built.positions.find(Key{value1, value2});
  return found == built.positions.end() ? npos : found->second;
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
  Index built{first, second, {}};
  built.positions.reserve(rows_.size());
  for (std::size_t position = 0; position < rows_.size(); ++position) {
    const Key key{cellAt(position, first), second == noSlot ? Cell() : cellAt(position, second)};
    built.positions.emplace(key, static_cast<std::uint32_t>(position));
  }
  return built;
}

void RowStore::forgetIndexesOf(Slot slot) {
  if (indexes_.empty()) {
    return;
  }
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
}

void RowStore::reset() {
  clear();
  names_.clear();
  slotsByName_.clear();
}
