#include "tools/report/index.h"

#include <array>
#include <cmath>
#include <nlohmann/json.hpp>

#include "tools/common/tool.h"
#include "tools/report/embedded.h"
#include "tools/report/fill.h"
#include "tools/report/style.h"
#include "tools/report/text.h"

namespace {

using Json = nlohmann::json;

/// Characters of a remark; the page of the entry has all.
constexpr std::size_t longestRemark = 240;

/// The kinds that the list can be filtered by, in the order of their buttons.
struct Filter {
  const char* kind;
  const char* label;
};
constexpr std::array<Filter, 6> filters = {{{"all", "all"},
                                            {"cis", "with cis"},
                                            {"undecided", "with undecided"},
                                            {"structure", "against the structure"},
                                            {"referencing", "misreferenced"},
                                            {"failed", "without a report"}}};

/// What the list shows of one entry.
struct Row {
  std::string protein, cis, undecided, disagreeing, offset, changed, remark;
  std::size_t prolines = 0, cisCount = 0, undecidedCount = 0;
  bool hasReport = false, hasReference = false;

  std::vector<std::string> kinds() const {
    std::vector<std::string> found = {"all"};
    const std::pair<bool, const char*> conditions[] = {
        {!cis.empty(), "cis"},
        {!undecided.empty(), "undecided"},
        {!disagreeing.empty(), "structure"},
        {!offset.empty() || !changed.empty(), "referencing"},
        {!hasReport, "failed"}};
    for (const auto& [holds, kind] : conditions) {
      if (holds) {
        found.emplace_back(kind);
      }
    }
    return found;
  }
};

void append(std::string& list, const std::string& label) {
  list += (list.empty() ? "" : ", ") + label;
}

void takeProline(const Json& proline, Row& row) {
  const std::string label = "Pro" + proline.at("author").get<std::string>();
  const Json& call = proline.at("call");
  ++row.prolines;
  if (call == "cis") {
    ++row.cisCount;
    append(row.cis, label);
  } else if (call == "undecided") {
    ++row.undecidedCount;
    append(row.undecided, label);
  }
  if (!proline.at("predicted").get<bool>()) {
    return;
  }
  const Json& reference = proline.at("reference");
  row.hasReference = row.hasReference || !reference.is_null();
  if (!reference.is_null() && reference.at("disagrees") == true) {
    append(row.disagreeing, label);
  }
  const Json& corrected = proline.at("corrected");
  if (!corrected.is_null() && corrected.at("changes") == true) {
    append(row.changed, label);
  }
}

Row rowOf(const IndexEntry& entry) {
  Row row;
  row.hasReport = !entry.json.empty();
  row.remark = entry.message;
  if (!row.hasReport) {
    return row;
  }
  const Json report = Json::parse(entry.json);
  row.protein = report.at("name").get<std::string>();
  row.remark.clear();
  for (const Json& warning : report.at("import_warnings")) {
    row.remark += (row.remark.empty() ? "" : "; ") + warning.get<std::string>();
  }
  for (const Json& proline : report.at("prolines")) {
    takeProline(proline, row);
  }
  for (const Json& offset : report.at("offsets")) {
    if (offset.at("nuclei").at(0) == "CA") {
      row.offset = signedDecimal(offset.at("offset").get<double>(), 2);
    }
  }
  return row;
}

PageData shownIf(const std::string& labels) {
  return labels.empty() ? PageData(false) : PageData("labels", labels);
}

PageData rowData(const IndexEntry& entry, const Row& row) {
  std::string kinds;
  for (const std::string& kind : row.kinds()) {
    kinds += (kinds.empty() ? "" : " ") + kind;
  }
  PageData data;
  data.set("kinds", kinds);
  data.set("entry", entry.name);
  data.set("page", !entry.page.empty());
  data.set("href", entry.page);
  data.set("protein", row.protein);
  data.set("prolines", row.hasReport ? std::to_string(row.prolines) : "");
  data.set("cis", shownIf(row.cis));
  data.set("undecided", shownIf(row.undecided));
  data.set("disagreeing", row.disagreeing);
  data.set("offset", row.offset);
  data.set("changed", row.changed);
  data.set("remark", shortened(row.remark, longestRemark));
  return data;
}

PageData filterData(const std::vector<Row>& rows, bool reference) {
  PageData list = pageList();
  for (const Filter& filter : filters) {
    std::size_t count = 0;
    for (const Row& row : rows) {
      for (const std::string& kind : row.kinds()) {
        count += kind == filter.kind ? 1U : 0U;
      }
    }
    if (std::string(filter.kind) == "structure" && !reference) {
      continue;
    }
    PageData data;
    data.set("kind", filter.kind);
    data.set("label", filter.label);
    data.set("count", std::to_string(count));
    data.set("first", std::string(filter.kind) == "all");
    list << data;
  }
  return list;
}

PageData columnData(bool reference) {
  const std::pair<const char*, bool> columns[] = {
      {"Entry", false},      {"Protein", false},
      {"Prolines", true},    {"Cis", false},
      {"Undecided", false},  {"Against the structure", false},
      {"Offset, ppm", true}, {"Calls that it changes", false},
      {"Remarks", false}};
  PageData list = pageList();
  for (const auto& [label, number] : columns) {
    if (!reference && std::string(label) == "Against the structure") {
      continue;
    }
    PageData data;
    data.set("label", label);
    data.set("number", number);
    list << data;
  }
  return list;
}

std::string countText(const std::vector<Row>& rows) {
  std::size_t prolines = 0;
  std::size_t cis = 0;
  std::size_t undecided = 0;
  for (const Row& row : rows) {
    prolines += row.prolines;
    cis += row.cisCount;
    undecided += row.undecidedCount;
  }
  return (rows.size() == 1 ? "1 entry" : std::to_string(rows.size()) + " entries") + ", " +
         counted(prolines, "proline") + ": " + std::to_string(cis) + " cis, " +
         std::to_string(undecided) + " undecided.";
}

} // namespace

std::string indexPage(const std::vector<IndexEntry>& entries) {
  std::vector<Row> rows;
  bool reference = false;
  for (const IndexEntry& entry : entries) {
    rows.push_back(rowOf(entry));
    reference = reference || rows.back().hasReference;
  }
  PageData list = pageList();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    list << rowData(entries[i], rows[i]);
  }
  PageData page;
  page.set("title", "Cis and trans prolines of " +
                        (entries.size() == 1 ? std::string("1 entry")
                                             : std::to_string(entries.size()) + " entries"));
  page.set("style", pageStyle());
  page.set("code", std::string(embedded::indexCode));
  page.set("codeHash", std::string(embedded::indexCodeHash));
  page.set("counts", countText(rows));
  page.set("filters", filterData(rows, reference));
  page.set("hasReference", reference);
  page.set("columns", columnData(reference));
  page.set("rows", list);
  page.set("program", versionLine("citrans-report"));
  return filled(embedded::index, page);
}
