#include "tools/report/picture.h"

#include "tools/report/style.h"
#include "tools/report/text.h"

namespace {

/// Room around a picture that is a file of its own.
constexpr double fileMargin = 10;

std::string attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + value + "\"";
}

std::string attribute(const char* name, double value) {
  return attribute(name, coordinate(value));
}

std::string closed(const std::string& tag, const std::string& hint) {
  return hint.empty() ? "/>\n" : "><title>" + escaped(hint) + "</title></" + tag + ">\n";
}

} // namespace

std::string coordinate(double value) {
  std::string text = plainDecimal(value, 2);
  while (text.back() == '0') {
    text.pop_back();
  }
  if (text.back() == '.') {
    text.pop_back();
  }
  return text;
}

std::string barPath(double from, double to, double y, double height, bool cut) {
  const double tip = to > from ? height / 2 : -height / 2;
  const auto at = [](double x, double height0) {
    return coordinate(x) + " " + coordinate(height0);
  };
  const double shoulder = cut ? to - tip : to;
  return "M" + at(from, y) + " L" + at(shoulder, y) + (cut ? " L" + at(to, y + height / 2) : "") +
         " L" + at(shoulder, y + height) + " L" + at(from, y + height) + " Z";
}

double textWidth(const std::string& text, bool bold) {
  constexpr double regularWidth = 7.3;
  constexpr double boldWidth = 8.1;
  std::size_t count = 0;
  for (const char c : text) {
    count += (static_cast<unsigned char>(c) & 0xC0U) != 0x80 ? 1 : 0; // a character's first byte
  }
  return static_cast<double>(count) * (bold ? boldWidth : regularWidth);
}

Picture::Picture(std::string id, double width, double height)
    : id_(std::move(id)), width_(width), height_(height) {}

void Picture::rectangle(double x, double y, double width, double height, const std::string& style,
                        const std::string& hint) {
  body_ += "<rect" + attribute("x", x) + attribute("y", y) + attribute("width", width) +
           attribute("height", height) + attribute("class", style) + closed("rect", hint);
}

void Picture::line(double x1, double y1, double x2, double y2, const std::string& style) {
  body_ += "<line" + attribute("x1", x1) + attribute("y1", y1) + attribute("x2", x2) +
           attribute("y2", y2) + attribute("class", style) + "/>\n";
}

void Picture::path(const std::string& commands, const std::string& style, const std::string& hint) {
  body_ += "<path" + attribute("d", commands) + attribute("class", style) + closed("path", hint);
}

void Picture::text(double x, double y, const char* anchor, const std::string& style,
                   const std::string& content) {
  const bool start = std::string(anchor) == "start";
  body_ += "<text" + attribute("x", x) + attribute("y", y) +
           (start ? "" : attribute("text-anchor", std::string(anchor))) +
           (style.empty() ? "" : attribute("class", style)) + ">" + escaped(content) + "</text>\n";
}

void Picture::beginLink(const std::string& anchor, const std::string& label) {
  linked_ = true;
  body_ += "<a" + attribute("href", "#" + anchor) + attribute("aria-label", escaped(label)) + ">\n";
}

std::string Picture::element(bool standalone) const {
  const double margin = standalone ? fileMargin : 0;
  const double width = width_ + 2 * margin;
  const double height = height_ + 2 * margin;
  const std::string corner = coordinate(-margin) + " " + coordinate(-margin);
  std::string svg = "<svg";
  if (standalone) {
    svg += attribute("xmlns", std::string("http://www.w3.org/2000/svg"));
  }
  svg += attribute("class", std::string("picture")) + attribute("width", width) +
         attribute("height", height) +
         attribute("viewBox", corner + " " + coordinate(width) + " " + coordinate(height)) +
         attribute("role", std::string(linked_ ? "group" : "img")) +
         attribute("aria-labelledby", id_ + "-t " + id_ + "-d") + ">\n";
  svg += "<title id=\"" + id_ + "-t\">" + escaped(title_) + "</title>\n";
  svg += "<desc id=\"" + id_ + "-d\">" + escaped(description_) + "</desc>\n";
  if (standalone) {
    svg += "<style>\n" + pictureFileStyle() + "</style>\n";
    svg += "<rect" + attribute("x", -margin) + attribute("y", -margin) + attribute("width", width) +
           attribute("height", height) + attribute("class", std::string("paper")) + "/>\n";
  }
  return svg + body_ + "</svg>\n";
}

std::string Picture::inlined() const {
  return element(false);
}

std::string Picture::standalone() const {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + element(true);
}
