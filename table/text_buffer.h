#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

/// Text that grows at its end. Unlike a std::string it hands out room without filling it first,
/// which for cells of a few bytes is half the cost of writing them.
class TextBuffer {
 public:
  /// So many bytes behind the end may be written to until the next change.
  static constexpr std::size_t spare = 64;

  /// Makes the text longer. \return the new bytes, for the caller to fill; valid until the next
  /// change
  char* extend(std::size_t size) {
    if (capacity_ < size_ + size + spare) {
      grow(size_ + size + spare);
    }
    char* const added = bytes_.get() + size_;
    size_ += size;
    return added;
  }

  TextBuffer& append(std::string_view text) {
    if (!text.empty()) {
      std::memcpy(extend(text.size()), text.data(), text.size());
    }
    return *this;
  }

  /// Makes the text shorter.
  void cut(std::size_t size) { size_ = size; }
  std::size_t size() const { return size_; }
  std::string_view view() const { return {bytes_.get(), size_}; }

 private:
  void grow(std::size_t least) {
    const std::size_t larger = least > 2 * capacity_ ? least : 2 * capacity_;
    std::unique_ptr<char[]> bytes(new char[larger]);
    if (size_ > 0) {
      std::memcpy(bytes.get(), bytes_.get(), size_);
    }
    bytes_ = std::move(bytes);
    capacity_ = larger;
  }

  std::unique_ptr<char[]> bytes_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};
