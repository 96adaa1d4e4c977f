#include "web/entry.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "tools/analyse/analyse.h"
#include "tools/report/index_json.h"

namespace {

using Json = nlohmann::ordered_json;

/// What stays from one call to the next.
struct State {
  analyse::Analyser analyser;
  analyse::Result result;
  bool analysed = false;
  std::string outcome;
};

State& state() {
  static State kept;
  return kept;
}

/// Text of files may be in any encoding; what is no UTF-8 is replaced.
std::string textOf(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string textIn(const Json& settings, const char* key) {
  return settings.value(key, std::string());
}

analyse::Settings settingsFrom(const char* text) {
  const Json json = Json::parse(text);
  analyse::Settings settings;
  settings.choice.entity = textIn(json, "entity");
  settings.choice.list = textIn(json, "list");
  settings.choice.copy = textIn(json, "copy");
  settings.structure.chain = textIn(json, "chain");
  settings.structure.model = textIn(json, "model");
  settings.isotope = json.value("isotope", false);
  settings.rereference = json.value("rereference", false);
  settings.clip = !json.value("noclip", false);
  return settings;
}

Json alternativesJson(const std::vector<Alternative>& alternatives) {
  Json list = Json::array();
  for (const Alternative& each : alternatives) {
    list.push_back({{"id", each.id}, {"label", each.label}, {"chosen", each.chosen}});
  }
  return list;
}

/// A number that JSON can hold, or null.
Json number(double value) {
  return std::isfinite(value) ? Json(value) : Json();
}

Json prolinesJson(const Report& report) {
  Json list = Json::array();
  for (const ProlineReport& proline : report.prolines) {
    Json row = {{"residue", proline.residue},
                {"label", report.inputs.residueLabel(proline.residue)},
                {"call", proline.predicted ? callName(proline.verdict.call) : ""},
                {"disagrees", proline.disagrees}};
    if (proline.predicted) {
      row["pCis"] = number(proline.row.pCis);
      row["pCisNorm"] = number(proline.row.pCisNorm);
    }
    list.push_back(row);
  }
  return list;
}

/// A row of the list: "name" with "page" and the "entry" of an analysis, or with "message".
IndexEntry rowFrom(const nlohmann::json& row) {
  IndexEntry entry;
  if (row.contains("entry")) {
    entry = indexEntryFrom(row.at("entry"));
    entry.page = row.at("page");
  } else {
    entry.remark = row.at("message");
  }
  entry.name = row.at("name");
  return entry;
}

Json resultJson(const analyse::Result& result) {
  const Alternatives& alternatives = result.alternatives;
  return {{"name", result.name},
          {"structureName", result.structureName},
          {"protein", result.report.inputs.proteinName()},
          {"imported", result.imported},
          {"residues", result.sequence.size()},
          {"notes", result.decisions()},
          {"warnings", result.warnings()},
          {"entities", alternativesJson(alternatives.entities)},
          {"lists", alternativesJson(alternatives.lists)},
          {"copies", alternativesJson(alternatives.copies)},
          {"chains", alternativesJson(alternatives.chains)},
          {"prolines", prolinesJson(result.report)},
          {"entry", Json(toJson(indexEntry(result.report)))}};
}

/// Runs one call; whatever goes wrong becomes a line.
template <typename Call>
int guarded(Call call) {
  State& kept = state();
  try {
    kept.outcome = call(kept);
    return 0;
  } catch (const std::bad_alloc&) {
    kept.outcome = "not enough memory";
  } catch (const std::exception& error) {
    kept.outcome = error.what();
  }
  return 1;
}

} // namespace

int citrans_page_analyse(const char* settings, const char* name, const char* bytes,
                         std::size_t size, const char* structureName, const char* structure,
                         std::size_t structureSize) {
  return guarded([&](State& kept) {
    kept.analysed = false;
    std::optional<analyse::File> reference;
    if (structure != nullptr) {
      reference = {structureName, {structure, structureSize}};
    }
    kept.result = kept.analyser.analyse({name, {bytes, size}}, reference, settingsFrom(settings));
    kept.analysed = true;
    return textOf(resultJson(kept.result));
  });
}

int citrans_page_output(const char* kind) {
  return guarded([&](const State& kept) {
    if (!kept.analysed) {
      throw std::logic_error("nothing is analysed");
    }
    return analyse::makeOutput(kept.result, kind).text;
  });
}

int citrans_page_index(const char* rows) {
  return guarded([&](const State&) {
    std::vector<IndexEntry> entries;
    for (const nlohmann::json& row : nlohmann::json::parse(rows)) {
      entries.push_back(rowFrom(row));
    }
    return indexPage(entries);
  });
}

const char* citrans_page_text() {
  return state().outcome.data();
}

std::size_t citrans_page_size() {
  return state().outcome.size();
}
