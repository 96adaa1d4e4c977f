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

const char* kindName(Term::Kind kind) {
  return kind == Term::Kind::shift ? "shift" : kind == Term::Kind::cg ? "cg" : "neighbour";
}

std::string stateName(const Term& term) {
  if (!term.applicable) {
    return "unused";
  }
  if (!term.present) {
    return "missing";
  }
  return term.clipped ? "clipped" : term.readAsZero ? "read as 0" : "used";
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

Json prolineJson(const Report& report, const ProlineReport& proline) {
  Json json;
  json["resid"] = proline.residue;
  json["author"] = report.inputs.number(proline.residue);
  json["predicted"] = proline.predicted;
  json["call"] =
      proline.verdict.call == Verdict::Call::none ? Json() : Json(callName(proline.verdict.call));
  json["settled"] = proline.verdict.settled;
  json["headline"] = proline.verdict.headline;
  json["evidence"] = proline.verdict.evidence;
  json["basis"] = proline.verdict.basis;
  if (!proline.predicted) {
    return json;
  }
  json["p_cis"] = numberOrNull(proline.row.pCis);
  json["p_cis_norm"] = numberOrNull(proline.row.pCisNorm);
  json["omega_ref"] = proline.row.hasOmega ? Json(proline.row.omega) : Json();
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
  for (const ReportedOffset& estimate : report.check.offsets) {
    json["offsets"].push_back({{"nuclei", estimate.nuclei},
                               {"offset", estimate.offset},
                               {"error", numberOrNull(estimate.error)},
                               {"points", estimate.points}});
  }
  json["changed_calls"] = Json::array();
  for (const ChangedCall& changed : report.changedCalls) {
    json["changed_calls"].push_back({{"resid", changed.residue},
                                     {"p_cis_norm", numberOrNull(changed.before)},
                                     {"p_cis_norm_with_offsets", numberOrNull(changed.after)}});
  }
  json["outliers"] = Json::array();
  for (const Outlier& outlier : report.check.outliers) {
    json["outliers"].push_back({{"resid", outlier.residue},
                                {"author", report.inputs.number(outlier.residue)},
                                {"atom", outlier.atom},
                                {"shift", outlier.shift},
                                {"limit", outlier.limit},
                                {"far_out", outlier.marked}});
  }
  return json;
}

/// The groups of prolines that get a colour of their own.
struct Group {
  const char* name;
  const char* hex;   ///< for ChimeraX
  const char* parts; ///< red, green and blue for PyMOL
  Verdict::Call call;
  bool settled;
};

constexpr Group groups[] = {
    {"citrans_cis", "#d55e00", "[0.835, 0.369, 0.000]", Verdict::Call::cis, true},
    {"citrans_probably_cis", "#f0a868", "[0.941, 0.659, 0.408]", Verdict::Call::cis, false},
    {"citrans_trans", "#0072b2", "[0.000, 0.447, 0.698]", Verdict::Call::trans, true},
    {"citrans_probably_trans", "#7fb8dc", "[0.498, 0.722, 0.863]", Verdict::Call::trans, false},
    {"citrans_no_call", "#8c8c8c", "[0.549, 0.549, 0.549]", Verdict::Call::none, false},
};

/// A residue number as the viewers take it: digits, an insertion code, a sign before. Anything else
/// would end the command and is left out.
bool isViewerNumber(const std::string& number) {
  const std::size_t start = number.empty() || number[0] != '-' ? 0 : 1;
  std::size_t digits = start;
  while (digits < number.size() && number[digits] >= '0' && number[digits] <= '9') {
    ++digits;
  }
  const bool letter = digits + 1 == number.size() && ((number[digits] | 0x20) >= 'a') &&
                      ((number[digits] | 0x20) <= 'z');
  return digits > start && (digits == number.size() || letter);
}

/// The numbers of a group's prolines between separators; `minus` stands for a sign.
std::string membersOf(const Report& report, const Group& group, const char* separator,
                      const char* minus) {
  std::string members;
  for (const ProlineReport& proline : report.prolines) {
    const std::string number = report.inputs.number(proline.residue);
    if (proline.verdict.call == group.call && proline.verdict.settled == group.settled &&
        isViewerNumber(number)) {
      members += (members.empty() ? "" : separator) +
                 (number[0] == '-' ? minus + number.substr(1) : number);
    }
  }
  return members;
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
  Json json;
  json["program"] = versionLine("citrans-report");
  json["title"] = report.inputs.title;
  json["reference"] =
      report.inputs.referenceTitle.empty() ? Json() : Json(report.inputs.referenceTitle);
  json["database"] = report.database;
  json["residues"] = report.inputs.residueCount;
  json["prolines"] = Json::array();
  for (const ProlineReport& proline : report.prolines) {
    json["prolines"].push_back(prolineJson(report, proline));
  }
  json.update(checkJson(report));
  json["corrections"] = report.inputs.corrections;
  json["warnings"] = report.warnings;
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string chimeraxText(const Report& report) {
  std::string text = "# Prolines by the form that their chemical shifts say\n";
  for (const Group& group : groups) {
    const std::string members = membersOf(report, group, ",", "-");
    if (!members.empty()) {
      const std::string residues = ":" + members + " & :PRO";
      text += std::string("name ") + group.name + " " + residues + "\n";
      text += std::string("color ") + group.name + " " + group.hex + " target abcs\n";
      text += std::string("show ") + group.name + " atoms\n";
    }
  }
  return text;
}

std::string pymolText(const Report& report) {
  std::string text = "# Prolines by the form that their chemical shifts say\n";
  for (const Group& group : groups) {
    const std::string members = membersOf(report, group, "+", "\\-");
    if (!members.empty()) {
      const std::string colour = std::string(group.name) + "_colour";
      text += "set_color " + colour + ", " + group.parts + "\n";
      text += std::string("select ") + group.name + ", resn PRO and resi " + members + "\n";
      text += "color " + colour + ", " + group.name + "\n";
      text += std::string("show sticks, ") + group.name + "\n";
    }
  }
  return text + "deselect\n";
}
