#pragma once

#include <array>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/import/star_tokens.h"

/// A loop of a STAR text: its tags, and where its values stand. Values are cut from the text when a
/// `StarRows` goes through them, so that a loop costs no memory however long it is.
struct StarLoop {
  std::vector<std::string> tags; ///< in lower case
  std::size_t begin = 0;         ///< offset of the first value
  std::size_t end = 0;           ///< offset behind the last
  std::size_t line = 0;          ///< 1-based, of the loop_ keyword
  std::string broken;            ///< why its rows cannot be told apart; empty when they can
  std::size_t brokenAt = 0;      ///< offset of the row that shows it

  /// Column of the first of the tags that the loop has, or -1.
  int column(std::initializer_list<const char*> names) const;
  bool has(const char* tag) const { return column({tag}) >= 0; }
};

/// A save frame, or what stands outside of all of them.
struct StarFrame {
  std::string name;
  std::map<std::string, std::string_view> tags; ///< by tag in lower case
  std::vector<StarLoop> loops;

  /// Value of the first of the tags that has one; empty when none has.
  std::string tag(std::initializer_list<const char*> names) const;
};

/// A data block as save frames; what stands outside of them comes first.
using StarBlock = std::vector<StarFrame>;

/// A STAR text as data blocks. Everything points into the text, which must outlive it.
struct StarDocument {
  std::string_view text;
  std::string file; ///< the name for messages
  std::vector<StarBlock> blocks;
  /// What is out of place, "LINE:COLUMN: ...", the first of each kind.
  std::vector<std::string> problems;
};

/// "LINE:COLUMN: " and why a broken loop is.
std::string whyBroken(const StarDocument& document, const StarLoop& loop);

/// Goes through the rows of a loop.
class StarRows {
 public:
  /// \param columns  those to cut out, as `StarLoop::column` gives them; -1 is empty in every row
  /// Throws ToolError(badData), with line and column, for a loop that is broken.
  StarRows(const StarDocument& document, const StarLoop& loop, std::vector<int> columns);

  /// Moves to the next row; false when there is none.
  bool next();
  /// Value of the row in the n-th of the columns asked for; points into the text.
  std::string_view operator[](std::size_t n) const { return values_[n]; }

 private:
  StarTokens tokens_;
  std::size_t width_;
  std::vector<int> columns_;
  std::vector<std::string_view> row_;
  std::vector<std::string_view> values_;
};

/// Finds the data blocks, save frames and loops of a text; save frames before any data block are
/// one. Lines before the first keyword or tag, and a byte-order mark, are skipped; save frames and
/// loops may be left open. Nothing here refuses a text: what cannot be read is a problem or a
/// broken loop.
StarDocument readStar(std::string_view text, const std::string& file);
