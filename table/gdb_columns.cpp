#include <algorithm>

#include "table/gdb.h"
#include "table/message_text.h"
#include "table/run_end.h"

namespace {

struct PresetClass {
  const char* name;
  const char* vars;
  const char* format;
};

/// The two blanks before the shift column are kept: they set it apart in print.
constexpr PresetClass presetClasses[] = {
    {"KESLO_SHIFT", "RESID RESNAME ATOMNAME SHIFT", "%4d %1s %4s  %8.3f"},
    {"KESLO_PRED", "INDEX PHI PSI DIST W R1 R2 R3 SOURCE",
     "%2d %9.3f %9.3f %8.3f %5.3f %-4s %-4s %-4s %s"},
};

/// Shows the piece with its blanks. The carriage return that a line of a file from another system
/// ends with is one of them: only the closing quote follows it, so it cannot hide anything.
std::string badFormat(const std::string& piece) {
  const bool returns = !piece.empty() && piece.back() == '\r';
  const std::string shown = messageText(returns ? piece.substr(0, piece.size() - 1) : piece);
  return "\tBad format syntax '" + shown + (returns ? "\r'\n" : "'\n");
}

bool isConversionLetter(char c) {
  return c == 's' || c == 'd' || c == 'f';
}

bool hasExactlyOne(const std::vector<std::string>& formats, int index, char letter) {
  if (index < 0 || static_cast<std::size_t>(index) >= formats.size()) {
    return false;
  }
  return GDB::contains(formats[static_cast<std::size_t>(index)], letter) == 1;
}

} // namespace

void GDB::presetClass(const std::string& name) {
  for (const PresetClass& preset : presetClasses) {
    if (name == preset.name) {
      className_ = name;
      VARS_str_parser(preset.vars);
      FORMAT_str_parser(preset.format);
    }
  }
}

bool GDB::acceptsColumn(const std::string& name, const std::string& format) const {
  if (!checkFormat(format)) {
    errors(badFormat(format));
    return false;
  }
  if (name.find(' ') != std::string::npos) {
    errors("\tInvalid varible name '" + messageText(name) + "' (with space)\n");
    return false;
  }
  return true;
}

void GDB::addVAR(const std::string& name, const std::string& format) {
  if (acceptsColumn(name, format)) {
    setColumn(columnIndex(name), name, format);
  }
}

void GDB::setVAR(int index, const std::string& name, const std::string& format) {
  if (!acceptsColumn(name, format)) {
    return;
  }
  const std::size_t onePast = columnNames_.size() + 1;
  if (index >= 1 && static_cast<std::size_t>(index) <= onePast) {
    setColumn(static_cast<std::size_t>(index) - 1, name, format);
  } else {
    errors("\tPlease use number 1-" + std::to_string(onePast) + " as index for varible '" +
           messageText(name) + "' with format '" + messageText(format) + "'\n");
  }
}

void GDB::setColumn(std::size_t index, const std::string& name, const std::string& format) {
  if (index == columnNames_.size()) {
    columnNames_.emplace_back();
  }
  if (columnFormats_.size() <= index) {
    columnFormats_.resize(index + 1);
  }
  columnNames_[index] = name;
  columnFormats_[index] = format;
  findColumnSlots();
}

void GDB::findColumnSlots() {
  columnSlots_.clear();
  for (const std::string& name : columnNames_) {
    columnSlots_.push_back(rows_.slot(name));
  }
  isColumnSlot_.assign(rows_.slotCount(), false);
  for (const RowStore::Slot slot : columnSlots_) {
    isColumnSlot_[slot] = true;
  }
}

std::size_t GDB::columnIndex(const std::string& name) const {
  const auto found = std::find(columnNames_.begin(), columnNames_.end(), name);
  return static_cast<std::size_t>(found - columnNames_.begin());
}

bool GDB::isVarString(int index) const {
  return hasExactlyOne(columnFormats_, index, 's');
}
bool GDB::isVarInt(int index) const {
  return hasExactlyOne(columnFormats_, index, 'd');
}
bool GDB::isVarFloat(int index) const {
  return hasExactlyOne(columnFormats_, index, 'f');
}

bool GDB::isVarString(const std::string& name) const {
  return isVarString(indexOrNone(name));
}
bool GDB::isVarInt(const std::string& name) const {
  return isVarInt(indexOrNone(name));
}
bool GDB::isVarFloat(const std::string& name) const {
  return isVarFloat(indexOrNone(name));
}

/// -1 for a name that is no column, also when formats are left over from more columns.
int GDB::indexOrNone(const std::string& name) const {
  const std::size_t index = columnIndex(name);
  return index < columnNames_.size() ? static_cast<int>(index) : -1;
}

void GDB::VARS_str_parser(const std::string& text) {
  rows_.reset();
  columnNames_ = split(" ", text);
  findColumnSlots();
}

void GDB::FORMAT_str_parser(const std::string& text) {
  rows_.clear();
  columnFormats_.clear();
  const int conversions = contains(text, '%');
  if (conversions == 0 || static_cast<std::size_t>(conversions) != columnNames_.size()) {
    return;
  }
  // What stands before the first "%", at least the blank added here, is piece 0 and no column.
  const std::vector<std::string> pieces = split("%", " " + text);
  for (std::size_t column = 0; column < columnNames_.size(); ++column) {
    const std::string piece = "%" + (column + 1 < pieces.size() ? pieces[column + 1] : "");
    if (!checkFormat(piece)) {
      throw RunEnd(0, badFormat(piece));
    }
    columnFormats_.push_back(piece);
  }
}

bool GDB::checkFormat(const std::string& piece) {
  const std::string text = simplifyWhiteSpace(piece);
  if (text.size() < 2 || text.front() != '%' || !isConversionLetter(text.back())) {
    return false;
  }
  return std::all_of(text.begin() + 1, text.end() - 1,
                     [](char c) { return isDigit(c) || c == '-' || c == '.'; });
}
