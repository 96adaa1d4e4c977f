#pragma once

#include <deque>
#include <string>
#include <string_view>

/// Text that stays in place, so that views of it hold as long as the pool does.
class TextPool {
 public:
  /// A lasting copy; never a null pointer, not even for empty text.
  std::string_view keep(std::string_view text);

 private:
  std::deque<std::string> blocks_; ///< each filled up to the room it was made with
};
