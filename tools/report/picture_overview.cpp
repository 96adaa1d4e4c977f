#include <algorithm>
#include <cmath>

#include "tools/report/pictures.h"
#include "tools/report/text.h"

namespace {

constexpr double labelWidth = 92;
constexpr double cellWidth = 26;
constexpr double groupGap = 8;
constexpr double sumGap = 12;
constexpr double sumWidth = 88;
constexpr double headHeight = 46;
constexpr double rowHeight = 24;
constexpr double barHeight = 12;
constexpr double footHeight = 44;
/// A bar fills its cell at this contribution, and the wide cell of the sum at the next.
constexpr double cellScale = 4;
constexpr double sumScale = 20;

constexpr const char* columns[3][7] = {{"type", "N", "HA", "C", "CA", "CB", "HN"},
                                       {"HA", "C", "CA", "CB", "CG", nullptr, nullptr},
                                       {"type", "N", "HA", "C", "CA", "CB", "HN"}};
constexpr const char* groupNames[3] = {"residue before", "proline", "residue after"};

int columnCount(int place) {
  return static_cast<int>(std::count_if(std::begin(columns[place - 1]),
                                        std::end(columns[place - 1]),
                                        [](const char* name) { return name != nullptr; }));
}

double groupStart(int place) {
  double x = labelWidth;
  for (int before = 1; before < place; ++before) {
    x += columnCount(before) * cellWidth + groupGap;
  }
  return x;
}

double sumStart() {
  return groupStart(3) + columnCount(3) * cellWidth + sumGap;
}

const Term* findTerm(const Evidence& evidence, int place, const std::string& atom) {
  for (const Term& term : evidence.terms) {
    if (term.place == place && term.atom == atom) {
      return &term;
    }
  }
  return nullptr;
}

void drawHead(Picture& picture, double bottom) {
  for (int place = 1; place <= 3; ++place) {
    const double start = groupStart(place);
    picture.text(start + columnCount(place) * cellWidth / 2, 14, "middle", "strong",
                 groupNames[place - 1]);
    for (int column = 0; column < columnCount(place); ++column) {
      const double middle = start + (column + 0.5) * cellWidth;
      picture.text(middle, 34, "middle", "muted small", columns[place - 1][column]);
      picture.line(middle, headHeight - 6, middle, bottom, "rule");
    }
  }
  const double middle = sumStart() + sumWidth / 2;
  picture.text(middle, 14, "middle", "strong", "sum");
  picture.text(middle - 5, 34, "end", "trans small", "◀ trans");
  picture.text(middle + 5, 34, "start", "cis small", "cis ▶");
  picture.line(middle, headHeight - 6, middle, bottom, "zero");
}

/// A bar about `middle` that reaches `half` at `scale`.
void drawBar(Picture& picture, double middle, double y, double half, double scale, double logRatio,
             const std::string& hint) {
  if (!std::isfinite(logRatio)) {
    return;
  }
  const bool cut = std::fabs(logRatio) > scale;
  const double shown = cut ? std::copysign(scale, logRatio) : logRatio;
  picture.path(barPath(middle, middle + half * shown / scale, y, barHeight, cut),
               logRatio > 0 ? "cis" : "trans", hint);
}

void drawCell(Picture& picture, const Term* term, double middle, double y, const Inputs& inputs) {
  const double top = y + (rowHeight - barHeight) / 2;
  if (term == nullptr || !term->present) {
    picture.path(barPath(middle - 3, middle + 3, y + rowHeight / 2 - 3, 6, false), "hollow paper",
                 term == nullptr ? "" : termLabel(*term, inputs) + ": no shift");
    return;
  }
  drawBar(picture, middle, top, cellWidth / 2 - 1, cellScale, term->logRatio,
          termLabel(*term, inputs) + ": " + signedDecimal(term->logRatio, 2));
  if (term->clipped) {
    picture.text(term->logRatio > 0 ? middle - 7 : middle + 7, y + 16, "middle", "warn small", "!");
  }
}

void drawRow(Picture& picture, const ProlineReport& proline, double y, const Inputs& inputs) {
  picture.text(0, y + 16, "start", "strong", inputs.residueLabel(proline.residue));
  if (!proline.predicted) {
    picture.text(labelWidth, y + 16, "start", "muted", "not predicted");
    return;
  }
  for (int place = 1; place <= 3; ++place) {
    for (int column = 0; column < columnCount(place); ++column) {
      const double middle = groupStart(place) + (column + 0.5) * cellWidth;
      drawCell(picture, findTerm(proline.evidence, place, columns[place - 1][column]), middle, y,
               inputs);
    }
  }
  const bool called = proline.verdict.call != Verdict::Call::none;
  const char* const call = callName(proline.verdict.call);
  picture.text(labelWidth - 8, y + 16, "end", called ? call : "muted", called ? call : "–");
  drawBar(picture, sumStart() + sumWidth / 2, y + (rowHeight - barHeight) / 2, sumWidth / 2,
          sumScale, proline.evidence.logRatio,
          "sum " + signedDecimal(proline.evidence.logRatio, 2));
}

} // namespace

Picture overviewPicture(const Report& report) {
  const double bottom = headHeight + rowHeight * static_cast<double>(report.prolines.size());
  Picture picture("overview", sumStart() + sumWidth + 1, bottom + footHeight);
  picture.setTitle("The evidence on every proline");
  std::string description = "Bars to the right speak for cis, bars to the left for trans.";
  for (const ProlineReport& proline : report.prolines) {
    description +=
        " " + report.inputs.residueLabel(proline.residue) + ": " + proline.verdict.headline + ".";
  }
  picture.setDescription(description);
  double y = headHeight;
  for (std::size_t i = 0; i < report.prolines.size(); i += 2) {
    picture.rectangle(0, y + static_cast<double>(i) * rowHeight, sumStart() + sumWidth, rowHeight,
                      "shade");
  }
  drawHead(picture, bottom);
  for (const ProlineReport& proline : report.prolines) {
    drawRow(picture, proline, y, report.inputs);
    y += rowHeight;
  }
  picture.text(0, bottom + 18, "start", "muted small",
               "A bar fills its cell at ln(cis/trans) ±" + decimal(cellScale, 0) +
                   ", that of the sum at ±" + decimal(sumScale, 0) +
                   "; a pointed bar goes beyond.");
  picture.text(0, bottom + 34, "start", "muted small",
               "□ no shift · ! clipped to the limits of the database");
  return picture;
}
