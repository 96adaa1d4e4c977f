#include "tools/import/star_tokens.h"

#include <algorithm>

namespace {

bool isLineEnd(char c) {
  return c == '\n' || c == '\r';
}

bool isBlank(char c) {
  const unsigned char code = static_cast<unsigned char>(c);
  return code <= ' ' || code == 0x7f;
}

bool beginsWith(std::string_view word, std::string_view start) {
  return word.size() >= start.size() && equalWithoutCase(word.substr(0, start.size()), start);
}

} // namespace

char lowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

bool equalWithoutCase(std::string_view one, std::string_view other) {
  return one.size() == other.size() &&
         std::equal(one.begin(), one.end(), other.begin(),
                    [](char a, char b) { return lowerCase(a) == lowerCase(b); });
}

bool StarTokens::atLineStart(std::size_t at) const {
  return at == 0 || isLineEnd(text_[at - 1]);
}

void StarTokens::skipBlanks() {
  while (at_ < text_.size()) {
    if (text_[at_] == '#') {
      at_ = std::min(text_.find_first_of("\r\n", at_), text_.size());
    } else if (isBlank(text_[at_])) {
      ++at_;
    } else {
      return;
    }
  }
}

/// A text field ends at the line that begins with a semicolon; its first and last line ends are not
/// part of it.
StarToken StarTokens::textField() {
  const std::size_t start = at_;
  std::size_t end = start;
  do {
    end = text_.find(';', end + 1);
  } while (end != std::string_view::npos && !atLineStart(end));
  StarToken token{StarToken::Kind::value, {}, start, end == std::string_view::npos};
  end = std::min(end, text_.size());
  at_ = std::min(end + 1, text_.size());
  std::string_view text = text_.substr(start + 1, end - start - 1);
  for (const char c : {'\n', '\r'}) {
    if (!text.empty() && text.back() == c) {
      text.remove_suffix(1);
    }
  }
  token.text = text;
  return token;
}

/// Offset of the quote that closes the one here: one before white space, on the same line. The end
/// of the text when there is none, which is looked for once in a line only.
std::size_t StarTokens::closingQuote() {
  const char quote = text_[at_];
  std::size_t& noneBefore = quote == '"' ? noDoubleBefore_ : noSingleBefore_;
  if (at_ < noneBefore) {
    return text_.size();
  }
  std::size_t end = at_ + 1;
  for (; end < text_.size() && !isLineEnd(text_[end]); ++end) {
    if (text_[end] == quote && (end + 1 == text_.size() || isBlank(text_[end + 1]))) {
      return end;
    }
  }
  noneBefore = end;
  return text_.size();
}

StarToken StarTokens::quoted(std::size_t close) const {
  return {StarToken::Kind::value, text_.substr(at_ + 1, close - at_ - 1), at_, false};
}

StarToken StarTokens::bare() {
  const std::size_t start = at_;
  while (at_ < text_.size() && !isBlank(text_[at_])) {
    ++at_;
  }
  const std::string_view word = text_.substr(start, at_ - start);
  using Kind = StarToken::Kind;
  if (word.front() == '_') {
    return {Kind::tag, word, start, false};
  }
  if (beginsWith(word, "data_")) {
    return {Kind::data, word.substr(5), start, false};
  }
  if (beginsWith(word, "save_")) {
    return {Kind::save, word.substr(5), start, false};
  }
  if (equalWithoutCase(word, "loop_")) {
    return {Kind::loop, word, start, false};
  }
  if (equalWithoutCase(word, "stop_")) {
    return {Kind::stop, word, start, false};
  }
  return {Kind::value, word == "?" || word == "." ? std::string_view() : word, start, false};
}

StarToken StarTokens::next() {
  skipBlanks();
  if (at_ >= text_.size()) {
    return {StarToken::Kind::end, {}, text_.size(), false};
  }
  const char c = text_[at_];
  if (c == ';' && atLineStart(at_)) {
    return textField();
  }
  const std::size_t close = c == '\'' || c == '"' ? closingQuote() : text_.size();
  if (close == text_.size()) {
    return bare();
  }
  const StarToken token = quoted(close);
  at_ = close + 1;
  return token;
}

TextPlace PlaceFinder::find(std::size_t at) {
  if (at < at_) {
    at_ = lineStart_ = 0;
    line_ = 1;
  }
  for (; at_ < at; ++at_) {
    const char c = text_[at_];
    const bool twoBytes = c == '\r' && at_ + 1 < text_.size() && text_[at_ + 1] == '\n';
    if (isLineEnd(c) && !twoBytes) {
      ++line_;
      lineStart_ = at_ + 1;
    }
  }
  return {line_, at - lineStart_ + 1};
}
