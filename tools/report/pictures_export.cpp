#include "tools/report/pictures_export.h"

#include <algorithm>

#include "tools/report/pictures.h"

namespace {

constexpr int residuesPerPicture = 80;

void addProline(const Report& report, const ProlineReport& proline, const std::string& folder,
                std::vector<Output>& files) {
  const std::string start = folder + "/P" + std::to_string(proline.residue);
  files.push_back({start + ".svg", evidencePicture(report, proline).standalone()});
  for (const Term& term : proline.evidence.terms) {
    if (term.place == 2 && (term.atom == "CB" || term.atom == "CG")) {
      files.push_back(
          {start + "-" + term.atom + ".svg", positionPicture(report, term).standalone()});
    }
  }
  if (proline.carbons.difference()) {
    files.push_back({start + "-CB-CG.svg", carbonsPicture(report, proline).standalone()});
  }
}

} // namespace

bool isPictureFile(const std::string& target) {
  const std::string ending = ".svg";
  return target == "-" ||
         (target.size() > ending.size() &&
          target.compare(target.size() - ending.size(), ending.size(), ending) == 0);
}

std::vector<Output> pictureFiles(const Report& report, const std::string& target) {
  if (isPictureFile(target)) {
    return {{target, overviewPicture(report, false).standalone()}};
  }
  std::vector<Output> files;
  files.push_back({target + "/overview.svg", overviewPicture(report, false).standalone()});
  for (const ProlineReport& proline : report.prolines) {
    if (proline.predicted) {
      addProline(report, proline, target, files);
    }
  }
  const Tracks tracks = sequenceTracks(report);
  for (const Stretch& stretch : stretchesOf(report.inputs, residuesPerPicture)) {
    files.push_back({target + "/secondary-shifts-" + std::to_string(stretch.first) + ".svg",
                     sequencePicture(report, tracks, stretch).standalone()});
  }
  return files;
}
