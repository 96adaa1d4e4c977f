#include "tools/batch/output_rows.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "table/number.h"

namespace {

constexpr const char* columns[] = {"record",  "entry",    "status", "message",    "resid",
                                   "author",  "before",   "after",  "cs_cnt1",    "cs_cnt2",
                                   "cs_cnt3", "cg_shift", "p_cis",  "p_cis_norm", "call"};
constexpr std::size_t columnCount = sizeof columns / sizeof columns[0];
/// Columns that hold numbers; all others are text.
constexpr bool isNumber[columnCount] = {false, false, false, false, true, false, false, false,
                                        true,  true,  true,  true,  true, true,  false};
/// Above this P_CIS_NORM a proline is called cis.
constexpr double cisFrom = 0.5;

using Row = std::vector<std::string>;

std::string callOf(const std::string& pCisNorm) {
  const double p = parseDouble(pCisNorm);
  if (std::isnan(p)) {
    return "undecided";
  }
  return p > cisFrom ? "cis" : "trans";
}

Row entryRow(const EntryResult& result) {
  Row row(columnCount);
  row[0] = "entry";
  row[1] = result.entry.path;
  row[2] = result.status;
  row[3] = result.message;
  return row;
}

Row prolineRow(const EntryResult& result, const ProlineRow& proline) {
  return {"proline",         result.entry.path, result.status,           "",
          proline.resid,     proline.author,    proline.before,          proline.after,
          proline.counts[0], proline.counts[1], proline.counts[2],       proline.cgShift,
          proline.pCis,      proline.pCisNorm,  callOf(proline.pCisNorm)};
}

std::string tsvLine(const Row& row) {
  std::string line;
  for (const std::string& cell : row) {
    line += line.empty() && &cell == &row.front() ? "" : "\t";
    for (const char c : cell) {
      line += static_cast<unsigned char>(c) < ' ' || c == '\x7f' ? ' ' : c;
    }
  }
  return line + "\n";
}

std::string jsonLine(const Row& row) {
  nlohmann::ordered_json object;
  for (std::size_t i = 0; i < columnCount; ++i) {
    const double number = isNumber[i] ? parseDouble(row[i]) : 0;
    if (row[i].empty() || std::isnan(number)) {
      object[columns[i]] = nullptr;
    } else if (isNumber[i] && row[i].find('.') == std::string::npos) {
      object[columns[i]] = parseInt(row[i]);
    } else if (isNumber[i]) {
      object[columns[i]] = number;
    } else {
      object[columns[i]] = row[i];
    }
  }
  return object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

} // namespace

std::string formatOutput(const std::vector<EntryResult>& results, OutputKind kind) {
  const auto format = kind == OutputKind::tsv ? tsvLine : jsonLine;
  std::string text;
  if (kind == OutputKind::tsv) {
    text = tsvLine(Row(std::begin(columns), std::end(columns)));
  }
  for (const EntryResult& result : results) {
    text += format(entryRow(result));
    for (const ProlineRow& proline : result.prolines) {
      text += format(prolineRow(result, proline));
    }
  }
  return text;
}
