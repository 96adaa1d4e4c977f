#include "tools/report/exports.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "tools/common/tool.h"
#include "tools/report/text.h"

namespace {

using Json = nlohmann::ordered_json;

/// A cell of the TSV; what would end it becomes a blank.
std::string tsvCell(std::string text) {
  for (char& c : text) {
    c = c == '\t' || c == '\n' || c == '\r' ? ' ' : c;
  }
  return text;
}

std::string numberCell(double value, int decimals) {
  return std::isfinite(value) ? plainDecimal(value, decimals) : "";
}

void addTsvRow(std::string& text, const Report& report, const ProlineReport& proline,
               const Term& term) {
  const bool shift = term.kind != Term::Kind::neighbour;
  const auto name = report.inputs.sequence.find(term.residue);
  const std::string cells[] = {
      std::to_string(proline.residue),
      tsvCell(report.inputs.number(proline.residue)),
      callName(proline.verdict.call),
      std::to_string(term.place),
      std::to_string(term.residue),
      tsvCell(report.inputs.number(term.residue)),
      name == report.inputs.sequence.end() ? "" : name->second,
      term.atom,
      stateName(term),
      shift && term.present ? numberCell(term.shift, 3) : "",
      shift && term.present ? numberCell(term.used, 3) : "",
      numberCell(term.cis, 5),
      shift ? numberCell(term.cisDeviation, 5) : "",
      numberCell(term.trans, 5),
      shift ? numberCell(term.transDeviation, 5) : "",
      numberCell(term.logRatio, 5),
  };
  bool first = true;
  for (const std::string& cell : cells) {
    text += (first ? "" : "\t") + cell;
    first = false;
  }
  text += "\n";
}

Json numberOrNull(double value) {
  return std::isfinite(value) ? Json(value) : Json();
}

/// A shift, a difference of shifts or an offset: three decimals, as the tables have.
Json optionalNumber(const std::optional<double>& value) {
  return value ? numberOrNull(std::round(*value * 1000) / 1000) : Json();
}

/// What the reference structure has at a proline's number; null without a structure.
Json referenceJson(const ProlineReport& proline) {
  const SummaryRow& row = proline.row;
  if (row.referenceName.empty()) {
    return {};
  }
  Json json;
  json["residue"] = row.referenceName;
  json["omega"] = row.comparable() ? Json(row.omega) : Json();
  json["disagrees"] = row.comparable() ? Json(proline.disagrees) : Json();
  return json;
}

Json aboutJson(const Report& report) {
  const Inputs& inputs = report.inputs;
  const About& about = inputs.about;
  const auto text = [](const std::string& value) { return value.empty() ? Json() : Json(value); };
  Json json;
  json["program"] = versionLine("citrans-report");
  json["tables"] = text(report.tables);
  json["name"] = inputs.proteinName();
  json["protein"] = text(about.protein);
  json["entry"] = text(about.entry);
  json["source"] = text(about.source);
  json["title"] = inputs.shownTitle();
  json["reference"] = text(inputs.shownReference());
  json["residues"] = inputs.residueCount;
  json["shifts"] = Json::object();
  for (const auto& [atom, count] : report.nuclei()) {
    json["shifts"][atom] = count;
  }
  json["remarks"] = about.remarks;
  json["import_warnings"] = about.warnings;
  json["corrections"] = about.corrections;
  json["warnings"] = report.warnings;
  json["attention"] = Json::array();
  for (const Concern& concern : report.concerns) {
    json["attention"].push_back(
        {{"kind", concern.kind}, {"text", concern.text}, {"residues", concern.residues}});
  }
  return json;
}

Json termJson(const Report& report, const Term& term) {
  Json json;
  json["kind"] = kindName(term.kind);
  json["place"] = term.place;
  json["resid"] = term.residue;
  json["author"] = report.inputs.number(term.residue);
  json["atom"] = term.atom;
  json["state"] = stateName(term);
  if (term.kind == Term::Kind::neighbour) {
    json["frequency_cis"] = term.cis;
    json["frequency_trans"] = term.trans;
  } else {
    json["shift"] = term.present ? numberOrNull(term.shift) : Json();
    json["used"] = term.present ? numberOrNull(term.used) : Json();
    json["mean_cis"] = term.cis;
    json["deviation_cis"] = term.cisDeviation;
    json["mean_trans"] = term.trans;
    json["deviation_trans"] = term.transDeviation;
  }
  json["ln_ratio"] = numberOrNull(term.logRatio);
  return json;
}

Json callJson(Verdict::Call call) {
  return call == Verdict::Call::none ? Json() : Json(callName(call));
}

Json otherCallJson(const ProlineReport& proline, const std::optional<CorrectedCall>& other) {
  if (!other) {
    return {};
  }
  return {{"call", callJson(other->call)},
          {"p_cis_norm", numberOrNull(other->pCisNorm)},
          {"changes", other->call != proline.verdict.call}};
}

Json prolineJson(const Report& report, const ProlineReport& proline) {
  Json json;
  json["resid"] = proline.residue;
  json["author"] = report.inputs.number(proline.residue);
  json["predicted"] = proline.predicted;
  json["call"] = callJson(proline.verdict.call);
  json["settled"] = proline.verdict.settled;
  json["headline"] = proline.verdict.headline;
  json["evidence"] = proline.verdict.evidence;
  json["basis"] = proline.verdict.basis;
  if (!proline.predicted) {
    return json;
  }
  json["p_cis"] = numberOrNull(proline.row.pCis);
  json["p_cis_norm"] = numberOrNull(proline.row.pCisNorm);
  json["carbons"] = {{"cb", optionalNumber(proline.carbons.cb)},
                     {"cg", optionalNumber(proline.carbons.cg)},
                     {"cb_minus_cg", optionalNumber(proline.carbons.difference())},
                     {"cg_offset_taken_off", proline.carbons.cgSubtracted
                                                 ? optionalNumber(proline.carbons.cgOffset)
                                                 : Json()}};
  json["reference"] = referenceJson(proline);
  json["assigned"] = calls::describe(proline.verdict.assigned);
  json["such_calls"] = {{"calls", proline.verdict.likeThis.calls},
                        {"right", proline.verdict.likeThis.calls > 0
                                      ? numberOrNull(proline.verdict.likeThis.right)
                                      : Json()}};
  json["corrected"] = otherCallJson(proline, proline.corrected);
  json["as_given"] = otherCallJson(proline, proline.asGiven);
  json["ln_ratio"] = numberOrNull(proline.evidence.logRatio);
  json["p_cis_from_sum"] = numberOrNull(proline.evidence.pCis);
  json["sum_agrees"] = proline.evidence.agreesWith(proline.row.pCis);
  json["contributions"] = Json::array();
  for (const Term& term : proline.evidence.terms) {
    json["contributions"].push_back(termJson(report, term));
  }
  return json;
}

Json checkJson(const Report& report) {
  Json json;
  json["offsets"] = Json::array();
  json["referencing"] = Json::array();
  for (const ReportedOffset& estimate : report.check.estimates) {
    Json each = {{"nuclei", estimate.atoms},
                 {"offset", optionalNumber(estimate.offset)},
                 {"error", optionalNumber(estimate.error)},
                 {"points", estimate.points}};
    if (estimate.applies) {
      json["offsets"].push_back(each);
    }
    each["worth_correcting"] = estimate.applies;
    json["referencing"].push_back(each);
  }
  json["referencing_unchecked"] = Json::array();
  for (const ReportedOffset& each : report.check.unchecked) {
    json["referencing_unchecked"].push_back({{"nuclei", each.atoms}, {"points", each.points}});
  }
  json["outliers"] = Json::array();
  for (std::size_t i = 0; i < report.check.outliers.size(); ++i) {
    const Outlier& outlier = report.check.outliers[i];
    json["outliers"].push_back({{"resid", outlier.residue},
                                {"author", report.inputs.number(outlier.residue)},
                                {"atom", outlier.atom},
                                {"shift", numberOrNull(outlier.shift)},
                                {"limit", numberOrNull(static_cast<double>(outlier.limit))},
                                {"far_out", outlier.marked},
                                {"by_offset", static_cast<bool>(report.check.explained[i])}});
  }
  return json;
}

} // namespace

std::string tsvText(const Report& report) {
  std::string text = "resid\tauthor\tcall\tplace\tterm_resid\tterm_author\tresname\tatom\tstate\t"
                     "shift\tused\tcis\tcis_sd\ttrans\ttrans_sd\tln_ratio\n";
  for (const ProlineReport& proline : report.prolines) {
    for (const Term& term : proline.evidence.terms) {
      addTsvRow(text, report, proline, term);
    }
  }
  return text;
}

std::string jsonText(const Report& report) {
  Json json = aboutJson(report);
  json["prolines"] = Json::array();
  for (const ProlineReport& proline : report.prolines) {
    json["prolines"].push_back(prolineJson(report, proline));
  }
  json.update(checkJson(report));
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}
