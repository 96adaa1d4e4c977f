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

/// All tracks from top to bottom; a bar reaches the edge of its track at the scale.
constexpr struct {
  const char* atom;
  double scale; ///< ppm
} allTracks[] = {{"CA", 5}, {"CB", 5}, {"C", 5}, {"HA", 1}, {"N", 10}, {"HN", 1.5}};

double scaleOf(const std::string& atom) {
  const auto* const track = std::find_if(std::begin(allTracks), std::end(allTracks),
                                         [&atom](const auto& each) { return each.atom == atom; });
  return track->scale;
}

/// What a shift is of; an amide proton may be called H.
std::string nucleusOf(const ShiftRow& row) {
  return row.atom == "H" ? "HN" : row.atom;
}

int sizeOf(const Stretch& stretch) {
  return stretch.last - stretch.first + 1;
}

/// Left edge of the column of a residue, counted from 0 along the stretch.
double columnX(int place) {
  return left + place * step;
}

double trackMiddle(std::size_t track) {
  return headHeight + (static_cast<double>(track) + 0.5) * trackHeight +
         static_cast<double>(track) * trackGap;
}

double bottomOf(const Tracks& tracks) {
  return headHeight + static_cast<double>(tracks.size()) * (trackHeight + trackGap);
}

using OutlierSet = std::set<std::pair<int, std::string>>;

OutlierSet outliersOf(const Report& report, const Stretch& stretch) {
  OutlierSet outliers;
  for (const Outlier& outlier : report.check.outliers) {
    if (outlier.residue >= stretch.first && outlier.residue <= stretch.last) {
      outliers.emplace(outlier.residue, outlier.atom);
    }
  }
  return outliers;
}

void drawLetters(Picture& picture, const Report& report, double bottom, const Stretch& stretch) {
  for (int place = 0; place < sizeOf(stretch); ++place) {
    const int residue = stretch.first + place;
    const ProlineReport* const proline = report.proline(residue);
    const double middle = columnX(place) + step / 2;
    std::string style = "letter";
    if (proline != nullptr) {
      const std::string call = callName(proline->verdict.call);
      style += call == "none" ? "" : " " + call;
      picture.rectangle(columnX(place), 16, step, bottom - 16,
                        call == "none" ? "shade" : call + "-soft",
                        report.inputs.residueLabel(residue) + ": " + proline->verdict.headline);
    }
    picture.text(middle, 27, "middle", style, report.inputs.sequence.at(residue));
    if (place % 10 == 0) {
      const bool room = sizeOf(stretch) - place > 3;
      picture.text(room ? middle - 3 : middle + 4, 12, room ? "start" : "end", "muted small",
                   shortened(report.inputs.number(residue), 8));
    }
  }
}

void drawTracks(Picture& picture, const Tracks& tracks, const Stretch& stretch) {
  const double right = columnX(sizeOf(stretch));
  for (std::size_t track = 0; track < tracks.size(); ++track) {
    const double middle = trackMiddle(track);
    const double scale = scaleOf(tracks[track]);
    picture.line(left, middle, right, middle, "zero");
    picture.text(left - 8, middle, "end", "strong", atomLabel(tracks[track]));
    picture.text(left - 8, middle + 14, "end", "muted small",
                 "±" + decimal(scale, scale == 1.5 ? 1 : 0));
  }
}

/// The marks of one shift: a bar up or down, or a small gap mark.
void drawShift(Picture& picture, const Report& report, const Tracks& tracks,
               const OutlierSet& outliers, const ShiftRow& row, const Stretch& stretch) {
  const std::string atom = nucleusOf(row);
  const auto track = std::find(tracks.begin(), tracks.end(), atom);
  if (track == tracks.end()) {
    return;
  }
  const double shift = std::strtod(row.shiftText.c_str(), nullptr);
  const double scale = scaleOf(atom);
  const double length = std::min(std::fabs(shift), scale) / scale * trackHeight / 2;
  const double middle = trackMiddle(static_cast<std::size_t>(track - tracks.begin()));
  const double x = columnX(row.residue - stretch.first) + (step - barWidth) / 2;
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

/// Dots where an atom was not observed; prolines have no HN and their N is not used.
void drawGaps(Picture& picture, const Report& report, const Tracks& tracks,
              const Stretch& stretch) {
  for (int place = 0; place < sizeOf(stretch); ++place) {
    const int residue = stretch.first + place;
    const std::string& name = report.inputs.sequence.at(residue);
    for (std::size_t track = 0; track < tracks.size(); ++track) {
      const std::string& atom = tracks[track];
      const bool expected =
          !(name == "P" && (atom == "N" || atom == "HN")) && !(name == "G" && atom == "CB");
      const bool found = report.inputs.shiftOf(residue, atom) != nullptr ||
                         (atom == "HN" && report.inputs.shiftOf(residue, "H") != nullptr);
      if (expected && !found) {
        picture.path(
            barPath(columnX(place) + 2, columnX(place) + 5, trackMiddle(track) - 1.5, 3, false),
            "hollow paper");
      }
    }
  }
}

} // namespace

Tracks sequenceTracks(const Report& report) {
  std::set<std::string> present;
  for (const ShiftRow& row : report.inputs.shifts) {
    present.insert(nucleusOf(row));
  }
  Tracks tracks;
  for (const auto& track : allTracks) {
    if (present.count(track.atom) > 0) {
      tracks.emplace_back(track.atom);
    }
  }
  return tracks;
}

bool areAll(const Tracks& tracks) {
  return tracks.size() == std::size(allTracks);
}

std::vector<Stretch> stretchesOf(const Inputs& inputs, int longest) {
  std::vector<Stretch> stretches;
  for (const auto& [residue, name] : inputs.sequence) {
    // FIRST_RESID may be such that the largest number is followed by the smallest.
    if (stretches.empty() || residue - 1 != stretches.back().last ||
        sizeOf(stretches.back()) == longest) {
      stretches.push_back({residue, residue});
    } else {
      stretches.back().last = residue;
    }
  }
  return stretches;
}

Picture sequencePicture(const Report& report, const Tracks& tracks, const Stretch& stretch) {
  const double bottom = bottomOf(tracks);
  Picture picture("shifts-" + std::to_string(stretch.first), columnX(sizeOf(stretch)) + 4, bottom);
  picture.setTitle("Secondary shifts of residues " + report.inputs.number(stretch.first) + " to " +
                   report.inputs.number(stretch.last));
  picture.setDescription("Bars above the line are positive, below negative, in ppm; a small square "
                         "on the line is an atom without a shift, an exclamation mark an outlier. "
                         "Prolines are shaded by their call.");
  drawLetters(picture, report, bottom, stretch);
  drawTracks(picture, tracks, stretch);
  drawGaps(picture, report, tracks, stretch);
  const OutlierSet outliers = outliersOf(report, stretch);
  const auto& index = report.inputs.shiftIndex;
  for (auto at = index.lower_bound({stretch.first, ""});
       at != index.end() && at->first.first <= stretch.last; ++at) {
    drawShift(picture, report, tracks, outliers, report.inputs.shifts[at->second], stretch);
  }
  return picture;
}
