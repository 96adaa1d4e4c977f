#include "table/gdb.h"

#include "table/message_text.h"
#include "table/run_end.h"

GDB::GDB(const std::string& fileName) {
  loadGDB(fileName);
}

RowStore::Slot GDB::requireColumn(std::string_view name) const {
  const auto slot = rows_.findSlot(name);
  if (slot && *slot < isColumnSlot_.size() && isColumnSlot_[*slot]) {
    return *slot;
  }
  throw RunEnd(0, "\tInvalid varible name '" + messageText(name) + "'\n");
}

void GDB::setEntry(int row, const std::string& name, const std::string& value) {
  const RowStore::Slot slot = requireColumn(name);
  rows_.set(rows_.findOrInsert(row), slot, value);
}

void GDB::addEntry(const std::string& name, const std::string& value) {
  setEntry(getEntryCount() + 1, name, value);
}

GDB::Entry GDB::copyRow(std::size_t position) const {
  Entry entry;
  for (RowStore::Slot slot = 0; slot < rows_.slotCount(); ++slot) {
    const Cell text = rows_.cellAt(position, slot);
    if (text.data() != nullptr) {
      entry.emplace(rows_.slotName(slot), text);
    }
  }
  return entry;
}

GDB::Entry GDB::getEntry(int row) {
  return copyRow(rows_.findOrInsert(row));
}

GDB::Entry GDB::getEntry(const std::string& column, const std::string& value, int n) const {
  if (n == 1) {
    const std::size_t found = findRow(column, value);
    return found == noRow ? Entry() : copyRow(found);
  }
  int matches = 0;
  for (std::size_t at = 0; n > 1 && at < rows_.size(); ++at) {
    if (cell(at, column) == value && ++matches == n) {
      return copyRow(at);
    }
  }
  return {};
}

GDB::Entry GDB::getEntry(const std::string& column1, const std::string& value1,
                         const std::string& column2, const std::string& value2, int n) const {
  if (n == 1) {
    const std::size_t found = findRow(column1, value1, column2, value2);
    return found == noRow ? Entry() : copyRow(found);
  }
  int matches = 0;
  for (std::size_t at = 0; n > 1 && at < rows_.size(); ++at) {
    if (cell(at, column1) == value1 && cell(at, column2) == value2 && ++matches == n) {
      return copyRow(at);
    }
  }
  return {};
}

std::size_t GDB::findRow(std::string_view column, std::string_view value) const {
  const auto slot = rows_.findSlot(column);
  if (!slot) {
    // No row has such a cell, so every row reads as "" there.
    return value.empty() && rows_.size() > 0 ? 0 : noRow;
  }
  return rows_.firstMatch(*slot, value);
}

std::size_t GDB::findRow(std::string_view column1, std::string_view value1,
                         std::string_view column2, std::string_view value2) const {
  const auto slot1 = rows_.findSlot(column1);
  const auto slot2 = rows_.findSlot(column2);
  if (!slot1) {
    return value1.empty() ? findRow(column2, value2) : noRow;
  }
  if (!slot2) {
    return value2.empty() ? findRow(column1, value1) : noRow;
  }
  return rows_.firstMatch(*slot1, value1, *slot2, value2);
}

std::string_view GDB::cell(std::size_t position, std::string_view column) const {
  return cell(position, this->column(column));
}

GDB::Column GDB::column(std::string_view name) const {
  return static_cast<Column>(rows_.findSlot(name).value_or(RowStore::noSlot));
}

std::size_t GDB::appendRow() {
  return rows_.findOrInsert(getEntryCount() + 1);
}

std::size_t GDB::appendRowFrom(const GDB& other, std::size_t position) {
  return rows_.appendCopy(getEntryCount() + 1, other.rows_, position);
}

void GDB::setCell(std::size_t position, std::string_view name, std::string_view text) {
  rows_.set(position, requireColumn(name), text);
}

void GDB::copyHeader(const GDB& other) {
  className_ = other.className_;
  plaintext_ = other.plaintext_;
  formatText_ = other.formatText_;
  varsText_ = other.varsText_;
  firstResidue_ = other.firstResidue_;
  remarks_ = other.remarks_;
  dataItems_ = other.dataItems_;
  columnNames_ = other.columnNames_;
  columnFormats_ = other.columnFormats_;
  rows_.clear();
  for (RowStore::Slot slot = 0; slot < other.rows_.slotCount(); ++slot) {
    rows_.slot(other.rows_.slotName(slot));
  }
  findColumnSlots();
}

void GDB::layOutFirst(std::initializer_list<const char*> names) {
  for (const char* const name : names) {
    rows_.slot(name);
  }
}

void GDB::setData(const std::string& key, const std::string& value) {
  dataItems_.push_back(key + " " + value);
}

std::string GDB::getData(const std::string& key) const {
  std::string joined;
  for (const std::string& item : dataItems_) {
    const std::size_t blank = item.find(' ');
    std::string itemKey = item.substr(0, blank);
    for (char& c : itemKey) {
      c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    if (itemKey == key) {
      // Without a blank the position wraps to 0: the item is its own value. Kept.
      joined += " " + item.substr(blank + 1);
    }
  }
  return joined;
}

void GDB::addRemark(const std::string& remark) {
  remarks_.push_back(remark);
}

std::string GDB::getResidName(int number) {
  return residueNames_[number];
}
