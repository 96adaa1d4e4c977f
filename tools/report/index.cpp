#include "tools/report/index.h"

#include <algorithm>
#include <array>

#include "tools/common/tool.h"
#include "tools/report/embedded.h"
#include "tools/report/fill.h"
#include "tools/report/style.h"
#include "tools/report/text.h"

namespace {

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

/// What the list shows of one entry, and the kinds that it is of.
struct Row {
  std::string cis, undecided, disagreeing, changed, offset, kinds = "all";
  std::size_t cisCount = 0, transCount = 0, undecidedCount = 0, uncalledCount = 0;

  bool isOf(const std::string& kind) const {
    return (" " + kinds + " ").find(" " + kind + " ") != std::string::npos;
  }
};

void append(std::string& list, const std::string& label) {
  list += (list.empty() ? "" : ", ") + label;
}

void takeProline(const IndexProline& proline, Row& row) {
  const std::string label = "Pro" + proline.number;
  if (proline.call == "cis") {
    ++row.cisCount;
    append(row.cis, label);
  } else if (proline.call == "undecided") {
    ++row.undecidedCount;
    append(row.undecided, label);
  } else if (proline.call == "trans") {
    ++row.transCount;
  } else {
    ++row.uncalledCount;
  }
  if (proline.disagrees) {
    append(row.disagreeing, label);
  }
  if (proline.changes) {
    append(row.changed, label);
  }
}

Row rowOf(const IndexEntry& entry) {
  Row row;
  for (const IndexProline& proline : entry.prolines) {
    takeProline(proline, row);
  }
  row.offset = entry.offset ? signedDecimal(*entry.offset, 2) : "";
  const std::pair<bool, const char*> conditions[] = {
      {!row.cis.empty(), " cis"},
      {!row.undecided.empty(), " undecided"},
      {!row.disagreeing.empty(), " structure"},
      {!row.offset.empty() || !row.changed.empty(), " referencing"},
      {!entry.hasReport, " failed"}};
  for (const auto& [holds, kind] : conditions) {
    row.kinds += holds ? kind : "";
  }
  return row;
}

PageData shownIf(const std::string& labels) {
  return labels.empty() ? PageData(false) : PageData("labels", labels);
}

/// A number that stands out where there is something to count.
std::string countCell(std::size_t count) {
  return count > 0 ? std::to_string(count) : "";
}

PageData rowData(const IndexEntry& entry, const Row& row) {
  PageData data;
  data.set("kinds", row.kinds);
  data.set("entry", entry.name);
  data.set("page", !entry.page.empty());
  data.set("href", entry.page);
  data.set("protein", entry.protein);
  data.set("prolines", entry.hasReport ? std::to_string(entry.prolines.size()) : "");
  data.set("uncalled", countCell(row.uncalledCount));
  data.set("cis", shownIf(row.cis));
  data.set("undecided", shownIf(row.undecided));
  data.set("disagreeing", row.disagreeing);
  data.set("offset", row.offset);
  data.set("changed", row.changed);
  data.set("remark", shortened(entry.remark, longestRemark));
  return data;
}

PageData filterData(const std::vector<Row>& rows, bool reference) {
  PageData list = pageList();
  for (const Filter& filter : filters) {
    if (std::string(filter.kind) == "structure" && !reference) {
      continue;
    }
    const auto count = std::count_if(rows.begin(), rows.end(),
                                     [&filter](const Row& row) { return row.isOf(filter.kind); });
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
  const std::pair<const char*, bool> columns[] = {{"Entry", false},
                                                  {"Protein", false},
                                                  {"Prolines", true},
                                                  {"No call", true},
                                                  {"Cis", false},
                                                  {"Undecided", false},
                                                  {"Against the structure", false},
                                                  {"Offset, ppm", true},
                                                  {"Calls that it changes", false},
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

std::string entryCount(std::size_t count) {
  return count == 1 ? "1 entry" : std::to_string(count) + " entries";
}

std::string countText(const std::vector<IndexEntry>& entries, const std::vector<Row>& rows) {
  std::size_t prolines = 0;
  for (const IndexEntry& entry : entries) {
    prolines += entry.prolines.size();
  }
  Row sum;
  for (const Row& row : rows) {
    sum.cisCount += row.cisCount;
    sum.transCount += row.transCount;
    sum.undecidedCount += row.undecidedCount;
    sum.uncalledCount += row.uncalledCount;
  }
  return entryCount(rows.size()) + ", " + counted(prolines, "proline") + ": " +
         std::to_string(sum.cisCount) + " cis, " + std::to_string(sum.transCount) + " trans, " +
         std::to_string(sum.undecidedCount) + " undecided, " + std::to_string(sum.uncalledCount) +
         " without a call.";
}

} // namespace

std::string indexPage(const std::vector<IndexEntry>& entries) {
  std::vector<Row> rows;
  bool reference = false;
  for (const IndexEntry& entry : entries) {
    rows.push_back(rowOf(entry));
    reference = reference || entry.hasReference;
  }
  PageData list = pageList();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    list << rowData(entries[i], rows[i]);
  }
  PageData page;
  page.set("title", "Cis and trans prolines of " + entryCount(entries.size()));
  page.set("style", pageStyle());
  page.set("code", std::string(embedded::indexCode));
  page.set("codeHash", std::string(embedded::indexCodeHash));
  page.set("counts", countText(entries, rows));
  page.set("filters", filterData(rows, reference));
  page.set("hasReference", reference);
  page.set("columns", columnData(reference));
  page.set("rows", list);
  page.set("program", versionLine("citrans-report"));
  return filled(embedded::index, page);
}
