#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "table/row_store.h"
#include "table/text_sink.h"

/// One table file in memory: remarks, header items, named columns with a printf-style conversion
/// each, and numbered rows whose cells are text.
///
/// All files of this program but the coordinates are such tables. Numbers are made from cells only
/// by the caller or by the writer. Row numbers are 32-bit and start at 1 in a loaded file. A cell
/// that was never set reads as empty text; lookups never fail.
///
/// `getEntry` with a value and n = 1, `findRow` and `cell` are constant time once an index is
/// built, which a change of the looked-up column drops again: alternate between filling and
/// searching in large steps only. So look-ups change a table that looks constant: one table is for
/// one thread at a time. A copy is a table of its own, and cheap: it shares the text.
///
/// An input that is refused ends as a `RunEnd`; a file that cannot be written, and a column that
/// cannot be declared, are reported to `errors`, and the run goes on.
class GDB {
 public:
  /// A row as a map from column name to cell text; empty when there is no such row.
  using Entry = std::map<std::string, std::string>;
  /// "No such row" as a position.
  static constexpr std::size_t noRow = RowStore::npos;

  /// An empty table.
  GDB() = default;
  /// An empty table that loads the named file at once; throws as `loadGDB`.
  explicit GDB(const std::string& fileName);

  // --- files and texts -----------------------------------------------------------------------

  /// Reads a table file into this table, adding to what it holds; a VARS or FORMAT line drops all
  /// rows read so far, the rows after it keep counting.
  ///
  /// Throws RunEnd with status 0 and one line when the file cannot be opened or a FORMAT piece is
  /// invalid, and std::out_of_range for a line that holds only REMARK or DATA; what was read until
  /// then stays.
  void loadGDB(const std::string& fileName);
  /// The same from the bytes of such a file.
  void loadText(std::string text);

  /// Creates or truncates the file and writes the table. A file that cannot be opened or written
  /// to its end gives "\tCan't save file " and the name; the run goes on.
  void saveGDB(const std::string& fileName) const;
  /// What `saveGDB` writes.
  std::string text() const;

  /// Rows of a table by position.
  using RowFilter = std::function<bool(std::size_t)>;
  /// The same with the rows of another table that are wanted in place of this one's, which spares a
  /// copy of them. Both have the same columns, as after `copyHeader`.
  void saveGDB(const std::string& fileName, const GDB& rows, const RowFilter& wanted) const;
  std::string text(const GDB& rows, const RowFilter& wanted) const;

  /// The name given to the last `loadGDB`.
  const std::string& fileName() const { return fileName_; }

  /// From now on `saveGDB` writes rows only. There is no way back.
  void set_plaintext() { plaintext_ = true; }

  // --- columns -----------------------------------------------------------------------------

  /// Declares the columns of a known class, "KESLO_SHIFT" or "KESLO_PRED"; drops all rows. Any
  /// other name does nothing.
  void presetClass(const std::string& name);
  const std::string& className() const { return className_; }

  /// Declares a column, or changes the format of an existing one. A bad format or a name with a
  /// blank is reported on standard error and ignored.
  void addVAR(const std::string& name, const std::string& format);

  /// Sets name and format of the column at a 1-based index, at most one past the last. Bad
  /// arguments are reported on standard error and ignored.
  void setVAR(int index, const std::string& name, const std::string& format);

  /// Whether the column's format holds exactly one "s" (isVarInt "d", isVarFloat "f"). 0-based;
  /// false for an undeclared index or an unknown name.
  bool isVarString(int index) const;
  bool isVarInt(int index) const;
  bool isVarFloat(int index) const;
  bool isVarString(const std::string& name) const;
  bool isVarInt(const std::string& name) const;
  bool isVarFloat(const std::string& name) const;

  std::size_t columnCount() const { return columnNames_.size(); }
  const std::vector<std::string>& columnNames() const { return columnNames_; }

  /// Declares the columns named in the text, separated by blanks; drops all rows.
  void VARS_str_parser(const std::string& text);

  /// Gives each declared column its conversion, in order; drops all rows. A text with another
  /// number of "%" than there are columns leaves the table without formats, silently. An invalid
  /// piece throws RunEnd with status 0.
  void FORMAT_str_parser(const std::string& text);

  /// Whether the text is one conversion that a column may have: "%", then digits, "-" and "." as
  /// one likes, then a single "s", "d" or "f". White space around it does not count.
  static bool checkFormat(const std::string& piece);

  // --- rows --------------------------------------------------------------------------------

  int getEntryCount() const { return static_cast<int>(rows_.size()); }

  /// Sets one cell, making the row when needed. A name that is no column throws RunEnd
  /// with status 0 and a message.
  void setEntry(int row, const std::string& name, const std::string& value);

  /// Opens a new row, numbered one more than there are rows, with this one cell.
  void addEntry(const std::string& name, const std::string& value);

  /// A copy of the row with that number. Kept: when there is none, an empty row is inserted under
  /// that number, and the row count grows.
  Entry getEntry(int row);

  /// A copy of the n-th row (from 1), in ascending row number, whose cell equals the value
  /// exactly; a cell never set equals "". Empty when there is no n-th match or n < 1.
  Entry getEntry(const std::string& column, const std::string& value, int n) const;
  Entry getEntry(const std::string& column1, const std::string& value1, const std::string& column2,
                 const std::string& value2, int n) const;

  // The same without copies, for code that visits many rows. A *position* counts the rows from 0
  // in ascending row number; it holds until rows are inserted before it or dropped.

  std::size_t findRow(std::string_view column, std::string_view value) const;
  std::size_t findRow(std::string_view column1, std::string_view value1, std::string_view column2,
                      std::string_view value2) const;
  std::size_t rowCount() const { return rows_.size(); }
  int rowNumber(std::size_t position) const { return rows_.numberAt(position); }
  /// Cell text at a position, valid until the rows change; empty for a missing cell and for noRow.
  std::string_view cell(std::size_t position, std::string_view column) const;

  /// A column found once, for loops that read it in many rows. It holds until columns are declared
  /// or cells set; under a name that no row has, all cells are missing.
  enum class Column : RowStore::Slot {};
  Column column(std::string_view name) const;
  std::string_view cell(std::size_t position, Column column) const {
    return position == noRow ? Cell() : rows_.cellAt(position, static_cast<RowStore::Slot>(column));
  }

  /// Opens a new row as `addEntry` does, without a cell. \return its position
  std::size_t appendRow();
  /// Opens a new row with all cells of another table's row, columns or not. \return its position
  std::size_t appendRowFrom(const GDB& other, std::size_t position);
  /// Sets one cell, as `setEntry` does.
  void setCell(std::size_t position, std::string_view name, std::string_view text);

  /// Room for so many rows, so that adding them moves none.
  void reserveRows(std::size_t count) { rows_.reserve(count); }

  /// Gives these names the first places in the layout of rows, before any column is declared: rows
  /// that hold only them stay small, however many columns there are.
  void layOutFirst(std::initializer_list<const char*> names);

  /// Takes over remarks, header items, columns and formats of another table, but not its residue
  /// names, and lays rows out as that table does; drops all rows.
  void copyHeader(const GDB& other);

  // --- header items and remarks ------------------------------------------------------------

  /// Appends the header item "key value"; an earlier item with that key stays.
  void setData(const std::string& key, const std::string& value);

  /// The values of all items with that key (upper case), each after one blank: "" when there is
  /// none, " AC DE" for the items "SEQUENCE AC" and "SEQUENCE DE". An item without a blank is its
  /// own value.
  std::string getData(const std::string& key) const;

  void addRemark(const std::string& remark);
  const std::vector<std::string>& remarks() const { return remarks_; }
  const std::vector<std::string>& dataItems() const { return dataItems_; }

  /// One-letter name of a residue of the sequence header; "" when unknown, and then an empty entry
  /// is added.
  std::string getResidName(int number);
  /// All residues of the sequence header, by number.
  const std::map<int, std::string>& residueNames() const { return residueNames_; }
  /// Residue number of the first letter of the sequence; 1 without a header item.
  int firstResidue() const { return firstResidue_; }

  // --- text utilities ----------------------------------------------------------------------
  // White space is the blank and the codes 9 to 13.

  /// Every run of white space becomes one blank, none at either end.
  static std::string simplifyWhiteSpace(const std::string& text);
  /// The tokens between white space. Kept: empty text gives one empty token.
  static std::vector<std::string> split_WhiteSpace(const std::string& text);
  /// The non-empty pieces between the separators.
  static std::vector<std::string> split(const std::string& separator, const std::string& text);
  static std::vector<std::string> split(const char& separator, const std::string& text);
  /// Pieces from..to (0-based) of the text, joined with the separator, copied into `out`, which
  /// must have room for them and a closing NUL. \return out
  static char* section(const std::string& text, const char& separator, char* out, int from, int to);
  /// Number of places at which the character, or the text (overlaps counted), occurs.
  static int contains(const std::string& text, const char& wanted);
  static int contains(const std::string& text, const std::string& wanted);
  static bool isSpace(const char& c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
  static bool isDigit(const char& c) { return c >= '0' && c <= '9'; }

  TextSink errors = toStandardError; ///< takes the lines about what was ignored or not written

 private:
  // Reader steps.
  struct Reading;
  bool readRow(std::string_view line, Reading& reading);
  void readKeyword(std::string_view line, Reading& reading);
  void readSequence();

  // Writer steps. `flush` may empty the text that was written so far.
  using Flush = std::function<void()>;
  void write(std::string& out, const Flush& flush, const GDB& rows, const RowFilter& wanted) const;
  void writeHeader(std::string& out) const;
  void writeSequenceItem(std::string& out, const std::string& item) const;
  void writeRows(std::string& out, const Flush& flush, const RowFilter& wanted) const;

  void findColumnSlots();
  void setColumn(std::size_t index, const std::string& name, const std::string& format);
  std::size_t columnIndex(const std::string& name) const;
  int indexOrNone(const std::string& name) const;
  RowStore::Slot requireColumn(std::string_view name) const;
  bool acceptsColumn(const std::string& name, const std::string& format) const;
  Entry copyRow(std::size_t position) const;

  std::string className_;
  bool plaintext_ = false;
  std::string fileName_;
  std::string formatText_;
  std::string varsText_;
  int firstResidue_ = 1;
  std::map<int, std::string> residueNames_;
  std::vector<std::string> remarks_;
  std::vector<std::string> dataItems_;
  std::vector<std::string> columnNames_;
  /// By column index. Shorter than the names when a FORMAT line did not fit the columns.
  std::vector<std::string> columnFormats_;
  /// Row slot of each column; two columns of one name share a slot.
  std::vector<RowStore::Slot> columnSlots_;
  /// By slot, whether it is that of a column; shorter than there are slots.
  std::vector<bool> isColumnSlot_;
  RowStore rows_;
};
