#include <algorithm>

#include "tools/common/tool.h"
#include "tools/report/page_parts.h"
#include "tools/report/text.h"

namespace {

/// Prolines that a concern names; the table marks them all.
constexpr std::size_t linksShown = 24;

PageData texts(const std::vector<std::string>& items) {
  PageData list = pageList();
  for (const std::string& item : items) {
    list << PageData("text", item);
  }
  return list;
}

std::string nucleiText(const Report& report) {
  std::vector<std::string> items;
  for (const auto& [atom, count] : report.nuclei()) {
    items.push_back((atom == "CG" ? "Pro CG" : atomLabel(atom)) + " " + std::to_string(count));
  }
  return items.empty() ? "none" : joined(items);
}

void addAbout(PageData& list, const char* label, const std::string& value) {
  if (!value.empty()) {
    PageData item;
    item.set("label", label);
    item.set("value", value);
    list << item;
  }
}

/// Whether any number shown is another than the table's.
bool isRenumbered(const Inputs& inputs) {
  return std::any_of(inputs.authors.begin(), inputs.authors.end(), [](const auto& number) {
    return number.second != std::to_string(number.first);
  });
}

PageData about(const Report& report) {
  const Inputs& inputs = report.inputs;
  const std::string title = inputs.shownTitle();
  PageData list = pageList();
  const bool numbered = inputs.about.entry.find(" entry ") != std::string::npos;
  addAbout(list, numbered ? "entry" : "format", inputs.about.entry);
  addAbout(list, "protein", inputs.about.protein);
  addAbout(list, "shifts from", inputs.about.source.empty() ? title : inputs.about.source);
  addAbout(list, "length",
           counted(static_cast<std::size_t>(inputs.residueCount), "residue") +
               (isRenumbered(inputs) ? ", numbered as by the authors" : ""));
  addAbout(list, "shifts", nucleiText(report));
  addAbout(list, "reference structure", inputs.shownReference());
  addAbout(list, "made by", versionLine("citrans-report"));
  addAbout(list, "tables", report.tables);
  return list;
}

std::string countText(const Report& report) {
  if (report.prolines.empty()) {
    return "The sequence has no proline.";
  }
  using Call = Verdict::Call;
  const auto count = [&report](Call call) {
    return std::count_if(report.prolines.begin(), report.prolines.end(),
                         [call](const ProlineReport& p) { return p.verdict.call == call; });
  };
  const auto open = std::count_if(report.prolines.begin(), report.prolines.end(),
                                  [](const ProlineReport& p) { return p.verdict.isOpen(); });
  const auto disagreeing = std::count_if(report.prolines.begin(), report.prolines.end(),
                                         [](const ProlineReport& p) { return p.disagrees; });
  std::string text = counted(report.prolines.size(), "proline") + ": " +
                     std::to_string(count(Call::cis)) + " cis, " +
                     std::to_string(count(Call::trans)) + " trans";
  const std::pair<std::ptrdiff_t, const char*> more[] = {
      {count(Call::undecided), " undecided"},
      {count(Call::none), " without a call"},
  };
  for (const auto& [number, words] : more) {
    text += number > 0 ? ", " + std::to_string(number) + words : "";
  }
  text += open > 0 ? "; calls not settled: " + std::to_string(open) : "";
  text +=
      disagreeing > 0 ? "; against the reference structure: " + std::to_string(disagreeing) : "";
  return text + ".";
}

PageData concerns(const Report& report) {
  PageData list = pageList();
  for (const Concern& concern : report.concerns) {
    PageData item;
    item.set("text", concern.text);
    PageData links = pageList();
    const std::size_t shown = std::min(concern.residues.size(), linksShown);
    for (std::size_t i = 0; i < shown; ++i) {
      const int residue = concern.residues[i];
      PageData link;
      link.set("residue", std::to_string(residue));
      link.set("label", report.inputs.residueLabel(residue));
      links << link;
    }
    item.set("links", links);
    item.set("more", shown < concern.residues.size()
                         ? " and " + std::to_string(concern.residues.size() - shown) + " more"
                         : "");
    list << item;
  }
  return list;
}

} // namespace

void fillOpening(const Report& report, PageData& page) {
  const Inputs& inputs = report.inputs;
  page.set("name", inputs.proteinName());
  page.set("about", about(report));
  page.set("counts", countText(report));
  page.set("corrections", texts(inputs.about.corrections));
  page.set("needsAttention", !report.concerns.empty());
  page.set("concerns", concerns(report));
  page.set("hasRemarks", !inputs.about.remarks.empty());
  page.set("remarks", texts(inputs.about.remarks));
  page.set("program", versionLine("citrans-report"));
  page.set("hasTables", !report.tables.empty());
  page.set("tables", report.tables);
  page.set("callRule",
           PageData("text",
                    "The call rests on the sum of the evidence and on whether CB and CG are "
                    "assigned; where neither form is supported well enough, the proline "
                    "is undecided. “Probably” stands before a call with a P_CIS_NORM "
                    "between 0.1 and 0.9. How often such calls are right was counted in "
                    "cross-validation of well-referenced proteins, among calls of the same "
                    "word with the same of CB and CG assigned."));
}
