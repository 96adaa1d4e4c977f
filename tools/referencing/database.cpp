#include "tools/referencing/database.h"

#include <cstdio>
#include <filesystem>

#include "tools/common/tool.h"

namespace referencing {

Database::Database(const std::string& tabFolder, CITRANS::Options options)
    : model_(loadModel(tabFolder)) {
  options["tabDir"] = tabFolder;
  run_.keepSilent();
  run_.setArgs(options);
  for (const std::string& name : {run_.randName, run_.adjName, run_.prevName, run_.nextName,
                                  run_.limitsName, run_.proCSName, run_.proSeqName}) {
    if (!std::filesystem::is_regular_file(name)) {
      throw ToolError(ToolStatus::inputMissing, name + ": cannot read the file");
    }
  }
  run_.loadDatabase();
}

CITRANS Database::run(const GDB& input) const {
  CITRANS made = run_;
  made.inputTable = input;
  return made;
}

Estimates Database::estimate(const GDB& input) const {
  CITRANS made = run(input);
  try {
    made.getResInfo();
  } catch (const RunEnd& refusal) {
    throw ToolError(ToolStatus::badData, GDB::simplifyWhiteSpace(refusal.message()));
  }
  return estimate(made);
}

Corrected rereference(const Database& database, const std::string& text) {
  GDB table;
  table.loadText(text);
  const Estimates estimates = database.estimate(table);
  Corrected corrected;
  corrected.notes = describe(estimates);
  corrected.text = correctText(text, offsetsToApply(estimates), corrected.notes);
  return corrected;
}

Corrected shiftBy(const Offsets& offsets, const std::string& text) {
  Corrected corrected;
  for (std::size_t i = 0; i < nucleusCount; ++i) {
    if (offsets[i] != 0) {
      char note[96];
      std::snprintf(note, sizeof note, "referencing of %s: shifted by %+.3f ppm as told",
                    describe(static_cast<Nucleus>(i)), -offsets[i]);
      corrected.notes.emplace_back(note);
    }
  }
  corrected.text = correctText(text, offsets, corrected.notes);
  return corrected;
}

} // namespace referencing
