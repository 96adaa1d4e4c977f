#include "table/row_store.h"

#include <algorithm>
#include <functional>

namespace {

/// Cells that a row gets at once, if there are so many names.
constexpr std::size_t fewestCells = 8;
/// Most tables have so few names, and to compare them is quicker than to search the map.
constexpr std::size_t fewNames = 16;

std::size_t hashOf(Cell value1, Cell value2) {
  const std::hash<std::string_view> hash;
  return hash(value1) * 31 + hash(value2);
}

} // namespace

RowStore::RowStore(const RowStore& other) {
  *this = other;
}

RowStore& RowStore::operator=(const RowStore& other) {
  if (this == &other) {
    return *this;
  }
  reset();
  for (const std::string* const name : other.names_) {
    slot(*name);
  }
  rows_ = other.rows_;
  cells_ = other.cells_;
  sharedTexts_ = other.sharedTexts_;
  shareText(other);
  return *this;
}

void RowStore::share(const Owner& text) {
  if (text != nullptr &&
      std::find(sharedTexts_.begin(), sharedTexts_.end(), text) == sharedTexts_.end()) {
    sharedTexts_.push_back(text);
  }
}

void RowStore::shareText(const RowStore& other) {
  share(other.ownText_);
  for (const Owner& text : other.sharedTexts_) {
    share(text);
  }
}

void RowStore::reserve(std::size_t count) {
  rows_.reserve(count);
  cells_.reserve(count * names_.size());
}

RowStore::Slot RowStore::slot(std::string_view name) {
  if (const std::optional<Slot> known = findSlot(name)) {
    return *known;
  }
  const Slot added = names_.size();
  names_.push_back(&slotsByName_.emplace(name, added).first->first);
  return added;
}

std::optional<RowStore::Slot> RowStore::findSlot(std::string_view name) const {
  for (Slot slot = 0; slot < std::min(names_.size(), fewNames); ++slot) {
    if (*names_[slot] == name) {
      return slot;
    }
  }
  if (names_.size() <= fewNames) {
    return std::nullopt;
  }
  const auto found = slotsByName_.find(name);
  return found == slotsByName_.end() ? std::nullopt : std::optional<Slot>(found->second);
}

std::size_t RowStore::findOrInsert(int number) {
  const Row empty{number, 0, cells_.size()};
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
  if (ownText_ == nullptr) {
    ownText_ = std::make_shared<TextPool>();
  }
  setView(position, slot, ownText_->keep(text));
}

void RowStore::setView(std::size_t position, Slot slot, Cell text) {
  Row& row = rows_[position];
  if (slot >= row.width) {
    // At least doubled, so that setting all cells one by one stays linear.
    const std::size_t wanted = std::max(fewestCells, 2 * std::size_t{row.width});
    widen(row, std::max(slot + 1, std::min(wanted, names_.size())));
  }
  if (!indexes_.empty()) {
    forgetIndexesOf(slot);
  }
  cells_[row.firstCell + slot] = text;
}

void RowStore::widen(Row& row, std::size_t width) {
  if (row.firstCell + row.width != cells_.size()) {
    // Not the last row: its cells move behind all others.
    const std::size_t moved = cells_.size();
    for (std::size_t slot = 0; slot < row.width; ++slot) {
      cells_.push_back(cells_[row.firstCell + slot]);
    }
    row.firstCell = moved;
  }
  row.width = static_cast<std::uint32_t>(width);
  cells_.resize(row.firstCell + width);
}

void RowStore::setRow(std::size_t position, const std::vector<Slot>& slots,
                      const std::vector<std::string_view>& texts, const Owner& owner) {
  share(owner);
  Row& row = rows_[position];
  if (row.width < names_.size()) {
    widen(row, names_.size());
  }
  indexes_.clear();
  for (std::size_t i = 0; i < slots.size(); ++i) {
    cells_[row.firstCell + slots[i]] = texts[i];
  }
}

std::size_t RowStore::appendCopy(int number, const RowStore& from, std::size_t position) {
  if (&from != this) {
    shareText(from);
  }
  const std::size_t added = findOrInsert(number);
  const Row source = from.rows_[position];
  if (sharesLayout(from, source.width)) {
    widen(rows_[added], source.width);
    std::copy_n(from.cells_.begin() + static_cast<std::ptrdiff_t>(source.firstCell), source.width,
                cells_.begin() + static_cast<std::ptrdiff_t>(rows_[added].firstCell));
    return added;
  }
  for (Slot column = 0; column < source.width; ++column) {
    const Cell text = from.cells_[source.firstCell + column];
    if (text.data() != nullptr) {
      setView(added, slot(*from.names_[column]), text);
    }
  }
  return added;
}

/// Whether the first slots of both stores have the same names.
bool RowStore::sharesLayout(const RowStore& other, std::size_t width) const {
  return width <= names_.size() &&
         std::equal(names_.begin(), names_.begin() + static_cast<std::ptrdiff_t>(width),
                    other.names_.begin(),
                    [](const std::string* a, const std::string* b) { return *a == *b; });
}

std::size_t RowStore::firstMatch(Slot slot, std::string_view value) const {
  return firstMatch(slot, value, noSlot, Cell());
}

std::size_t RowStore::firstMatch(Slot slot1, std::string_view value1, Slot slot2,
                                 std::string_view value2) const {
  const Index& built = index(slot1, slot2);
  const std::uint32_t found = built.places[placeOf(built, value1, value2)];
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
  while (count / 2 < rows_.size()) {
    count *= 2;
  }
  Index built{first, second, std::vector<std::uint32_t>(count)};
  for (std::size_t position = 0; position < rows_.size(); ++position) {
    std::uint32_t& place =
        built.places[placeOf(built, cellAt(position, first), cellAt(position, second))];
    if (place == 0) {
      place = static_cast<std::uint32_t>(position + 1);
    }
  }
  return built;
}

/// Where the first row with these two cells stands in the index, or the free place for it.
std::size_t RowStore::placeOf(const Index& index, Cell value1, Cell value2) const {
  const std::size_t mask = index.places.size() - 1;
  std::size_t at = hashOf(value1, value2) & mask;
  for (; index.places[at] != 0; at = (at + 1) & mask) {
    const std::size_t position = index.places[at] - 1;
    if (cellAt(position, index.first) == value1 && cellAt(position, index.second) == value2) {
      break;
    }
  }
  return at;
}

void RowStore::forgetIndexesOf(Slot slot) {
  const auto concerned = [slot](const Index& known) {
    return known.first == slot || known.second == slot;
  };
  indexes_.erase(std::remove_if(indexes_.begin(), indexes_.end(), concerned), indexes_.end());
}

void RowStore::clear() {
  rows_.clear();
  cells_.clear();
  indexes_.clear();
  ownText_.reset();
  sharedTexts_.clear();
}

void RowStore::reset() {
  clear();
  slotsByName_.clear();
  names_.clear();
}
