#include "tools/report/page.h"

#include <algorithm>
#include <cmath>

#include "tools/common/tool.h"
#include "tools/report/page_parts.h"
#include "tools/report/pictures.h"
#include "tools/report/style.h"
#include "tools/report/text.h"

namespace {

constexpr int residuesPerPicture = 40;

std::string countText(const Report& report) {
  std::size_t counts[3] = {0, 0, 0};
  std::size_t open = 0;
  for (const ProlineReport& proline : report.prolines) {
    ++counts[static_cast<int>(proline.verdict.call)];
    open += proline.verdict.call != Verdict::Call::none && !proline.verdict.settled ? 1 : 0;
  }
  const std::size_t all = report.prolines.size();
  std::string text = std::to_string(all) + (all == 1 ? " proline: " : " prolines: ") +
                     std::to_string(counts[0]) + " cis, " + std::to_string(counts[1]) + " trans";
  if (counts[2] > 0) {
    text += ", " + std::to_string(counts[2]) + " without a call";
  }
  if (open > 0) {
    text += "; calls not settled: " + std::to_string(open);
  }
  return text + ".";
}

std::string head(const Report& report) {
  const std::string title =
      "Proline conformations" +
      (report.inputs.title.empty() ? "" : ": " + escaped(lastPart(report.inputs.title)));
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" "
         "content=\"default-src 'none'; style-src 'unsafe-inline'; img-src data:\">\n"
         "<link rel=\"icon\" href=\"data:,\">\n"
         "<title>" +
         title + "</title>\n<style>\n" + pageStyle() + "</style>\n</head>\n<body>\n";
}

std::string opening(const Report& report) {
  const Inputs& inputs = report.inputs;
  std::string html = "<h1>Cis or trans: the prolines of this protein</h1>\n<p class=\"muted\">";
  html += inputs.title.empty() ? "" : "Shifts: " + escaped(lastPart(inputs.title)) + ". ";
  html += inputs.referenceTitle.empty()
              ? ""
              : "Reference structure: " + escaped(lastPart(inputs.referenceTitle)) + ". ";
  html += std::to_string(inputs.residueCount) + " residues, " +
          std::to_string(inputs.shifts.size()) + " secondary shifts.";
  html += inputs.authors.empty() ? "" : " Residue numbers are those of the authors.";
  html += "</p>\n<p class=\"count\">" + countText(report) + "</p>\n";
  for (const std::string& correction : inputs.corrections) {
    html += "<p class=\"small muted\">Applied by citrans: " + escaped(correction) + ".</p>\n";
  }
  return html;
}

std::string overviewSection(const Report& report) {
  if (report.prolines.empty()) {
    return "<p>The sequence has no proline.</p>\n";
  }
  return "<section aria-labelledby=\"glance\">\n<h2 id=\"glance\">The evidence at a glance</h2>\n"
         "<figure><div class=\"scroll\" tabindex=\"0\" role=\"group\" aria-labelledby=\"glance\">" +
         overviewPicture(report).inlined() +
         "</div>\n<figcaption>Each cell is one shift, or the residue type of a neighbour: a bar to "
         "the right speaks for cis, to the left for trans.</figcaption></figure>\n</section>\n";
}

std::string sequenceSection(const Report& report) {
  std::string html = "<section>\n<h2>Secondary shifts along the sequence</h2>\n"
                     "<p class=\"small muted\">Observed less random-coil shift, ppm; beyond the "
                     "scale at the left a bar is cut off. "
                     "Prolines are shaded by their call. □ no shift; ! outlier.</p>\n"
                     "<figure class=\"side sequence\">\n";
  for (int first = 1; first <= report.inputs.residueCount; first += residuesPerPicture) {
    const int last = std::min(first + residuesPerPicture - 1, report.inputs.residueCount);
    html += "<div class=\"keep\">" + sequencePicture(report, first, last).inlined() + "</div>\n";
  }
  return html + "</figure>\n</section>\n";
}

std::string readingSection() {
  return "<section>\n<h2>How to read this</h2>\n"
         "<p><strong>P_CIS</strong> is the likelihood of cis when both forms count as equally "
         "frequent; <strong>P_CIS_NORM</strong> takes into account that about one proline in "
         "twenty is cis. Above 0.5 a proline is called cis; between 0.1 and 0.9 the call is not "
         "settled, and says “probably”.</p>\n"
         "<p>A bar is ln(cis/trans) of one shift x: the difference of "
         "((x − mean)/deviation)²/2 for trans and for cis; of a neighbour, "
         "the logarithm of the ratio of its frequencies. The bars add up to "
         "ln(P_CIS/(1 − P_CIS)); to reach P_CIS_NORM, ln 19 = " +
         decimal(logPriorOdds, 2) +
         " is taken off. A shift outside the limits of the database is clipped: it counts as if it "
         "lay on the limit. The shifts are not independent of each other, so that the odds in "
         "words "
         "are those of the model, not of a gamble.</p>\n"
         "<p class=\"small muted\">Made by " +
         escaped(versionLine("citrans-report")) + ".</p>\n</section>\n";
}

} // namespace

std::string htmlPage(const Report& report) {
  std::string html = head(report) + "<main>\n" + opening(report) + warningParts(report) +
                     summaryPart(report) + overviewSection(report);
  html += "<section>\n<h2>Proline by proline</h2>\n";
  for (const ProlineReport& proline : report.prolines) {
    html += prolinePart(report, proline);
  }
  html += "</section>\n";
  return html + sequenceSection(report) + referencingPart(report) + outlierPart(report) +
         readingSection() + "</main>\n</body>\n</html>\n";
}
