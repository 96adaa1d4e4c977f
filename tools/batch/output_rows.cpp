#include "tools/batch/output_rows.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "table/number.h"

namespace {

struct Column {
  const char* name;
  bool isNumber; ///< all others are text
};
constexpr Column columns[] = {
    {"record", false},  {"entry", false},         {"status", false},   {"message", false},
    {"resid", true},    {"author", false},        {"before", false},   {"after", false},
    {"cs_cnt1", true},  {"cs_cnt2", true},        {"cs_cnt3", true},   {"cg_shift", true},
    {"p_cis", true},    {"p_cis_norm", true},     {"call", false},     {"evidence", true},
    {"has_cb", false},  {"has_cg", false},        {"offset_ca", true}, {"offset_ha", true},
    {"offset_c", true}, {"p_cis_norm_raw", true}, {"call_raw", false}, {"changed", false}};
constexpr std::size_t columnCount = sizeof columns / sizeof columns[0];
constexpr std::size_t firstOffset = 18;

using Row = std::vector<std::string>;

Row entryRow(const EntryResult& result) {
  Row row(columnCount);
  row[0] = "entry";
  row[1] = result.entry.path;
  row[2] = result.status;
  row[3] = result.message;
  std::copy(result.offsets.begin(), result.offsets.end(), row.begin() + firstOffset);
  return row;
}

Row prolineRow(const EntryResult& result, const ProlineRow& proline) {
  const auto yesOrNo = [](bool yes) { return yes ? "yes" : "no"; };
  return {"proline",
          result.entry.path,
          result.status,
          "",
          proline.resid,
          proline.author,
          proline.before,
          proline.after,
          proline.counts[0],
          proline.counts[1],
          proline.counts[2],
          proline.cgShift,
          proline.pCis,
          proline.pCisNorm,
          proline.call,
          proline.evidence,
          yesOrNo(proline.hasCb),
          yesOrNo(proline.hasCg),
          result.offsets[0],
          result.offsets[1],
          result.offsets[2],
          proline.rawPCisNorm,
          proline.rawCall,
          yesOrNo(proline.call != proline.rawCall)};
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
    const double number = columns[i].isNumber ? parseDouble(row[i]) : 0;
    if (row[i].empty() || std::isnan(number)) {
      object[columns[i].name] = nullptr;
    } else if (columns[i].isNumber && row[i].find('.') == std::string::npos) {
      object[columns[i].name] = parseInt(row[i]);
    } else if (columns[i].isNumber) {
      object[columns[i].name] = number;
    } else {
      object[columns[i].name] = row[i];
    }
  }
  return object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

} // namespace

std::string formatOutput(const std::vector<EntryResult>& results, OutputKind kind) {
  const auto format = kind == OutputKind::tsv ? tsvLine : jsonLine;
  std::string text;
  if (kind == OutputKind::tsv) {
    Row head;
    for (const Column& column : columns) {
      head.emplace_back(column.name);
    }
    text = tsvLine(head);
  }
  for (const EntryResult& result : results) {
    text += format(entryRow(result));
    for (const ProlineRow& proline : result.prolines) {
      text += format(prolineRow(result, proline));
    }
  }
  return text;
}
