#include <algorithm>
#include <array>
#include <cmath>
#include <set>

#include "tools/report/page_parts.h"
#include "tools/report/pictures.h"
#include "tools/report/text.h"

namespace {

std::string callMarkup(const Verdict& verdict) {
  return std::string("<span class=\"call ") + callName(verdict.call) +
         (verdict.isOpen() ? " open" : "") + "\">" + escaped(verdict.headline) + "</span>";
}

/// "178.7° trans": what the reference structure has, by the form that the call is compared with.
std::string omegaText(const ProlineReport& proline) {
  const SummaryRow& row = proline.row;
  if (row.referenceName.empty()) {
    return "–";
  }
  if (row.referenceName != "P") {
    return "no proline there";
  }
  if (!row.hasOmega) {
    return "none";
  }
  constexpr double farFromPlanar = 30; // degrees
  const double size = std::fabs(row.omega);
  const bool twisted = size > farFromPlanar && size < 180 - farFromPlanar;
  return decimal(row.omega, 1) + "° " + (row.referenceIsCis() ? "cis" : "trans") +
         (twisted ? ", twisted" : "");
}

bool hasReference(const Report& report) {
  return std::any_of(report.inputs.summary.begin(), report.inputs.summary.end(),
                     [](const SummaryRow& row) { return !row.referenceName.empty(); });
}

std::string carbonsText(const Carbons& carbons) {
  const std::optional<double> difference = carbons.difference();
  if (!difference) {
    return "–";
  }
  const carbons::Band band = carbons::bandOf(*difference);
  return decimal(*difference, 1) + (band == carbons::Band::cis     ? " cis"
                                    : band == carbons::Band::trans ? " trans"
                                                                   : " open");
}

PageData rowOf(const Report& report, const ProlineReport& proline, const std::set<int>& attended,
               bool reference) {
  PageData row;
  row.set("residue", std::to_string(proline.residue));
  row.set("label", report.inputs.residueLabel(proline.residue));
  row.set("call", callMarkup(proline.verdict));
  row.set("attends", attended.count(proline.residue) > 0);
  row.set("predicted", proline.predicted);
  row.set("changes", proline.callChanges());
  row.set("corrected", proline.callChanges() ? callName(proline.corrected->call) : "");
  row.set("changed", proline.callChanged());
  row.set("given", proline.callChanged() ? callName(proline.asGiven->call) : "");
  row.set("evidence", proline.verdict.evidence);
  row.set("columns", reference ? "5" : "4");
  if (proline.predicted) {
    row.set("sum", sumPicture(report, proline).inlined());
    row.set("pCis", printedText(proline.row.pCis, proline.row.pCisText));
    row.set("pCisNorm", printedText(proline.row.pCisNorm, proline.row.pCisNormText));
    row.set("carbons", carbonsText(proline.carbons));
    row.set("omega", omegaText(proline));
    row.set("disagrees", proline.disagrees);
  }
  return row;
}

void addFact(PageData& facts, const char* label, const std::string& value) {
  PageData fact;
  fact.set("label", label);
  fact.set("value", value);
  facts << fact;
}

/// "5, 5, 6": shifts that the evidence has of the residue before, the proline and that after it.
std::string shiftsUsed(const Evidence& evidence) {
  std::array<int, 3> counts{};
  for (const Term& term : evidence.terms) {
    if (term.present && term.applicable && term.kind != Term::Kind::neighbour) {
      ++counts.at(static_cast<std::size_t>(term.place - 1));
    }
  }
  return std::to_string(counts[0]) + ", " + std::to_string(counts[1]) + ", " +
         std::to_string(counts[2]);
}

/// Whether the table that was predicted from has other carbon shifts than were given.
bool carbonsWereMoved(const Inputs& inputs) {
  constexpr auto carbon = static_cast<std::size_t>(referencing::Nucleus::carbon);
  return referencing::takenOff(inputs.about.corrections)[carbon] != 0;
}

PageData factsOf(const Report& report, const ProlineReport& proline) {
  const SummaryRow& row = proline.row;
  PageData facts = pageList();
  addFact(facts, "P_CIS", printedText(row.pCis, row.pCisText));
  addFact(facts, "P_CIS_NORM", printedText(row.pCisNorm, row.pCisNormText));
  addFact(facts, "ln(cis/trans)", signedDecimal(proline.evidence.logRatio, 2));
  addFact(facts, "shifts before, at, after", shiftsUsed(proline.evidence));
  if (proline.verdict.likeThis.calls > 0) {
    addFact(facts, "such calls right",
            decimal(100 * proline.verdict.likeThis.right, 1) + " % of " +
                std::to_string(proline.verdict.likeThis.calls) +
                (report.check.found() ? " where referenced well" : ""));
  }
  const bool moved = carbonsWereMoved(report.inputs);
  if (proline.carbons.cb) {
    addFact(facts, moved ? "CB, corrected" : "CB", decimal(*proline.carbons.cb, 2) + " ppm");
  }
  if (proline.carbons.cg) {
    addFact(facts, moved ? "CG, corrected" : "CG", decimal(*proline.carbons.cg, 2) + " ppm");
  }
  if (proline.carbons.cgSubtracted) {
    addFact(facts, "CG after subtraction", decimal(row.cg, 2) + " ppm");
  }
  if (!row.referenceName.empty()) {
    addFact(facts, "ω of the reference", omegaText(proline));
  }
  return facts;
}

/// What the reference structure says against the call, or about its numbering.
std::string referenceNote(const ProlineReport& proline) {
  const SummaryRow& row = proline.row;
  if (!row.referenceName.empty() && row.referenceName != "P") {
    return "The reference structure has no proline at this number (" + row.referenceName +
           "): its numbering differs from that of the table, and its angle says nothing here.";
  }
  if (!proline.disagrees) {
    return "";
  }
  const std::string form = row.referenceIsCis() ? "cis" : "trans";
  const bool leansThere = (proline.evidence.logRatio > 0) == row.referenceIsCis();
  return "The reference structure has this bond " + form +
         (leansThere ? ". The shifts lean that way too, though not by enough for a call."
                     : "; the shifts say otherwise.");
}

PageData notesOf(const ProlineReport& proline) {
  PageData notes = pageList();
  const std::string reference = referenceNote(proline);
  if (!reference.empty()) {
    notes << PageData("text", reference);
  }
  if (proline.callChanges()) {
    const bool none = proline.corrected->call == Verdict::Call::none;
    notes << PageData("text", none ? "With the referencing corrected there is no call."
                                   : std::string("With the referencing corrected the call is ") +
                                         callName(proline.corrected->call) + ", P_CIS_NORM " +
                                         decimal(proline.corrected->pCisNorm, 3) + ".");
  }
  if (proline.callChanged()) {
    notes << PageData("text",
                      std::string("By the shifts as they were given, before the referencing "
                                  "was corrected, the call is ") +
                          callName(proline.asGiven->call) + ", P_CIS_NORM " +
                          decimal(proline.asGiven->pCisNorm, 3) + ".");
  }
  if (proline.carbons.cgSubtracted) {
    notes << PageData("text", "The CG that was compared is after subtraction of " +
                                  signedDecimal(proline.carbons.cgOffset, 2) +
                                  " ppm: the offset once for each shift of the proline.");
  }
  return notes;
}

std::string tripletText(const Inputs& inputs, int proline) {
  std::string text;
  for (int residue = proline - 1; residue <= proline + 1; ++residue) {
    if (inputs.sequence.count(residue) > 0) {
      text += (text.empty() ? "" : " – ") + inputs.residueLabel(residue);
    }
  }
  if (inputs.number(proline) != std::to_string(proline)) {
    text += ", number " + std::to_string(proline) + " of the table";
  }
  return text;
}

std::string placesOf(const Report& report, const ProlineReport& proline) {
  std::string pictures;
  for (const Term& term : proline.evidence.terms) {
    if (term.place == 2 && (term.atom == "CB" || term.atom == "CG")) {
      pictures += positionPicture(report, term).inlined();
    }
  }
  if (proline.carbons.difference()) {
    pictures += carbonsPicture(report, proline).inlined();
  }
  return pictures;
}

/// All about one proline that was predicted; of the others the table says everything.
PageData cardOf(const Report& report, const ProlineReport& proline) {
  PageData card;
  card.set("residue", std::to_string(proline.residue));
  card.set("label", report.inputs.residueLabel(proline.residue));
  card.set("call", callMarkup(proline.verdict));
  card.set("triplet", tripletText(report.inputs, proline.residue));
  card.set("evidence", proline.verdict.evidence);
  card.set("basis", proline.verdict.basis);
  card.set("notes", notesOf(proline));
  card.set("facts", factsOf(report, proline));
  card.set("bars", evidencePicture(report, proline).inlined());
  card.set("places", placesOf(report, proline));
  return card;
}

std::set<int> attendedResidues(const Report& report) {
  std::set<int> residues;
  for (const Concern& concern : report.concerns) {
    residues.insert(concern.residues.begin(), concern.residues.end());
  }
  return residues;
}

} // namespace

void fillProlines(const Report& report, PageData& page) {
  const bool reference = hasReference(report);
  const std::set<int> attended = attendedResidues(report);
  PageData rows = pageList();
  PageData cards = pageList();
  bool subtracted = false;
  bool predicted = false;
  for (const ProlineReport& proline : report.prolines) {
    rows << rowOf(report, proline, attended, reference);
    if (proline.predicted) {
      cards << cardOf(report, proline);
    }
    predicted = predicted || proline.predicted;
    subtracted = subtracted || proline.carbons.cgSubtracted;
  }
  page.set("hasProlines", !report.prolines.empty());
  page.set("hasCards", predicted);
  page.set("hasReference", reference);
  page.set("cgSubtracted", subtracted);
  page.set("rows", rows);
  page.set("cards", cards);
  page.set("overview", overviewPicture(report, true).inlined());
}
