#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "table/text_pool.h"

/// Text of one cell. A cell that was never set has no data pointer and reads as empty text.
using Cell = std::string_view;

/// Numbered rows of named text cells: an ordered map from row number to a map from name to text,
/// laid out as one list of cells instead of a tree a row.
///
/// Names are interned as slots; a row holds its cells by slot, up to about the highest one set, so
/// that a row of few cells is small when their slots are. A row's *position* is its place in
/// ascending order of row numbers, from 0. Appending at the end, reading a cell and the first
/// match of a value are constant time; a row number that falls between others moves the row list.
///
/// A copy shares the text of the original, which neither of the two changes any more.
class RowStore {
 public:
  using Slot = std::size_t;
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);
  /// A slot that no name has: all its cells are missing.
  static constexpr Slot noSlot = static_cast<Slot>(-1);

  RowStore() = default;
  RowStore(const RowStore& other);
  RowStore& operator=(const RowStore& other);
  RowStore(RowStore&&) noexcept = default;
  RowStore& operator=(RowStore&&) noexcept = default;
  ~RowStore() = default;

  /// Room for so many rows with a cell for each name, so that adding them moves none.
  void reserve(std::size_t count);

  /// Number of rows.
  std::size_t size() const { return rows_.size(); }

  /// The slot of a name, made when new.
  Slot slot(std::string_view name);
  /// The slot of a name, if any row or column ever used it.
  std::optional<Slot> findSlot(std::string_view name) const;
  std::size_t slotCount() const { return names_.size(); }
  const std::string& slotName(Slot slot) const { return *names_[slot]; }

  int numberAt(std::size_t position) const { return rows_[position].number; }
  Cell cellAt(std::size_t position, Slot slot) const {
    const Row& row = rows_[position];
    return slot < row.width ? cells_[row.firstCell + slot] : Cell();
  }

  /// Position of the row with that number, an empty row being inserted when there is none.
  std::size_t findOrInsert(int number);

  /// Sets a cell to a lasting copy of `text`.
  void set(std::size_t position, Slot slot, std::string_view text);
  /// What text lies in; kept as long as there are rows.
  using Owner = std::shared_ptr<const void>;
  /// Sets as many cells as there are slots, one each, to texts that lie in `owner`.
  void setRow(std::size_t position, const std::vector<Slot>& slots,
              const std::vector<std::string_view>& texts, const Owner& owner);
  /// Appends a row holding the cells of `from`'s row, whose text it shares.
  std::size_t appendCopy(int number, const RowStore& from, std::size_t position);

  /// Position of the first row whose cell under `slot` equals `value`, or npos. The first call
  /// after a change of the rows or of that column builds a hash index in one pass.
  std::size_t firstMatch(Slot slot, std::string_view value) const;
  /// The same for two cells of one row.
  std::size_t firstMatch(Slot slot1, std::string_view value1, Slot slot2,
                         std::string_view value2) const;

  /// Drops all rows; names keep their slots.
  void clear();
  /// Drops all rows and names, so that the slots of an earlier set of columns cost nothing.
  void reset();

 private:
  struct Row {
    int number;
    std::uint32_t width;   ///< number of cells
    std::size_t firstCell; ///< in `cells_`
  };
  /// Hash table of row positions by the cells under two slots, the first row of equal ones only.
  /// The cells are read from the rows, so that a row costs 8 to 16 bytes and no allocation: a
  /// standard container takes 32.
  struct Index {
    Slot first;
    Slot second;
    /// A power of two many, at most half of them in use, since a second look costs two reads of far
    /// memory: position plus 1, or 0 for a free place.
    std::vector<std::uint32_t> places;
  };

  void share(const Owner& text);
  void shareText(const RowStore& other);
  bool sharesLayout(const RowStore& other, std::size_t width) const;
  void setView(std::size_t position, Slot slot, Cell text);
  void widen(Row& row, std::size_t width);
  const Index& index(Slot first, Slot second) const;
  Index buildIndex(Slot first, Slot second) const;
  std::size_t placeOf(const Index& index, Cell value1, Cell value2) const;
  void forgetIndexesOf(Slot slot);

  std::map<std::string, Slot, std::less<>> slotsByName_;
  std::vector<const std::string*> names_; ///< by slot, keys of the map
  std::vector<Row> rows_;
  std::vector<Cell> cells_;
  std::shared_ptr<TextPool> ownText_; ///< made when first needed
  std::vector<Owner> sharedTexts_;    ///< what cells lie in besides
  mutable std::vector<Index> indexes_;
};
