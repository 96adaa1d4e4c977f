#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// A loop of a STAR file: tags in lower case, values without quotes, row by row. Unknown and
/// inapplicable values ("?" and ".") are empty.
struct StarLoop {
  std::vector<std::string> tags;
  std::vector<std::string> values;
  std::size_t line = 0; ///< 1-based, of the loop_ keyword

  std::size_t rows() const { return tags.empty() ? 0 : values.size() / tags.size(); }
  /// Column of the first of the tags that the loop has, or -1.
  int column(std::initializer_list<const char*> names) const;
  /// Value in a row; empty for the column -1.
  const std::string& value(std::size_t row, int column) const;
};

/// A save frame, or what stands outside of all of them.
struct StarFrame {
  std::string name;
  std::map<std::string, std::string> tags; ///< by tag in lower case
  std::vector<StarLoop> loops;

  /// Value of the first of the tags that has one; empty when none has.
  std::string tag(std::initializer_list<const char*> names) const;
};

/// A data block as save frames; what stands outside of them comes first.
using StarBlock = std::vector<StarFrame>;

/// The data blocks of a STAR text; save frames before any are one.
///
/// \param file  the name for messages
/// Throws ToolError(badData), with the line, for a text that is no STAR file.
std::vector<StarBlock> readStar(std::string_view text, const std::string& file);
