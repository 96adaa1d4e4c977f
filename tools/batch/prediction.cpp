#include "tools/batch/prediction.h"

#include <cmath>
#include <cstdio>
#include <stdexcept>

#include "table/file_io.h"
#include "table/number.h"

namespace {

CITRANS::Options optionsOf(const PredictionSettings& settings) {
  CITRANS::Options options;
  const std::pair<bool, const char*> switches[] = {
      {settings.offset, "offset"}, {settings.iso, "iso"}, {settings.noclip, "noclip"}};
  for (const auto& [given, name] : switches) {
    if (given) {
      options[name] = "true";
    }
  }
  return options;
}

std::string fixed(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

/// The lines of a text that are not empty, joined.
std::string joinedLines(std::string_view text) {
  std::string joined;
  for (std::string_view line; takeLine(text, line);) {
    const std::string simple = GDB::simplifyWhiteSpace(std::string(line));
    if (!simple.empty()) {
      joined += (joined.empty() ? "" : " | ") + simple;
    }
  }
  return joined;
}

bool hasShift(const CITRANS& run, int residue, const char* atom) {
  const GDB& table = run.shiftTable;
  const std::size_t row = table.findRow("RESID", std::to_string(residue), "ATOMNAME", atom);
  return row != GDB::noRow && parseDouble(table.cell(row, "SHIFT")) < shift::missingFrom;
}

bool hasCg(const Prediction& prediction) {
  return static_cast<double>(prediction.cgShift) < shift::missingFrom;
}

double evidenceOf(const Prediction& prediction) {
  return calls::evidence(static_cast<double>(prediction.likelihood.cis));
}

} // namespace

Predictor::Predictor(const PredictionSettings& settings)
    : settings_(settings), database_(settings.tabFolder, optionsOf(settings)),
      rules_(calls::Rules::load(settings.tabFolder)) {}

ProlineRow Predictor::rowOf(const Prediction& corrected, const Prediction& raw, bool hasCb) const {
  const auto callOf = [&](const Prediction& prediction) {
    return calls::word(rules_.call(evidenceOf(prediction),
                                   calls::assigned(hasCb, hasCg(prediction)),
                                   calls::shiftCount(prediction.shiftCounts)));
  };
  ProlineRow row;
  row.resid = row.author = std::to_string(corrected.residue);
  row.before = corrected.names[0];
  row.after = corrected.names[2];
  for (std::size_t i = 0; i < corrected.shiftCounts.size(); ++i) {
    row.counts[i] = std::to_string(corrected.shiftCounts[i]);
  }
  row.hasCb = hasCb;
  row.hasCg = hasCg(corrected);
  row.cgShift = row.hasCg ? fixed(static_cast<double>(corrected.cgShift), 3) : "";
  row.pCis = fixed(static_cast<double>(corrected.likelihood.cis), 3);
  row.pCisNorm = fixed(static_cast<double>(corrected.likelihood.normalised), 3);
  row.call = callOf(corrected);
  row.evidence = fixed(evidenceOf(corrected), 2);
  row.rawPCisNorm = fixed(static_cast<double>(raw.likelihood.normalised), 3);
  row.rawCall = callOf(raw);
  return row;
}

void Predictor::predictInput(const GDB& input, EntryResult& result) const {
  std::string said;
  CITRANS raw = database_.run(input);
  raw.errors = [&said](std::string_view text) { said += text; };
  try {
    raw.predictInput();
  } catch (const RunEnd& refusal) {
    result.status = "refused";
    result.message = joinedLines(said + refusal.message());
    return;
  }
  result.message = joinedLines(said);
  std::vector<Prediction> corrected = raw.predictions;
  // Shifts that the program itself has corrected are not corrected again.
  if (settings_.rereference && !settings_.offset) {
    const referencing::Estimates estimates = database_.estimate(raw);
    const referencing::Offsets offsets = offsetsToApply(estimates);
    for (std::size_t i = 0; i < offsets.size(); ++i) {
      const bool known = estimates[i].points >= referencing::fewestPoints;
      result.offsets[i] = known ? fixed(offsets[i], 3) : "";
    }
    if (offsets != referencing::Offsets{}) {
      CITRANS run = database_.run(input);
      referencing::correct(run.inputTable, offsets);
      run.predictInput();
      corrected = run.predictions;
    }
  }
  // The same shifts are there: the same prolines are predicted.
  for (std::size_t i = 0; i < corrected.size(); ++i) {
    result.prolines.push_back(
        rowOf(corrected[i], raw.predictions.at(i), hasShift(raw, corrected[i].residue, "CB")));
  }
  result.status = "ok";
}

void Predictor::predict(const std::string& table, EntryResult& result) const {
  GDB input;
  try {
    input.loadText(table);
  } catch (const RunEnd& refusal) {
    result.status = "refused";
    result.message = joinedLines(refusal.message());
    return;
  } catch (const std::out_of_range&) {
    result.status = "refused";
    result.message = "a line holds REMARK or DATA and nothing else";
    return;
  }
  predictInput(input, result);
}
