#include <algorithm>
#include <cmath>

#include "tools/report/pictures.h"
#include "tools/report/text.h"

namespace {

constexpr double width = 290;
constexpr double labelEnd = 40;
constexpr double centre = 144;
constexpr double half = 88;
constexpr double valueEnd = 290;
constexpr double rowHeight = 15;
constexpr double barHeight = 9;
constexpr double groupHeight = 21;
constexpr double headHeight = 40;
constexpr double largestScale = 10;

const char* side(double logRatio) {
  return logRatio > 0 ? "cis" : "trans";
}

const char* placeWords(int place) {
  return place == 1 ? "before" : place == 2 ? "the proline" : "after";
}

/// One bar about the centre line, with its value; pointed when it goes beyond the scale.
void drawBar(Picture& picture, double y, double logRatio, double scale, const std::string& hint) {
  const bool cut = std::fabs(logRatio) > scale;
  const double shown = cut ? std::copysign(scale, logRatio) : logRatio;
  const double top = y + (rowHeight - barHeight) / 2;
  if (std::isfinite(shown)) {
    picture.path(barPath(centre, centre + half * shown / scale, top, barHeight, cut),
                 side(logRatio), hint);
  }
}

std::string hintFor(const Term& term, const Inputs& inputs) {
  if (!term.present) {
    return termLabel(term, inputs) + ": no shift";
  }
  std::string hint = termLabel(term, inputs) + ": ";
  if (term.kind == Term::Kind::neighbour) {
    return hint + "frequency " + decimal(term.cis, 4) + " in cis, " + decimal(term.trans, 4) +
           " in trans";
  }
  hint += decimal(term.shift, 3) + " ppm";
  if (term.clipped) {
    hint += ", clipped to " + decimal(term.used, 3) + " ppm";
  }
  return hint + "; cis " + decimal(term.cis, 2) + " ± " + decimal(term.cisDeviation, 2) +
         ", trans " + decimal(term.trans, 2) + " ± " + decimal(term.transDeviation, 2);
}

void drawTerm(Picture& picture, double y, const Term& term, const Inputs& inputs, double scale) {
  const double baseline = y + rowHeight - 4;
  picture.text(labelEnd, baseline, "end", term.present ? "" : "muted", atomLabel(term.atom));
  if (!term.present) {
    picture.path(barPath(centre - 3, centre + 3, y + rowHeight / 2 - 3, 6, false), "hollow");
    picture.text(centre + 9, baseline, "start", "muted", "no shift");
    return;
  }
  drawBar(picture, y, term.logRatio, scale, hintFor(term, inputs));
  picture.text(valueEnd, baseline, "end", "", signedDecimal(term.logRatio, 2));
  if (term.clipped || term.readAsZero) {
    const bool right = term.logRatio > 0;
    picture.text(right ? centre - 6 : centre + 6, baseline, right ? "end" : "start", "warn",
                 term.clipped ? "clipped" : "read as 0");
  }
}

void drawHead(Picture& picture, double scale, double bottom) {
  picture.text(centre - 8, 14, "end", "trans", "◀ trans");
  picture.text(centre + 8, 14, "start", "cis", "cis ▶");
  for (const double tick : {-1.0, -0.5, 0.0, 0.5, 1.0}) {
    const double x = centre + half * tick;
    picture.line(x, headHeight - 8, x, bottom, tick == 0 ? "zero" : "rule");
    picture.text(x, headHeight - 13, "middle", "muted small",
                 signedDecimal(scale * tick, scale < 2 ? 1 : 0));
  }
  picture.text(valueEnd, 14, "end", "muted small", "ln(cis/trans)");
}

std::string describe(const Report& report, const ProlineReport& proline) {
  std::string text =
      proline.verdict.evidence + " Contributions to ln(cis/trans), positive for cis:";
  for (const Term& term : proline.evidence.terms) {
    if (term.applicable) {
      text += " " + termLabel(term, report.inputs) + " " +
              (term.present ? signedDecimal(term.logRatio, 2) : "missing") +
              (term.clipped ? " (clipped)" : "") + ";";
    }
  }
  return text + " sum " + signedDecimal(proline.evidence.logRatio, 2) + ".";
}

std::string idFor(const char* kind, int residue) {
  return std::string(kind) + "-" + std::to_string(residue);
}

void drawSum(Picture& picture, double y, const ProlineReport& proline, double scale) {
  const double sum = proline.evidence.logRatio;
  picture.line(0, y, width, y, "zero");
  picture.text(labelEnd, y + rowHeight - 2, "end", "strong", "sum");
  drawBar(picture, y + 3, sum, scale, "sum of all contributions");
  picture.text(valueEnd, y + rowHeight - 2, "end", "strong", signedDecimal(sum, 2));
  picture.text(valueEnd, y + rowHeight + 16, "end", "",
               "P_CIS " + printedText(proline.row.pCis, proline.row.pCisText) + " · P_CIS_NORM " +
                   printedText(proline.row.pCisNorm, proline.row.pCisNormText));
}

} // namespace

std::string pictureLabel(const Inputs& inputs, int residue) {
  constexpr std::size_t longest = 16;
  return shortened(inputs.residueLabel(residue), longest);
}

const char* callStyle(Verdict::Call call) {
  return call == Verdict::Call::none ? "muted" : callName(call);
}

double contributionScale(const Report& report) {
  double largest = 1;
  for (const ProlineReport& proline : report.prolines) {
    for (const Term& term : proline.evidence.terms) {
      if (std::isfinite(term.logRatio)) {
        largest = std::max(largest, std::fabs(term.logRatio));
      }
    }
  }
  return std::min(std::ceil(largest / 2) * 2, largestScale);
}

Picture evidencePicture(const Report& report, const ProlineReport& proline) {
  Picture picture(idFor("evidence", proline.residue), width, headHeight);
  picture.setTitle("Evidence on " + report.inputs.residueLabel(proline.residue) + ": " +
                   proline.verdict.headline);
  picture.setDescription(describe(report, proline));
  std::size_t rows = 0;
  for (const Term& term : proline.evidence.terms) {
    rows += term.applicable ? 1 : 0;
  }
  const double sumTop = headHeight + 3 * groupHeight + static_cast<double>(rows) * rowHeight + 6;
  const double scale = contributionScale(report);
  drawHead(picture, scale, sumTop + rowHeight + 3);
  double y = headHeight;
  int place = 0;
  for (const Term& term : proline.evidence.terms) {
    if (!term.applicable) {
      continue;
    }
    if (term.place != place) {
      place = term.place;
      picture.rectangle(0, y + 4, width, groupHeight - 6, "shade");
      picture.text(4, y + groupHeight - 6, "start", "strong",
                   pictureLabel(report.inputs, term.residue));
      picture.text(valueEnd - 4, y + groupHeight - 6, "end", "muted", placeWords(place));
      y += groupHeight;
    }
    drawTerm(picture, y, term, report.inputs, scale);
    y += rowHeight;
  }
  drawSum(picture, sumTop, proline, scale);
  picture.setHeight(sumTop + rowHeight + 21);
  return picture;
}

Picture sumPicture(const Report& report, const ProlineReport& proline) {
  constexpr double cellWidth = 130;
  constexpr double middle = cellWidth / 2;
  constexpr double scale = 20;
  const double sum = proline.evidence.logRatio;
  Picture picture(idFor("sum", proline.residue), cellWidth, 16);
  picture.setTitle("Sum of the evidence on " + report.inputs.residueLabel(proline.residue));
  picture.setDescription("ln(cis/trans) " + signedDecimal(sum, 1));
  picture.rectangle(0, 2, cellWidth, 12, "shade");
  if (std::isfinite(sum)) {
    const bool cut = std::fabs(sum) > scale;
    const double shown = cut ? std::copysign(scale, sum) : sum;
    picture.path(barPath(middle, middle + middle * shown / scale, 2, 12, cut), side(sum));
  }
  picture.line(middle, 0, middle, 16, "zero");
  return picture;
}
