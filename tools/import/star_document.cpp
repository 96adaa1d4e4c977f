#include "tools/import/star_document.h"

#include <algorithm>

#include "tools/common/tool.h"

namespace {

using Kind = StarToken::Kind;

std::string inLowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), lowerCase);
  return lower;
}

/// Offset of the first line that a STAR text can begin with: a keyword or a tag.
std::size_t startOfData(std::string_view text) {
  std::size_t line = text.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;
  while (line < text.size()) {
    const std::size_t end = std::min(text.find_first_of("\r\n", line), text.size());
    const StarToken first = StarTokens(text, line, end).next();
    const bool tag = first.kind == Kind::tag && first.text.size() > 1 &&
                     lowerCase(first.text[1]) >= 'a' && lowerCase(first.text[1]) <= 'z';
    if (tag || first.kind == Kind::data || first.kind == Kind::save || first.kind == Kind::loop) {
      return line;
    }
    line = end + 1;
  }
  return text.size();
}

std::string placed(const TextPlace& place) {
  return std::to_string(place.line) + ":" + std::to_string(place.column) + ": ";
}

/// Watches where the rows of a loop begin, to find the one that has a value too many or too few.
class RowWatch {
 public:
  RowWatch(std::string_view text, std::size_t width) : text_(text), width_(width) {}

  void add(std::size_t at) {
    if (count_ % width_ == 0 && !outOfStep_) {
      const bool alone = firstOnLine(at);
      if (count_ > 0 && !alone) {
        // Too many values before this one on its line, or too few on the line of the row before.
        outOfStep_ = true;
        suspect_ = sameLine(start_, at) ? at : start_;
        // Several rows on the first line are the file's way of writing.
        linesAreRows_ = count_ > width_ || !sameLine(start_, at);
      }
      start_ = at;
    }
    ++count_;
  }

  bool broken() const { return count_ % width_ != 0; }
  std::size_t count() const { return count_; }
  std::size_t suspect() const { return outOfStep_ && linesAreRows_ ? suspect_ : start_; }
  /// Whether nothing speaks against the rows before the last.
  bool lastIsSuspect() const { return suspect() == start_; }

 private:
  bool firstOnLine(std::size_t at) const {
    while (at > 0 && (text_[at - 1] == ' ' || text_[at - 1] == '\t')) {
      --at;
    }
    return at == 0 || text_[at - 1] == '\n' || text_[at - 1] == '\r';
  }
  bool sameLine(std::size_t from, std::size_t to) const {
    return text_.substr(from, to - from).find_first_of("\r\n") == std::string_view::npos;
  }

  std::string_view text_;
  std::size_t width_;
  std::size_t count_ = 0;
  std::size_t start_ = 0;
  std::size_t suspect_ = 0;
  bool outOfStep_ = false;
  bool linesAreRows_ = true;
};

class Reading {
 public:
  Reading(std::string_view text, const std::string& file)
      : tokens_(text, startOfData(text), text.size()), places_(text) {
    document_.text = text;
    document_.file = file;
  }

  StarDocument run() {
    for (take(); token_.kind != Kind::end;) {
      readItem();
    }
    return std::move(document_);
  }

 private:
  void take() {
    token_ = tokens_.next();
    if (token_.unclosed) {
      note("the text field that begins here is not closed");
    }
  }

  void readItem() {
    switch (token_.kind) {
    case Kind::data:
      document_.blocks.emplace_back().emplace_back();
      inFrame_ = false;
      take();
      return;
    case Kind::save:
      openFrame();
      return;
    case Kind::tag:
      readTag();
      return;
    case Kind::loop:
      readLoop();
      return;
    case Kind::stop: // of a loop inside of another
      take();
      return;
    default:
      note("a value stands where a tag is expected");
      take();
    }
  }

  StarBlock& block() {
    if (document_.blocks.empty()) {
      document_.blocks.emplace_back().emplace_back();
    }
    return document_.blocks.back();
  }
  StarFrame& frame() { return inFrame_ ? block().back() : block().front(); }

  /// A save frame that is not closed ends where the next begins.
  void openFrame() {
    inFrame_ = !token_.text.empty();
    if (inFrame_) {
      block().emplace_back().name = token_.text;
    }
    take();
  }

  void readTag() {
    const std::string name = inLowerCase(token_.text);
    take();
    if (token_.kind != Kind::value) {
      note("a value of " + name + " is expected");
      return;
    }
    frame().tags[name] = token_.text;
    take();
  }

  void readLoop() {
    StarLoop loop;
    const std::size_t start = token_.at;
    loop.line = places_.find(start).line;
    take();
    for (; token_.kind == Kind::tag; take()) {
      loop.tags.push_back(inLowerCase(token_.text));
    }
    if (loop.tags.empty()) {
      note("a loop has no tags");
      return;
    }
    loop.begin = token_.at;
    RowWatch watch(document_.text, loop.tags.size());
    bool closed = true;
    for (; token_.kind == Kind::value; take()) {
      watch.add(token_.at);
      closed = !token_.unclosed;
    }
    loop.end = token_.at;
    if (watch.broken() || !closed) {
      loop.brokenAt = watch.suspect();
      loop.broken = token_.kind == Kind::end && watch.lastIsSuspect()
                        ? "the file ends in this row of the loop of " + loop.tags.front() +
                              ": it is cut short"
                        : "a row of the loop of " + loop.tags.front() +
                              " has not as many values as the loop has tags (" +
                              std::to_string(loop.tags.size()) + ")";
    } else if (watch.count() == 0 && token_.kind == Kind::loop) {
      loop.brokenAt = token_.at;
      loop.broken = "a loop stands inside of the loop of " + loop.tags.front();
    }
    if (token_.kind == Kind::end) {
      note("the file ends inside of a loop; it may be cut short");
    } else if (token_.kind == Kind::stop) {
      take();
    }
    frame().loops.push_back(std::move(loop));
  }

  /// One of each kind says enough: what follows is often a consequence.
  void note(const std::string& what) {
    if (std::find(noted_.begin(), noted_.end(), what) == noted_.end() &&
        noted_.size() < mostProblems) {
      noted_.push_back(what);
      document_.problems.push_back(placed(places_.find(token_.at)) + what);
    }
  }

  static constexpr std::size_t mostProblems = 5;

  StarTokens tokens_;
  PlaceFinder places_;
  StarToken token_;
  StarDocument document_;
  bool inFrame_ = false;
  std::vector<std::string> noted_;
};

} // namespace

int StarLoop::column(std::initializer_list<const char*> names) const {
  for (const char* name : names) {
    const auto found = std::find(tags.begin(), tags.end(), name);
    if (found != tags.end()) {
      return static_cast<int>(found - tags.begin());
    }
  }
  return -1;
}

std::string StarFrame::tag(std::initializer_list<const char*> names) const {
  for (const char* wanted : names) {
    const auto found = tags.find(wanted);
    if (found != tags.end() && !found->second.empty()) {
      return std::string(found->second);
    }
  }
  return "";
}

std::string whyBroken(const StarDocument& document, const StarLoop& loop) {
  return placed(PlaceFinder(document.text).find(loop.brokenAt)) + loop.broken;
}

StarRows::StarRows(const StarDocument& document, const StarLoop& loop, std::vector<int> columns)
    : tokens_(document.text, loop.begin, loop.end), width_(loop.tags.size()),
      columns_(std::move(columns)), row_(width_), values_(columns_.size()) {
  if (!loop.broken.empty()) {
    throw ToolError(ToolStatus::badData, document.file + ":" + whyBroken(document, loop));
  }
}

bool StarRows::next() {
  for (std::string_view& value : row_) {
    const StarToken token = tokens_.next();
    if (token.kind != Kind::value) {
      return false;
    }
    value = token.text;
  }
  for (std::size_t n = 0; n < columns_.size(); ++n) {
    values_[n] = columns_[n] < 0 ? std::string_view() : row_[static_cast<std::size_t>(columns_[n])];
  }
  return true;
}

StarDocument readStar(std::string_view text, const std::string& file) {
  return Reading(text, file).run();
}
