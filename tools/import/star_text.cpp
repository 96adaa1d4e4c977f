#include "tools/import/star_text.h"

#include <algorithm>

namespace {

bool isBlank(char c) {
  const unsigned char code = static_cast<unsigned char>(c);
  return code <= ' ' || code == 0x7f;
}

bool isPrintable(char c) {
  return c > ' ' && c <= '~';
}

/// Reads one text from front to back and writes its readable form.
class Pass {
 public:
  explicit Pass(std::string_view text) : text_(text) { out_.reserve(text.size() + 64); }

  std::string run() {
    while (at_ < text_.size()) {
      step();
    }
    return (dataSeen_ ? "" : "data_unnamed ") + std::move(out_);
  }

 private:
  void step() {
    const char c = text_[at_];
    if (c == ';' && atLineStart()) {
      copyTextField();
    } else if (isBlank(c)) {
      out_ += c == '\n' || c == '\t' ? c : ' ';
      ++at_;
    } else if (c == '#') {
      copyComment();
    } else if (c == '\'' || c == '"') {
      copyQuoted(c);
    } else {
      copyBare();
    }
  }

  bool atLineStart() const { return at_ == 0 || text_[at_ - 1] == '\n'; }

  /// Up to the line that begins with the closing semicolon, that semicolon included.
  void copyTextField() {
    const std::size_t end = text_.find("\n;", at_ + 1);
    copyTo(end == std::string_view::npos ? text_.size() : end + 2);
  }

  /// A comment's bytes say nothing to the reader; those that it refuses become blanks.
  void copyComment() {
    for (; at_ < text_.size() && text_[at_] != '\n'; ++at_) {
      out_ += isPrintable(text_[at_]) ? text_[at_] : ' ';
    }
  }

  /// A quoted value ends at a quote before white space.
  void copyQuoted(char quote) {
    std::size_t end = at_ + 1;
    while (end < text_.size() && text_[end] != '\n' &&
           !(text_[end] == quote && (end + 1 == text_.size() || isBlank(text_[end + 1])))) {
      ++end;
    }
    const bool closed = end < text_.size() && text_[end] == quote;
    copyTo(closed ? end + 1 : end);
  }

  void copyBare() {
    const std::size_t start = at_;
    while (at_ < text_.size() && !isBlank(text_[at_])) {
      ++at_;
    }
    const std::string_view token = text_.substr(start, at_ - start);
    noteKeyword(token);
    const bool plain = token.front() != '$' && std::all_of(token.begin(), token.end(), isPrintable);
    if (plain) {
      out_ += token;
    } else {
      const char quote = token.back() == '\'' ? '"' : '\'';
      out_ += quote;
      out_ += token;
      out_ += quote;
    }
  }

  /// Only what stands first tells whether the text has a data block.
  void noteKeyword(std::string_view token) {
    if (firstSeen_) {
      return;
    }
    firstSeen_ = true;
    std::string start(token.substr(0, 5));
    std::transform(start.begin(), start.end(), start.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    dataSeen_ = start == "data_";
  }

  void copyTo(std::size_t end) {
    out_ += text_.substr(at_, end - at_);
    at_ = end;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::string out_;
  bool firstSeen_ = false;
  bool dataSeen_ = false;
};

} // namespace

std::string readableStar(std::string_view text) {
  return Pass(text).run();
}
