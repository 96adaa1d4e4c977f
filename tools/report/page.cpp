#include "tools/report/page.h"

#include <algorithm>

#include "tools/report/embedded.h"
#include "tools/report/evidence.h"
#include "tools/report/page_parts.h"
#include "tools/report/pictures.h"
#include "tools/report/style.h"
#include "tools/report/text.h"

namespace {

constexpr int residuesPerPicture = 35; // as wide as a narrow phone

void fillSequence(const Report& report, PageData& page) {
  PageData stretches = pageList();
  const Tracks tracks = sequenceTracks(report);
  for (const Stretch& stretch : stretchesOf(report.inputs, residuesPerPicture)) {
    stretches << PageData("picture", sequencePicture(report, tracks, stretch).inlined());
  }
  page.set("stretches", stretches);
  page.set("hasShifts", !tracks.empty());
  page.set("nucleiLeftOut", !areAll(tracks));
}

} // namespace

std::string htmlPage(const Report& report) {
  PageData page;
  page.set("style", pageStyle());
  page.set("prior", decimal(logPriorOdds, 2));
  fillOpening(report, page);
  fillProlines(report, page);
  fillSequence(report, page);
  fillQuality(report, page);
  return filled(embedded::page, page);
}
