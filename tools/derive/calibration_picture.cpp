#include "tools/derive/calibration_picture.h"

#include <cmath>

#include "tools/derive/markdown.h"

namespace derive {
namespace {

constexpr double side = 320;  ///< of the square plot
constexpr double margin = 60; ///< around it

double xOf(double probability) {
  return margin + side * probability;
}

double yOf(double share) {
  return margin + side * (1 - share);
}

std::string label(double x, double y, const std::string& anchor, const std::string& text) {
  return "<text x=\"" + fixed(x, 1) + "\" y=\"" + fixed(y, 1) + "\" text-anchor=\"" + anchor +
         "\">" + text + "</text>\n";
}

std::string line(double x1, double y1, double x2, double y2, const std::string& style) {
  return "<line x1=\"" + fixed(x1, 1) + "\" y1=\"" + fixed(y1, 1) + "\" x2=\"" + fixed(x2, 1) +
         "\" y2=\"" + fixed(y2, 1) + "\" " + style + "/>\n";
}

std::string axes() {
  std::string svg = "<rect x=\"" + fixed(margin, 1) + "\" y=\"" + fixed(margin, 1) + "\" width=\"" +
                    fixed(side, 1) + "\" height=\"" + fixed(side, 1) +
                    "\" fill=\"none\" stroke=\"#444\"/>\n";
  for (int tenth = 0; tenth <= 10; tenth += 2) {
    const double value = tenth / 10.0;
    svg += label(xOf(value), yOf(0) + 18, "middle", fixed(value, 1));
    svg += label(xOf(0) - 8, yOf(value) + 4, "end", fixed(value, 1));
  }
  svg += label(xOf(0.5), yOf(0) + 40, "middle", "mean P_CIS_NORM");
  svg += label(xOf(0), yOf(1) - 10, "start", "share of cis prolines");
  return svg;
}

} // namespace

std::string calibrationPicture(const Metrics& metrics, const std::string& title) {
  const std::string size = fixed(side + 2 * margin, 0);
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + size + "\" height=\"" +
                    size + "\" font-family=\"sans-serif\" font-size=\"12\">\n";
  svg += "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
  svg += label(xOf(0.5), 24, "middle", title);
  svg += axes();
  svg += line(xOf(0), yOf(0), xOf(1), yOf(1), "stroke=\"#999\" stroke-dasharray=\"4 4\"");
  for (const CalibrationBin& bin : metrics.bins) {
    if (bin.count == 0) {
      continue;
    }
    const auto count = static_cast<double>(bin.count);
    const double x = xOf(bin.meanProbability);
    const double y = yOf(bin.shareCis);
    const double error = std::sqrt(bin.shareCis * (1 - bin.shareCis) / count);
    svg += line(x, yOf(std::fmin(1, bin.shareCis + error)), x,
                yOf(std::fmax(0, bin.shareCis - error)), "stroke=\"#1f77b4\"");
    svg += "<circle cx=\"" + fixed(x, 1) + "\" cy=\"" + fixed(y, 1) + "\" r=\"" +
           fixed(2 + 2 * std::sqrt(std::log10(count) + 1), 1) +
           "\" fill=\"#1f77b4\" fill-opacity=\"0.6\"><title>" + std::to_string(bin.count) +
           " prolines</title></circle>\n";
  }
  return svg + "</svg>\n";
}

} // namespace derive
