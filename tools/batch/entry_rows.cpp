#include "tools/batch/entry_rows.h"

#include <cstdio>

#include "table/file_io.h"

namespace {

std::string fixed(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

ProlineRow rowOf(const analyse::Proline& proline) {
  const Prediction& used = proline.used;
  ProlineRow row;
  row.resid = row.author = std::to_string(used.residue);
  row.before = used.names[0];
  row.after = used.names[2];
  for (std::size_t i = 0; i < used.shiftCounts.size(); ++i) {
    row.counts[i] = std::to_string(used.shiftCounts[i]);
  }
  row.hasCb = proline.hasCb;
  row.hasCg = static_cast<double>(used.cgShift) < shift::missingFrom;
  row.cgShift = row.hasCg ? fixed(static_cast<double>(used.cgShift), 3) : "";
  row.pCis = fixed(static_cast<double>(used.likelihood.cis), 3);
  row.pCisNorm = fixed(static_cast<double>(used.likelihood.normalised), 3);
  row.call = calls::word(proline.call);
  row.evidence = fixed(calls::evidence(static_cast<double>(used.likelihood.cis)), 2);
  row.rawPCisNorm = fixed(static_cast<double>(proline.given.likelihood.normalised), 3);
  row.rawCall = calls::word(proline.givenCall);
  return row;
}

void takeOffsets(const referencing::Estimates& estimates, EntryResult& result) {
  const referencing::Offsets offsets = offsetsToApply(estimates);
  for (std::size_t i = 0; i < offsets.size(); ++i) {
    const bool known = estimates[i].points >= referencing::fewestPoints;
    result.offsets[i] = known ? fixed(offsets[i], 3) : "";
  }
}

void takeNotes(const std::vector<analyse::Note>& notes, EntryResult& result) {
  for (const analyse::Note& note : notes) {
    const bool imported = note.step == analyse::Step::import;
    if (imported || note.step == analyse::Step::prediction) {
      addMessage((imported && note.warning ? "warning: " : "") + note.text, result);
    }
  }
}

} // namespace

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

void addMessage(const std::string& line, EntryResult& result) {
  result.message += (result.message.empty() ? "" : " | ") + GDB::simplifyWhiteSpace(line);
}

void takeResult(const analyse::Result& found, EntryResult& result) {
  std::map<int, std::string> authors;
  if (!found.map.empty()) {
    authors = readAuthorMap({found.name + ".map", found.map});
  }
  for (const analyse::Proline& proline : found.prolines) {
    ProlineRow row = rowOf(proline);
    const auto author = authors.find(proline.used.residue);
    if (author != authors.end()) {
      row.author = author->second;
    }
    result.prolines.push_back(row);
  }
  if (found.referencing) {
    takeOffsets(*found.referencing, result);
  }
  takeNotes(found.notes, result);
}
