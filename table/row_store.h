#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Text of one cell. A cell that was never set has no data pointer and reads as empty text.
using Cell = std::string_view;

/// A cell in eight bytes, since the memory of a large table is most of its cost: address and size
/// of a text share one number. Addresses of a process take 48 bits on the processors this is built
/// for, which leaves 16 for the size; a longer text is kept as a `Cell` that the address leads to.
class PackedCell {
 public:
  static constexpr std::size_t shortestLong = 0xFFFF;

  /// A missing cell.
  PackedCell() = default;
  /// A text shorter than `shortestLong`.
  explicit PackedCell(Cell text) : PackedCell(text.data(), text.size()) {}
  /// A longer text; the cell it is kept in must stay where it is.
  explicit PackedCell(const Cell* kept) : PackedCell(kept, shortestLong) {}

  Cell view() const {
    const std::size_t size = bits_ & shortestLong;
    // NOLINTNEXTLINE(performance-no-int-to-ptr,*-reinterpret-cast): it was a pointer before
    const void* const address = reinterpret_cast<const void*>(bits_ >> sizeBits);
    return size < shortestLong ? Cell(static_cast<const char*>(address), size)
                               : *static_cast<const Cell*>(address);
  }

 private:
  static constexpr unsigned sizeBits = 16;
  static_assert(sizeof(void*) == sizeof(std::uint64_t));

  PackedCell(const void* address, std::size_t size)
      // NOLINTNEXTLINE(*-reinterpret-cast): an address as a number, to share it with the size
      : bits_(reinterpret_cast<std::uintptr_t>(address) << sizeBits | size) {}

  std::uint64_t bits_ = 0;
};

/// Memory that only grows and never moves, so that views into it stay valid.
class Arena {
 public:
  /// \param largestBlock  size up to which blocks double, bytes
  explicit Arena(std::size_t largestBlock) : largestBlock_(largestBlock) {}

  /// Room for so many empty cells, valid as long as the arena; one that keeps text has none.
  PackedCell* allocateCells(std::size_t count);

  /// A lasting copy of `text`; never a null pointer, not even for empty text.
  std::string_view keep(std::string_view text);

  void clear();

 private:
  void* allocate(std::size_t size);

  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t largestBlock_;
  std::size_t used_ = 0;
  std::size_t capacity_ = 0;
};

/// Numbered rows of named text cells: an ordered map from row number to a map from name to text,
/// laid out so that a row costs one small array instead of a tree.
///
/// Names are interned as slots; a row holds its cells by slot, up to about the highest one set, so
/// that a row of few cells is small when their slots are. A row's *position* is its place in
/// ascending order of row numbers, from 0. Appending at the end, reading a cell and the first
/// match of a value are constant time; a row number that falls between others moves the row list.
class RowStore {
 public:
  using Slot = std::uint32_t;
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);
  /// A slot that no name has: all its cells are missing.
  static constexpr Slot noSlot = static_cast<Slot>(-1);

  RowStore() = default;
  RowStore(const RowStore&) = delete;
  RowStore& operator=(const RowStore&) = delete;
  RowStore(RowStore&&) = default;
  RowStore& operator=(RowStore&&) = default;

  /// Room for so many rows, so that adding them moves none.
  void reserve(std::size_t count) { rows_.reserve(count); }

  /// Number of rows.
  std::size_t size() const { return rows_.size(); }

  /// The slot of a name, made when new.
  Slot slot(std::string_view name);
  /// The slot of a name, if any row or column ever used it.
  std::optional<Slot> findSlot(std::string_view name) const;
  std::size_t slotCount() const { return names_.size(); }
  const std::string& slotName(Slot slot) const { return names_[slot]; }

  int numberAt(std::size_t position) const { return rows_[position].number; }
  Cell cellAt(std::size_t position, Slot slot) const {
    const Row& row = rows_[position];
    return slot < row.width ? row.cells[slot].view() : Cell();
  }

  /// Position of the row with that number, an empty row being inserted when there is none.
  std::size_t findOrInsert(int number);

  /// Sets a cell to a lasting copy of `text`.
  void set(std::size_t position, Slot slot, std::string_view text);
  /// Sets a cell to `text` itself, which must outlive the store (see `adopt`).
  void setView(std::size_t position, Slot slot, std::string_view text);
  /// Sets as many cells as there are slots, one each, to texts that must outlive the store.
  void setRow(std::size_t position, const std::vector<Slot>& slots,
              const std::vector<std::string_view>& texts);
  /// Appends a row holding the cells of `from`'s row, which must neither change nor go as long as
  /// this store has rows. Where both stores lay out rows alike, nothing is copied before it is set.
  std::size_t appendCopy(int number, const RowStore& from, std::size_t position);

  /// Keeps a file's bytes alive as long as the rows.
  void adopt(std::unique_ptr<char[]> bytes) { adopted_.push_back(std::move(bytes)); }

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
    std::uint32_t width : 31;
    /// Whether the cells belong to another store and are copied before one is set.
    std::uint32_t shared : 1;
    PackedCell* cells;
  };
  /// Hash table of row positions by the cells under two slots; the cells are read from the rows, so
  /// that a row costs 7 to 13 bytes.
  struct Index {
    Slot first;
    Slot second;
    /// A power of two many, at most three quarters in use: position plus 1, or 0 for a free place.
    std::vector<std::uint32_t> places;
    /// A part of the hash of each place in use: rows that differ in it are not read, which would
    /// cost more than all the rest.
    std::vector<std::uint8_t> tags;
  };
  struct Place {
    std::size_t at;
    std::uint8_t tag;
  };

  void copyCells(Row& row, std::size_t width);
  PackedCell packed(Cell text);
  const Index& index(Slot first, Slot second) const;
  Index buildIndex(Slot first, Slot second) const;
  Place placeOf(const Index& index, std::string_view value1, std::string_view value2) const;
  bool sharesLayout(const RowStore& other, std::size_t width) const;
  void forgetIndexesOf(Slot slot);

  std::deque<std::string> names_;
  std::vector<std::string_view> firstNames_;               ///< views of the first of `names_`
  std::unordered_map<std::string_view, Slot> slotsByName_; ///< keys are views of `names_`
  std::vector<Row> rows_;
  static constexpr std::size_t largestBlock = std::size_t{2048} * 1024;
  Arena cells_{largestBlock};
  Arena texts_{largestBlock / 8}; // rows have far more cells than new texts
  std::vector<std::unique_ptr<char[]>> adopted_;
  std::deque<Cell> longCells_;
  mutable std::vector<Index> indexes_;
};
