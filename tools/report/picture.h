#pragma once

#include <string>

/// A vector picture in the making: shapes in pixels, coloured by class (see page/picture.css).
///
/// Every text that is handed in is escaped here.
class Picture {
 public:
  /// \param id  unique in a page; letters, digits and hyphens
  Picture(std::string id, double width, double height);

  void setTitle(const std::string& title) { title_ = title; }
  void setDescription(const std::string& description) { description_ = description; }
  void setHeight(double height) { height_ = height; }

  void rectangle(double x, double y, double width, double height, const std::string& style,
                 const std::string& hint = "");
  void line(double x1, double y1, double x2, double y2, const std::string& style);
  /// `path` holds SVG path commands of the caller's own making.
  void path(const std::string& commands, const std::string& style, const std::string& hint = "");
  /// From here to `endLink` the shapes lead to an element of the page; for pictures inside a page.
  void beginLink(const std::string& anchor, const std::string& label);
  void endLink() { body_ += "</a>\n"; }
  /// \param anchor  "start", "middle" or "end"
  void text(double x, double y, const char* anchor, const std::string& style,
            const std::string& content);

  /// The picture as an element of a page.
  std::string inlined() const;
  /// The picture as a file of its own, with the colours in it.
  std::string standalone() const;

 private:
  std::string element(bool standalone) const;

  std::string id_, title_, description_, body_;
  double width_, height_;
  bool linked_ = false;
};

/// About how wide a text is at 12 px, in px: rather too wide than too narrow.
double textWidth(const std::string& text, bool bold);

/// A coordinate as the pictures write it: at most two decimals.
std::string coordinate(double value);

/// Commands of a bar from `from` to `to` at height `y`, its far end pointed when it is cut short.
std::string barPath(double from, double to, double y, double height, bool cut);
