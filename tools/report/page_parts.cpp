#include "tools/report/page_parts.h"

#include <algorithm>
#include <cmath>

#include "tools/report/pictures.h"
#include "tools/report/text.h"

namespace {

std::string paragraph(const std::string& text) {
  return text.empty() ? "" : "<p>" + escaped(text) + "</p>\n";
}

std::string warning(const std::string& text) {
  return "<p class=\"warning\"><strong>Note.</strong> " + escaped(text) + "</p>\n";
}

std::string callSpan(const Verdict& verdict) {
  const bool open = verdict.call != Verdict::Call::none && !verdict.settled;
  return std::string("<span class=\"call ") + callName(verdict.call) + (open ? " open" : "") +
         "\">" + escaped(verdict.headline) + "</span>";
}

std::string anchor(int residue) {
  return "p" + std::to_string(residue);
}

std::string cell(const std::string& style, const std::string& label, const std::string& html) {
  return "<td" + (style.empty() ? "" : " class=\"" + style + "\"") +
         (label.empty() ? "" : " data-label=\"" + label + "\"") + ">" + html + "</td>";
}

/// "178.7°, trans": what the reference structure has.
std::string omegaText(const SummaryRow& row) {
  if (row.referenceName.empty()) {
    return "–";
  }
  if (!row.hasOmega) {
    return "none";
  }
  const double size = std::fabs(row.omega);
  const char* const form = size < 30 ? " cis" : size > 150 ? " trans" : "";
  return decimal(row.omega, 1) + "°" + form;
}

bool hasReference(const Report& report) {
  for (const SummaryRow& row : report.inputs.summary) {
    if (!row.referenceName.empty()) {
      return true;
    }
  }
  return false;
}

std::string summaryRowPart(const Report& report, const ProlineReport& proline, bool reference) {
  const Inputs& inputs = report.inputs;
  std::string html = "<tr>";
  html += cell("", "",
               "<a href=\"#" + anchor(proline.residue) + "\">" +
                   escaped(inputs.residueLabel(proline.residue)) + "</a>");
  html += cell("", "", callSpan(proline.verdict));
  if (!proline.predicted) {
    return html + "<td class=\"wide muted small\" colspan=\"" + (reference ? "4" : "3") + "\">" +
           escaped(proline.verdict.evidence) + "</td></tr>\n";
  }
  html += cell("wide", "", sumPicture(report, proline).inlined());
  html += cell("number", "P_CIS", escaped(proline.row.pCisText));
  html += cell("number", "P_CIS_NORM", escaped(proline.row.pCisNormText));
  if (reference) {
    html += cell("number wide", "ω of the reference", escaped(omegaText(proline.row)));
  }
  return html + "</tr>\n";
}

const Term* findTerm(const Evidence& evidence, const char* atom) {
  for (const Term& term : evidence.terms) {
    if (term.place == 2 && term.atom == atom) {
      return &term;
    }
  }
  return nullptr;
}

std::string fact(const char* name, const std::string& value) {
  return std::string("<div><dt>") + name + "</dt><dd>" + escaped(value) + "</dd></div>\n";
}

std::string factsPart(const ProlineReport& proline) {
  const SummaryRow& row = proline.row;
  std::string html = "<dl class=\"facts\">\n" + fact("P_CIS", row.pCisText) +
                     fact("P_CIS_NORM", row.pCisNormText) +
                     fact("ln(cis/trans)", signedDecimal(proline.evidence.logRatio, 2));
  html += fact("shifts before, at, after", std::to_string(row.shiftCounts[0]) + ", " +
                                               std::to_string(row.shiftCounts[1]) + ", " +
                                               std::to_string(row.shiftCounts[2]));
  const Term* const cb = findTerm(proline.evidence, "CB");
  const Term* const cg = findTerm(proline.evidence, "CG");
  if (cb != nullptr && cg != nullptr && cg->present) {
    html += fact("CG", decimal(cg->shift, 2) + " ppm");
  }
  if (!row.referenceName.empty()) {
    html += fact("ω of the reference", omegaText(row));
  }
  return html + "</dl>\n";
}

/// What the reference structure says against the call, or about its numbering.
std::string referenceWarning(const ProlineReport& proline) {
  const SummaryRow& row = proline.row;
  if (row.referenceName.empty()) {
    return "";
  }
  if (row.referenceName != "P") {
    return warning("The reference structure has no proline at this number (" + row.referenceName +
                   "): its numbering differs from that of the table.");
  }
  const bool cis = row.hasOmega && std::fabs(row.omega) < 90;
  if (row.hasOmega && proline.verdict.call != Verdict::Call::none &&
      cis != (proline.verdict.call == Verdict::Call::cis)) {
    return warning(std::string("The reference structure has this bond ") + (cis ? "cis" : "trans") +
                   "; the shifts say otherwise.");
  }
  return "";
}

std::string tripletText(const Inputs& inputs, int proline) {
  if (proline > inputs.residueCount) {
    return inputs.residueLabel(proline);
  }
  std::string text;
  for (int residue = std::max(proline - 1, 1); residue <= proline + 1; ++residue) {
    if (residue <= inputs.residueCount) {
      text += (text.empty() ? "" : " – ") + inputs.residueLabel(residue);
    }
  }
  return text;
}

} // namespace

std::string warningParts(const Report& report) {
  std::string html;
  for (const ChangedCall& changed : report.changedCalls) {
    html += warning(report.inputs.residueLabel(changed.residue) +
                    ": subtracting the estimated referencing offsets would change the call, "
                    "P_CIS_NORM from " +
                    decimal(changed.before, 3) + " to " + decimal(changed.after, 3) +
                    ". Look at the referencing before you rely on it.");
  }
  for (const std::string& text : report.warnings) {
    html += warning(text);
  }
  return html;
}

std::string summaryPart(const Report& report) {
  if (report.prolines.empty()) {
    return "";
  }
  const bool reference = hasReference(report);
  std::string html = "<table class=\"cards\">\n<thead><tr><th scope=\"col\">Proline</th>"
                     "<th scope=\"col\">Call</th><th scope=\"col\">Evidence: ◀ trans, cis ▶</th>"
                     "<th scope=\"col\" class=\"number\">P_CIS</th>"
                     "<th scope=\"col\" class=\"number\">P_CIS_NORM</th>";
  html += reference ? "<th scope=\"col\" class=\"number\">ω of the reference</th>" : "";
  html += "</tr></thead>\n<tbody>\n";
  for (const ProlineReport& proline : report.prolines) {
    html += summaryRowPart(report, proline, reference);
  }
  return html + "</tbody>\n</table>\n";
}

std::string prolinePart(const Report& report, const ProlineReport& proline) {
  const Inputs& inputs = report.inputs;
  const std::string id = anchor(proline.residue);
  std::string html = "<article class=\"proline\" id=\"" + id + "\" aria-labelledby=\"" + id +
                     "-h\">\n<header><h3 id=\"" + id + "-h\">" +
                     escaped(inputs.residueLabel(proline.residue)) + " " +
                     callSpan(proline.verdict) + "</h3>\n";
  html += "<span class=\"muted small\">" + escaped(tripletText(inputs, proline.residue));
  if (inputs.number(proline.residue) != std::to_string(proline.residue)) {
    html += ", number " + std::to_string(proline.residue) + " of the table";
  }
  html += "</span></header>\n" + paragraph(proline.verdict.evidence);
  if (!proline.predicted) {
    return html + "</article>\n";
  }
  html += paragraph(proline.verdict.basis) + referenceWarning(proline) + factsPart(proline);
  html += "<div class=\"side\">\n<figure>" + evidencePicture(report, proline).inlined() +
          "</figure>\n<figure>";
  for (const char* atom : {"CB", "CG"}) {
    if (const Term* const term = findTerm(proline.evidence, atom)) {
      html += positionPicture(report, *term).inlined();
    }
  }
  return html + "</figure>\n</div>\n</article>\n";
}

std::string referencingPart(const Report& report) {
  std::string html = "<section>\n<h2>Referencing</h2>\n";
  if (report.check.offsets.empty()) {
    html += "<p>No referencing offset larger than five times its error was found.</p>\n";
  } else {
    html += "<table class=\"keep\">\n<thead><tr><th scope=\"col\">Nuclei</th>"
            "<th scope=\"col\" class=\"number\">Offset, ppm</th>"
            "<th scope=\"col\" class=\"number\">Error, ppm</th>"
            "<th scope=\"col\" class=\"number\">Residues</th></tr></thead>\n<tbody>\n";
    for (const ReportedOffset& estimate : report.check.offsets) {
      html += "<tr>" + cell("", "", estimate.nuclei == "C'" ? "C′" : estimate.nuclei) +
              cell("number", "", signedDecimal(estimate.offset, 3)) +
              cell("number", "", decimal(estimate.error, 3)) +
              cell("number", "", std::to_string(estimate.points)) + "</tr>\n";
    }
    html += "</tbody>\n</table>\n";
    html += report.changedCalls.empty()
                ? "<p>Subtracting them would change no call.</p>\n"
                : "<p>Subtracting them would change the calls named at the top.</p>\n";
  }
  for (const std::string& nuclei : report.check.shortages) {
    html += "<p>There are too few shifts to check " + escaped(nuclei) + ".</p>\n";
  }
  return html +
         "<p class=\"small muted\">Estimated from the way secondary shifts depend on CA less "
         "CB, which is known for well-referenced proteins; citrans -offset subtracts "
         "them.</p>\n</section>\n";
}

std::string outlierPart(const Report& report) {
  std::string html = "<section>\n<h2>Outliers</h2>\n";
  if (report.check.outliers.empty()) {
    return html +
           "<p>No secondary shift lies outside the limits of the database.</p>\n</section>\n";
  }
  html += "<table class=\"keep\">\n<thead><tr><th scope=\"col\">Residue</th><th "
          "scope=\"col\">Atom</th><th scope=\"col\" class=\"number\">Secondary shift, ppm</th>"
          "<th scope=\"col\" class=\"number\">Limit, ppm</th><th scope=\"col\"></th></tr></thead>\n"
          "<tbody>\n";
  for (const Outlier& outlier : report.check.outliers) {
    html += "<tr>" + cell("", "", escaped(report.inputs.residueLabel(outlier.residue))) +
            cell("", "", escaped(outlier.atom)) +
            cell("number", "", signedDecimal(outlier.shift, 2)) +
            cell("number", "", signedDecimal(outlier.limit, 2)) +
            cell("", "", outlier.marked ? "far out" : "") + "</tr>\n";
  }
  return html +
         "</tbody>\n</table>\n<p class=\"small muted\">Around a proline such shifts are "
         "clipped to the limit. Far out: more than twice, for HA three times, the limit; look "
         "for a wrong assignment.</p>\n</section>\n";
}
