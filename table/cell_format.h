#pragma once

#include <string>
#include <string_view>

/// One column's conversion, made ready to print many cells.
///
/// Prints what the C library's printf would print for the piece, blanks around the conversion
/// included, without a limit on the cell's length. A width or precision above 9999 counts as 9999,
/// so that no table can exhaust the memory.
class CellFormat {
 public:
  /// \param piece  a valid conversion with blanks around it; anything else prints nothing
  explicit CellFormat(const std::string& piece);

  /// Appends one cell to `out`. Text that is no number prints as 0 in a number column.
  void append(std::string& out, std::string_view cell) const;

 private:
  enum class Kind { none, text, integer, fixed };

  void readFlags();
  void appendText(std::string& out, std::string_view cell) const;
  void appendNumber(std::string& out, std::string_view cell) const;
  bool appendAsItStands(std::string& out, std::string_view cell) const;
  void appendPadded(std::string& out, std::string_view text) const;

  Kind kind_ = Kind::none;
  std::string before_;
  std::string after_;
  /// The conversion for printf, with long numbers cut.
  std::string printf_;
  /// Whether the piece is "%", an optional "-", a width and a precision and nothing odd, so that
  /// the members below say all; otherwise printf prints.
  bool plain_ = false;
  bool left_ = false;
  std::size_t width_ = 0;
  std::string blank_; ///< the whole piece around no text
  int precision_ = -1;
};
