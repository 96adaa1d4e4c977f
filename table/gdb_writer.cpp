#include "table/cell_format.h"
#include "table/file_io.h"
#include "table/gdb.h"
#include "table/message_text.h"

namespace {
/// Letters of a sequence on one line.
constexpr std::size_t sequenceLineLength = 55;

bool everyRow(std::size_t /*position*/) {
  return true;
}

} // namespace

void GDB::saveGDB(const std::string& fileName) const {
  saveGDB(fileName, *this, everyRow);
}

void GDB::saveGDB(const std::string& fileName, const GDB& rows, const RowFilter& wanted) const {
  OutputFile file(fileName);
  if (file.good()) {
    write(
        file.buffer(), [&file] { file.flushIfLarge(); }, rows, wanted);
  }
  if (!file.close()) {
    errors("\tCan't save file " + messageText(fileName) + "\n");
  }
}

std::string GDB::text() const {
  return text(*this, everyRow);
}

std::string GDB::text(const GDB& rows, const RowFilter& wanted) const {
  std::string text;
  write(
      text, [] {}, rows, wanted);
  return text;
}

void GDB::write(std::string& out, const Flush& flush, const GDB& rows,
                const RowFilter& wanted) const {
  if (!plaintext_) {
    writeHeader(out);
  }
  rows.writeRows(out, flush, wanted);
}

void GDB::writeHeader(std::string& out) const {
  for (const std::string& remark : remarks_) {
    out.append("REMARK ").append(remark).append("\n");
  }
  out.append("\n");
  for (const std::string& item : dataItems_) {
    if (item.substr(0, item.find(' ')) == "SEQUENCE") {
      writeSequenceItem(out, item);
    } else {
      out.append("DATA ").append(item).append("\n");
    }
  }
  out.append("\nVARS   ");
  for (const std::string& name : columnNames_) {
    out.append(name).append(" ");
  }
  out.append("\nFORMAT ");
  for (const std::string& format : columnFormats_) {
    out.append(format);
  }
  out.append("\n\n");
}

void GDB::writeSequenceItem(std::string& out, const std::string& item) const {
  // Without a blank the position wraps to 0: the item is its own value, as in `getData`.
  const std::string value = simplifyWhiteSpace(item.substr(item.find(' ') + 1));
  if (value.empty()) {
    return;
  }
  // Kept: a length that is a multiple of the line's ends with a line without letters.
  for (std::size_t line = 0; line <= value.size() / sequenceLineLength; ++line) {
    const std::string_view letters(value);
    out.append("DATA SEQUENCE ")
        .append(letters.substr(line * sequenceLineLength, sequenceLineLength))
        .append("\n");
  }
}

void GDB::writeRows(std::string& out, const Flush& flush, const RowFilter& wanted) const {
  std::vector<CellFormat> formats;
  for (std::size_t column = 0; column < columnNames_.size(); ++column) {
    formats.emplace_back(column < columnFormats_.size() ? columnFormats_[column] : "");
  }
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    if (!wanted(row)) {
      continue;
    }
    for (std::size_t column = 0; column < formats.size(); ++column) {
      formats[column].append(out, rows_.cellAt(row, columnSlots_[column]));
      // Within the row: wide columns make a row of any length.
      flush();
    }
    out.append("\n");
  }
}
