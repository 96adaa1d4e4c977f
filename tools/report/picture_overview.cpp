#include <algorithm>
#include <cmath>
#include <iterator>

#include "tools/report/pictures.h"
#include "tools/report/text.h"

namespace {

constexpr double labelGap = 10;
constexpr double cellWidth = 24;
constexpr double groupGap = 8;
constexpr double sumWidth = 84;
constexpr double headHeight = 46;
constexpr double rowHeight = 24;
constexpr double barHeight = 12;
constexpr double footHeight = 44;
/// A bar fills its cell at this contribution, and the wide cell of the sum at the next.
constexpr double cellScale = 4;
constexpr double sumScale = 20;

/// The columns of cells; those that tell most come first.
struct Group {
  int place;
  const char* name;
  std::vector<const char*> atoms;
};

const Group groups[] = {{2, "proline", {"CB", "CG", "HA", "C", "CA"}},
                        {1, "residue before", {"type", "N", "HA", "C", "CA", "CB", "HN"}},
                        {3, "residue after", {"type", "N", "HA", "C", "CA", "CB", "HN"}}};

/// Where the parts of a row lie, px; labels and calls take the room that they need.
struct Layout {
  double callStart = 0, sumStart = 0, width = 0;
  double groupStart[std::size(groups)] = {};

  explicit Layout(const Report& report) {
    double label = 0;
    double call = 0;
    for (const ProlineReport& proline : report.prolines) {
      label = std::max(label, textWidth(pictureLabel(report.inputs, proline.residue), true));
      call = std::max(call, textWidth(proline.verdict.headline, true));
    }
    callStart = label + labelGap;
    sumStart = callStart + call + labelGap;
    double x = sumStart + sumWidth + groupGap;
    for (std::size_t i = 0; i < std::size(groups); ++i) {
      groupStart[i] = x;
      x += static_cast<double>(groups[i].atoms.size()) * cellWidth + groupGap;
    }
    width = x - groupGap + 1;
  }
  double sumMiddle() const { return sumStart + sumWidth / 2; }
};

const Term* findTerm(const Evidence& evidence, int place, const std::string& atom) {
  for (const Term& term : evidence.terms) {
    if (term.place == place && term.atom == atom) {
      return &term;
    }
  }
  return nullptr;
}

void drawHead(Picture& picture, const Layout& layout, double bottom) {
  for (std::size_t i = 0; i < std::size(groups); ++i) {
    const double start = layout.groupStart[i];
    const double columns = static_cast<double>(groups[i].atoms.size());
    picture.text(start + columns * cellWidth / 2, 14, "middle", "strong", groups[i].name);
    double middle = start + cellWidth / 2;
    for (const char* const atom : groups[i].atoms) {
      picture.text(middle, 34, "middle", "muted small", atomLabel(atom));
      picture.line(middle, headHeight - 6, middle, bottom, "rule");
      middle += cellWidth;
    }
  }
  const double middle = layout.sumMiddle();
  picture.text(middle, 14, "middle", "strong", "sum");
  picture.text(middle - 5, 34, "end", "trans small", "◀ trans");
  picture.text(middle + 5, 34, "start", "cis small", "cis ▶");
  picture.line(middle, headHeight - 6, middle, bottom, "zero");
  const double prior = middle + sumWidth / 2 * logPriorOdds / sumScale;
  picture.line(prior, headHeight - 6, prior, bottom + 3, "dash");
}

/// A bar about `middle` that reaches `half` at `scale`.
void drawBar(Picture& picture, double middle, double y, double half, double scale,
             double logRatio) {
  if (!std::isfinite(logRatio)) {
    return;
  }
  const bool cut = std::fabs(logRatio) > scale;
  const double shown = cut ? std::copysign(scale, logRatio) : logRatio;
  picture.path(barPath(middle, middle + half * shown / scale, y, barHeight, cut),
               logRatio > 0 ? "cis" : "trans");
}

/// The mark of one cell, and what the whole cell says to a pointer.
void drawCell(Picture& picture, const Term* term, double left, double y, const Inputs& inputs) {
  const double middle = left + cellWidth / 2;
  std::string hint = term == nullptr ? "" : termLabel(*term, inputs);
  if (term == nullptr || !term->present) {
    picture.path(barPath(middle - 3, middle + 3, y + rowHeight / 2 - 3, 6, false), "hollow paper");
    hint += term == nullptr ? "" : ": no shift";
  } else {
    drawBar(picture, middle, y + (rowHeight - barHeight) / 2, cellWidth / 2 - 1, cellScale,
            term->logRatio);
    hint += ": " + signedDecimal(term->logRatio, 2) + (term->clipped ? ", clipped" : "");
    if (term->clipped) {
      picture.text(term->logRatio > 0 ? middle - 7 : middle + 7, y + 16, "middle", "warn small",
                   "!");
    }
  }
  if (!hint.empty()) {
    picture.rectangle(left, y, cellWidth, rowHeight, "hit", hint);
  }
}

void drawRow(Picture& picture, const Layout& layout, const ProlineReport& proline, double y,
             const Inputs& inputs) {
  picture.text(0, y + 16, "start", "strong", pictureLabel(inputs, proline.residue));
  picture.text(layout.callStart, y + 16, "start", callStyle(proline.verdict.call),
               proline.verdict.headline);
  if (!proline.predicted) {
    return;
  }
  drawBar(picture, layout.sumMiddle(), y + (rowHeight - barHeight) / 2, sumWidth / 2, sumScale,
          proline.evidence.logRatio);
  picture.rectangle(layout.sumStart, y, sumWidth, rowHeight, "hit",
                    "sum " + signedDecimal(proline.evidence.logRatio, 2));
  for (std::size_t i = 0; i < std::size(groups); ++i) {
    double left = layout.groupStart[i];
    for (const char* const atom : groups[i].atoms) {
      drawCell(picture, findTerm(proline.evidence, groups[i].place, atom), left, y, inputs);
      left += cellWidth;
    }
  }
}

std::string description(const Report& report) {
  std::string text = "Bars to the right speak for cis, bars to the left for trans.";
  for (const ProlineReport& proline : report.prolines) {
    text +=
        " " + report.inputs.residueLabel(proline.residue) + ": " + proline.verdict.headline + ".";
  }
  return text;
}

} // namespace

Picture overviewPicture(const Report& report, bool linked) {
  const double bottom = headHeight + rowHeight * static_cast<double>(report.prolines.size());
  const Layout layout(report);
  Picture picture("overview", layout.width, bottom + footHeight);
  picture.setTitle("The evidence on every proline of " + report.inputs.proteinName());
  picture.setDescription(description(report));
  for (std::size_t i = 0; i < report.prolines.size(); i += 2) {
    picture.rectangle(0, headHeight + static_cast<double>(i) * rowHeight, layout.width, rowHeight,
                      "shade");
  }
  drawHead(picture, layout, bottom);
  double y = headHeight;
  for (const ProlineReport& proline : report.prolines) {
    if (linked) {
      picture.beginLink("p" + std::to_string(proline.residue),
                        report.inputs.residueLabel(proline.residue) + ": " +
                            proline.verdict.headline);
    }
    drawRow(picture, layout, proline, y, report.inputs);
    if (linked) {
      picture.endLink();
    }
    y += rowHeight;
  }
  const double text = bottom + 18;
  picture.text(0, text, "start", "muted small",
               "Cells ±" + decimal(cellScale, 0) + ", sum ±" + decimal(sumScale, 0) +
                   " in ln(cis/trans); dashed " + signedDecimal(logPriorOdds, 2) + ".");
  picture.text(0, text + 16, "start", "muted small", "Pointed: beyond. □ no shift, ! clipped.");
  return picture;
}
