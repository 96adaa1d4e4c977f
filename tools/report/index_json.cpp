#include "tools/report/index_json.h"

#include <nlohmann/json.hpp>

using nlohmann::json;

json toJson(const IndexEntry& entry) {
  json prolines = json::array();
  for (const IndexProline& proline : entry.prolines) {
    prolines.push_back({proline.number, proline.call, proline.disagrees, proline.changes});
  }
  return {{"name", entry.name},
          {"page", entry.page},
          {"protein", entry.protein},
          {"remark", entry.remark},
          {"report", entry.hasReport},
          {"reference", entry.hasReference},
          {"offset", entry.offset ? json(*entry.offset) : json()},
          {"prolines", prolines}};
}

IndexEntry indexEntryFrom(const json& stored) {
  IndexEntry entry;
  entry.name = stored.at("name");
  entry.page = stored.at("page");
  entry.protein = stored.at("protein");
  entry.remark = stored.at("remark");
  entry.hasReport = stored.at("report");
  entry.hasReference = stored.at("reference");
  if (!stored.at("offset").is_null()) {
    entry.offset = stored.at("offset");
  }
  for (const json& cells : stored.at("prolines")) {
    entry.prolines.push_back({cells.at(0), cells.at(1), cells.at(2), cells.at(3)});
  }
  return entry;
}
