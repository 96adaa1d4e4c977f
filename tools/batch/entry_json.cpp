#include "tools/batch/entry_json.h"

#include "tools/report/index_json.h"

using nlohmann::json;

json toJson(const EntryResult& result) {
  json prolines = json::array();
  for (const ProlineRow& row : result.prolines) {
    prolines.push_back({row.resid, row.author, row.before, row.after, row.counts[0], row.counts[1],
                        row.counts[2], row.cgShift, row.pCis, row.pCisNorm, row.call, row.evidence,
                        row.hasCb, row.hasCg, row.rawPCisNorm, row.rawCall});
  }
  return {{"path", result.entry.path},
          {"size", result.entry.size},
          {"modified", result.entry.modified},
          {"status", result.status},
          {"message", result.message},
          {"prolines", prolines},
          {"offsets", result.offsets},
          {"listed", result.listed ? toJson(*result.listed) : json()}};
}

EntryResult fromJson(const json& stored) {
  EntryResult result;
  result.entry = {stored.at("path"), stored.at("size"), stored.at("modified")};
  result.status = stored.at("status");
  result.message = stored.at("message");
  result.offsets = stored.at("offsets");
  if (!stored.at("listed").is_null()) {
    result.listed = indexEntryFrom(stored.at("listed"));
  }
  for (const json& cells : stored.at("prolines")) {
    result.prolines.push_back({cells.at(0),
                               cells.at(1),
                               cells.at(2),
                               cells.at(3),
                               {cells.at(4), cells.at(5), cells.at(6)},
                               cells.at(7),
                               cells.at(8),
                               cells.at(9),
                               cells.at(10),
                               cells.at(11),
                               cells.at(12),
                               cells.at(13),
                               cells.at(14),
                               cells.at(15)});
  }
  return result;
}

std::string lineOf(const json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace) + "\n";
}
