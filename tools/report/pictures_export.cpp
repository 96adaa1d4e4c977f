#include "tools/report/pictures_export.h"

#include <algorithm>
#include <filesystem>

#include "tools/common/output.h"
#include "tools/common/tool.h"
#include "tools/report/pictures.h"

namespace {

constexpr int residuesPerPicture = 80;

void writeProline(const Report& report, const ProlineReport& proline, const std::string& folder) {
  const std::string start = folder + "/P" + std::to_string(proline.residue);
  writeWholeFile(start + ".svg", evidencePicture(report, proline).standalone());
  for (const Term& term : proline.evidence.terms) {
    if (term.place == 2 && (term.atom == "CB" || term.atom == "CG")) {
      writeWholeFile(start + "-" + term.atom + ".svg", positionPicture(report, term).standalone());
    }
  }
}

} // namespace

bool isPictureFile(const std::string& target) {
  const std::string ending = ".svg";
  return target == "-" ||
         (target.size() > ending.size() &&
          target.compare(target.size() - ending.size(), ending.size(), ending) == 0);
}

void writePictures(const Report& report, const std::string& target) {
  if (isPictureFile(target)) {
    writeWholeFile(target, overviewPicture(report).standalone());
    return;
  }
  std::error_code error;
  std::filesystem::create_directories(target, error);
  if (error) {
    throw ToolError(ToolStatus::cannotWrite, target + ": cannot make the folder");
  }
  writeWholeFile(target + "/overview.svg", overviewPicture(report).standalone());
  for (const ProlineReport& proline : report.prolines) {
    if (proline.predicted) {
      writeProline(report, proline, target);
    }
  }
  for (int first = 1; first <= report.inputs.residueCount; first += residuesPerPicture) {
    const int last = std::min(first + residuesPerPicture - 1, report.inputs.residueCount);
    writeWholeFile(target + "/secondary-shifts-" + std::to_string(first) + ".svg",
                   sequencePicture(report, first, last).standalone());
  }
}
