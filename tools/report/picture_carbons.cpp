#include <algorithm>

#include "tools/report/pictures.h"
#include "tools/report/text.h"

namespace {

constexpr double width = 290;
constexpr double height = 62;
constexpr double left = 4;
constexpr double right = 286;
constexpr double top = 24;
constexpr double bottom = 42;
constexpr double wordLine = bottom - 5;
/// What the picture shows, ppm; beyond it the mark stands at the edge.
constexpr double low = 1;
constexpr double high = 13;
/// The words stand near the ends, or beside a mark that would cross them there, px.
constexpr double margin = 6;
constexpr double transWidth = 36;
constexpr double cisWidth = 22;

double x(double ppm) {
  return left + (right - left) * (std::clamp(ppm, low, high) - low) / (high - low);
}

void drawBand(Picture& picture, double from, double to, const char* shade) {
  picture.rectangle(x(from), top, x(to) - x(from), bottom - top, shade);
}

/// "trans" and "cis" in their bands, clear of the mark.
void drawWords(Picture& picture, double mark) {
  const double transStart = left + margin;
  const double cisEnd = right - margin;
  const bool onTrans = mark < transStart + transWidth;
  const bool onCis = mark > cisEnd - cisWidth;
  picture.text(onTrans ? mark + margin : transStart, wordLine, "start", "trans", "trans");
  picture.text(onCis ? mark - margin : cisEnd, wordLine, "end", "cis", "cis");
}

} // namespace

Picture carbonsPicture(const Report& report, const ProlineReport& proline) {
  const double difference = proline.carbons.difference().value();
  Picture picture("cb-cg-" + std::to_string(proline.residue), width, height);
  picture.setTitle("CB − CG of " + report.inputs.residueLabel(proline.residue));
  picture.setDescription(decimal(difference, 1) +
                         " ppm; below 6.5 trans, above 8 cis, between them open.");
  picture.text(left, 14, "start", "strong", "CB − CG: " + decimal(difference, 1) + " ppm");
  drawBand(picture, low, carbons::transBelow, "trans-soft");
  drawBand(picture, carbons::transBelow, carbons::cisAbove, "shade");
  drawBand(picture, carbons::cisAbove, high, "cis-soft");
  drawWords(picture, x(difference));
  picture.text(x((carbons::transBelow + carbons::cisAbove) / 2), wordLine, "middle", "muted small",
               "open");
  for (const double limit : {carbons::transBelow, carbons::cisAbove}) {
    picture.line(x(limit), top, x(limit), bottom + 3, "zero");
    picture.text(x(limit), bottom + 16, "middle", "muted small",
                 decimal(limit, limit == carbons::cisAbove ? 0 : 1));
  }
  picture.line(x(difference), top - 5, x(difference), bottom + 3, "mark");
  return picture;
}
