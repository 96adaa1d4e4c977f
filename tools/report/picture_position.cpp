#include <algorithm>
#include <cmath>

#include "tools/report/pictures.h"
#include "tools/report/text.h"

namespace {

constexpr double width = 290;
constexpr double height = 108;
constexpr double left = 4;
constexpr double right = 286;
constexpr double top = 48;
constexpr double bottom = 90;
constexpr double deviationsShown = 3.2;
constexpr double curveDeviations = 3.6;
constexpr int curvePoints = 72;

/// Chemical shifts to pixels.
struct Scale {
  double low = 0, high = 1;
  double x(double shift) const { return left + (right - left) * (shift - low) / (high - low); }
};

bool comparable(const Term& term) {
  return term.cisDeviation > 0 && term.transDeviation > 0 && std::isfinite(term.used);
}

Scale scaleFor(const Term& term) {
  Scale scale;
  scale.low = std::min(term.cis - deviationsShown * term.cisDeviation,
                       term.trans - deviationsShown * term.transDeviation);
  scale.high = std::max(term.cis + deviationsShown * term.cisDeviation,
                        term.trans + deviationsShown * term.transDeviation);
  if (term.present) {
    const double margin = 0.05 * (scale.high - scale.low);
    scale.low = std::min(scale.low, term.used - margin);
    scale.high = std::max(scale.high, term.used + margin);
  }
  return scale;
}

/// The Gaussian of height 1 as path commands, level with the axis beyond what can be seen; closed
/// along the axis when it is to be filled.
std::string curve(const Scale& scale, double mean, double deviation, bool closedShape) {
  std::string commands = "M" + coordinate(left) + " " + coordinate(bottom);
  for (int i = 0; i <= curvePoints; ++i) {
    const double z = curveDeviations * (2.0 * i / curvePoints - 1);
    const double shift = mean + z * deviation;
    if (shift >= scale.low && shift <= scale.high) {
      const double y = bottom - (bottom - top) * std::exp(-0.5 * z * z);
      commands += " L" + coordinate(scale.x(shift)) + " " + coordinate(y);
    }
  }
  commands += " L" + coordinate(right) + " " + coordinate(bottom);
  return closedShape ? commands + " Z" : commands;
}

double tickStep(double range) {
  const double wanted = range / 6;
  const double power = std::pow(10, std::floor(std::log10(wanted)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (power * factor >= wanted) {
      return power * factor;
    }
  }
  return power * 10;
}

void drawAxis(Picture& picture, const Scale& scale) {
  picture.line(left, bottom, right, bottom, "zero");
  const double step = tickStep(scale.high - scale.low);
  const int last = static_cast<int>(std::floor(scale.high / step));
  for (int i = static_cast<int>(std::ceil(scale.low / step)); i <= last; ++i) {
    const double tick = i * step;
    const double x = scale.x(tick);
    picture.line(x, bottom, x, bottom + 4, "zero");
    if (x > left + 10 && x < right - 10) {
      picture.text(x, bottom + 16, "middle", "muted small", decimal(tick, step < 1 ? 1 : 0));
    }
  }
}

/// A place for a name near `x` that the mark of the observed shift does not cross.
double besideMark(double x, const Scale& scale, const Term& term) {
  constexpr double room = 23;
  const double mark = term.present ? scale.x(term.used) : left - room;
  if (std::fabs(x - mark) >= room) {
    return x;
  }
  return x < mark ? mark - room : mark + room;
}

/// "cis" and "trans" above their peaks, kept apart and inside.
void drawPeakNames(Picture& picture, const Scale& scale, const Term& term) {
  const bool cisFirst = term.cis < term.trans;
  double first = scale.x(std::min(term.cis, term.trans));
  double second = scale.x(std::max(term.cis, term.trans));
  const double apart = 44 - (second - first);
  if (apart > 0) {
    first -= apart / 2;
    second += apart / 2;
  }
  first = std::max(besideMark(first, scale, term), left + 16);
  second = std::min(std::max(besideMark(second, scale, term), first + 44), right - 18);
  first = std::min(first, second - 44);
  picture.text(first, top - 6, "middle", cisFirst ? "cis" : "trans", cisFirst ? "cis" : "trans");
  picture.text(second, top - 6, "middle", cisFirst ? "trans" : "cis", cisFirst ? "trans" : "cis");
}

void drawObserved(Picture& picture, const Scale& scale, const Term& term) {
  const double x = scale.x(term.used);
  picture.line(x, top - 20, x, bottom, "mark");
  const auto at = [x](double dx, double y) { return coordinate(x + dx) + " " + coordinate(y); };
  picture.path("M" + at(-5, top - 20) + " L" + at(5, top - 20) + " L" + at(0, top - 13) + " Z",
               "ink");
}

/// "CB less random coil: 2.32 ppm", "CG: 24.60 ppm": name and value in one line, the name shorter
/// where there is more to say.
std::string heading(const Term& term) {
  const std::string value = decimal(term.shift, 2) + " ppm";
  if (term.clipped) {
    return term.atom + " less coil: " + value + ", clipped to " + decimal(term.used, 2);
  }
  return term.atom + (term.kind == Term::Kind::cg ? ": " : " less random coil: ") +
         (term.present ? value : "no shift");
}

} // namespace

Picture positionPicture(const Report& report, const Term& term) {
  const std::string residue = report.inputs.residueLabel(term.residue);
  const bool isCg = term.kind == Term::Kind::cg;
  Picture picture((isCg ? "cg-" : "cb-") + std::to_string(term.residue), width, height);
  picture.setTitle(term.atom + " of " + residue + " among cis and trans prolines");
  picture.setDescription(
      (term.present ? "Observed " + decimal(term.shift, 2) + " ppm" : std::string("Not observed")) +
      "; cis " + decimal(term.cis, 2) + " ± " + decimal(term.cisDeviation, 2) + ", trans " +
      decimal(term.trans, 2) + " ± " + decimal(term.transDeviation, 2) + " ppm.");
  picture.text(left, 14, "start", term.present ? "strong" : "muted", heading(term));
  if (!comparable(term)) {
    picture.text(left, top, "start", "muted", "no statistics in the database");
    return picture;
  }
  const Scale scale = scaleFor(term);
  picture.path(curve(scale, term.trans, term.transDeviation, true), "trans-soft");
  picture.path(curve(scale, term.cis, term.cisDeviation, true), "cis-soft overlay");
  picture.path(curve(scale, term.trans, term.transDeviation, false), "trans-line");
  picture.path(curve(scale, term.cis, term.cisDeviation, false), "cis-line");
  drawPeakNames(picture, scale, term);
  drawAxis(picture, scale);
  if (term.present) {
    drawObserved(picture, scale, term);
  }
  return picture;
}
