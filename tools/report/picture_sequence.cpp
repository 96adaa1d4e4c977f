#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>

#include "tools/report/pictures.h"
#include "tools/report/text.h"

namespace {

constexpr double left = 40;
constexpr double step = 7;
constexpr double barWidth = 5;
constexpr double headHeight = 34;
constexpr double trackHeight = 38;
constexpr double trackGap = 6;

/// The tracks from top to bottom; a bar reaches the edge of its track at the scale.
constexpr struct {
  const char* atom;
  double scale; ///< ppm
} tracks[] = {{"CA", 5}, {"CB", 5}, {"C", 5}, {"HA", 1}, {"N", 10}, {"HN", 1.5}};
constexpr double trackCount = static_cast<double>(std::size(tracks));

double columnX(int residue, int first) {
  return left + (residue - first) * step;
}

double trackMiddle(std::size_t track) {
  return headHeight + (static_cast<double>(track) + 0.5) * trackHeight +
         static_cast<double>(track) * trackGap;
}

double picturesBottom() {
  return headHeight + trackCount * (trackHeight + trackGap);
}

using OutlierSet = std::set<std::pair<int, std::string>>;

OutlierSet outliersOf(const Report& report, int first, int last) {
  OutlierSet outliers;
  for (const Outlier& outlier : report.check.outliers) {
    if (outlier.residue >= first && outlier.residue <= last) {
      outliers.emplace(outlier.residue, outlier.atom);
    }
  }
  return outliers;
}

void drawLetters(Picture& picture, const Report& report, int first, int last) {
  for (int residue = first; residue <= last; ++residue) {
    const auto name = report.inputs.sequence.find(residue);
    const ProlineReport* const proline = report.proline(residue);
    const double middle = columnX(residue, first) + step / 2;
    std::string style = "letter";
    if (proline != nullptr) {
      const std::string call = callName(proline->verdict.call);
      style += call == "none" ? "" : " " + call;
      picture.rectangle(columnX(residue, first), 16, step, picturesBottom() - 16,
                        call == "none" ? "shade" : call + "-soft",
                        report.inputs.residueLabel(residue) + ": " + proline->verdict.headline);
    }
    picture.text(middle, 27, "middle", style,
                 name == report.inputs.sequence.end() ? "" : name->second);
    if ((residue - first) % 10 == 0) {
      const bool room = last - residue >= 3;
      picture.text(room ? middle - 3 : middle + 4, 12, room ? "start" : "end", "muted small",
                   shortened(report.inputs.number(residue), 8));
    }
  }
}

void drawTracks(Picture& picture, int first, int last) {
  const double right = columnX(last + 1, first);
  for (std::size_t track = 0; track < std::size(tracks); ++track) {
    const double middle = trackMiddle(track);
    picture.line(left, middle, right, middle, "zero");
    picture.text(left - 8, middle, "end", "strong", atomLabel(tracks[track].atom));
    picture.text(left - 8, middle + 14, "end", "muted small",
                 "±" + decimal(tracks[track].scale, tracks[track].scale == 1.5 ? 1 : 0));
  }
}

/// The marks of one shift: a bar up or down, or a small gap mark.
void drawShift(Picture& picture, const Report& report, const OutlierSet& outliers,
               const ShiftRow& row, int first) {
  const std::string atom = row.atom == "H" ? "HN" : row.atom;
  for (std::size_t track = 0; track < std::size(tracks); ++track) {
    if (atom != tracks[track].atom) {
      continue;
    }
    const double shift = std::strtod(row.shiftText.c_str(), nullptr);
    const double scale = tracks[track].scale;
    const double length = std::min(std::fabs(shift), scale) / scale * trackHeight / 2;
    const double middle = trackMiddle(track);
    const double x = columnX(row.residue, first) + (step - barWidth) / 2;
    const bool outlier = outliers.count({row.residue, atom}) > 0;
    picture.rectangle(x, shift > 0 ? middle - length : middle, barWidth, length,
                      outlier ? "warn" : "bar",
                      atomLabel(atom) + " of " + report.inputs.residueLabel(row.residue) + ": " +
                          signedDecimal(shift, 2) + " ppm");
    if (outlier) {
      picture.text(x + barWidth / 2, shift > 0 ? middle + 12 : middle - 4, "middle", "warn small",
                   "!");
    }
  }
}

/// Dots where an atom was not observed; prolines have no HN and their N is not used.
void drawGaps(Picture& picture, const Report& report, int first, int last) {
  for (int residue = first; residue <= last; ++residue) {
    const auto name = report.inputs.sequence.find(residue);
    for (std::size_t track = 0; track < std::size(tracks); ++track) {
      const std::string atom = tracks[track].atom;
      const bool expected = name != report.inputs.sequence.end() &&
                            !(name->second == "P" && (atom == "N" || atom == "HN")) &&
                            !(name->second == "G" && atom == "CB");
      const bool found = report.inputs.shiftOf(residue, atom) != nullptr ||
                         (atom == "HN" && report.inputs.shiftOf(residue, "H") != nullptr);
      if (expected && !found) {
        picture.path(barPath(columnX(residue, first) + 2, columnX(residue, first) + 5,
                             trackMiddle(track) - 1.5, 3, false),
                     "hollow paper");
      }
    }
  }
}

} // namespace

Picture sequencePicture(const Report& report, int first, int last) {
  Picture picture("shifts-" + std::to_string(first), columnX(last + 1, first) + 4,
                  picturesBottom());
  picture.setTitle("Secondary shifts of residues " + report.inputs.number(first) + " to " +
                   report.inputs.number(last));
  picture.setDescription("Bars above the line are positive, below negative, in ppm; a small square "
                         "on the line is an atom without a shift, an exclamation mark an outlier. "
                         "Prolines are shaded by their call.");
  drawLetters(picture, report, first, last);
  drawTracks(picture, first, last);
  drawGaps(picture, report, first, last);
  const OutlierSet outliers = outliersOf(report, first, last);
  const auto begin = report.inputs.shiftIndex.lower_bound({first, ""});
  const auto end = report.inputs.shiftIndex.lower_bound({last + 1, ""});
  for (auto at = begin; at != end; ++at) {
    drawShift(picture, report, outliers, report.inputs.shifts[at->second], first);
  }
  return picture;
}
