#pragma once

#include <cstddef>
#include <string_view>

/// One word of a STAR text.
struct StarToken {
  enum class Kind { end, data, save, loop, stop, tag, value };
  Kind kind = Kind::end;
  std::string_view text; ///< without quotes; the name alone for data and save
  std::size_t at = 0;    ///< offset of its first byte, quotes included
  bool unclosed = false; ///< a text field that lacks its last semicolon
};

/// Cuts STAR text into words, front to back, without copying any of it.
///
/// Lenient where files in use are: a quote that does not close on its line belongs to a bare word;
/// control characters separate words as blanks do; lines end in LF, CR LF or CR; words may hold any
/// other byte. The unknown and inapplicable values ("?" and "." without quotes) are empty.
class StarTokens {
 public:
  /// Begins at an offset in `text`, which must outlive the words, and ends at another.
  StarTokens(std::string_view text, std::size_t begin, std::size_t end)
      : text_(text.substr(0, end)), at_(begin) {}

  StarToken next();

 private:
  bool atLineStart(std::size_t at) const;
  void skipBlanks();
  StarToken textField();
  StarToken quoted(std::size_t close) const;
  std::size_t closingQuote();
  StarToken bare();

  std::string_view text_;
  std::size_t at_;
  std::size_t noSingleBefore_ = 0; ///< no single quote closes before here
  std::size_t noDoubleBefore_ = 0; ///< no double quote does
};

/// A place in a text for messages, 1-based; columns count bytes.
struct TextPlace {
  std::size_t line = 1;
  std::size_t column = 1;
};

/// Finds the places of offsets; fast when each lies behind the one asked for before.
class PlaceFinder {
 public:
  explicit PlaceFinder(std::string_view text) : text_(text) {}
  TextPlace find(std::size_t at);

 private:
  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t lineStart_ = 0;
  std::size_t line_ = 1;
};

/// Without regard to the case of ASCII letters, whatever the locale.
char lowerCase(char c);
bool equalWithoutCase(std::string_view one, std::string_view other);
