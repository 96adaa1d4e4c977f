#include "tools/import/import.h"

#include <algorithm>
#include <filesystem>

#include "table/file_io.h"
#include "tools/common/tool.h"
#include "tools/import/gzip_text.h"
#include "tools/import/table_text.h"

namespace {

/// Reads a text that may be gzipped and makes something of it. What a deposition holds may stand in
/// messages: they stay one line.
template <typename Make>
auto fromDeposition(std::string_view text, const std::string& name, Make make) {
  try {
    const bool packed = isGzip(text);
    const std::string unpacked = packed ? unpackGzip(text, name) : "";
    return make(readDeposition(packed ? std::string_view(unpacked) : text, name));
  } catch (const ToolError& error) {
    throw ToolError(error.status(), oneLine(error.what()));
  }
}

Imported importAs(std::string_view text, const std::string& name, const std::string& source,
                  const Choice& settings, Alternatives* alternatives) {
  return fromDeposition(text, name, [&](const Deposition& deposition) {
    ChosenShifts chosen = chooseShifts(deposition, settings, name);
    for (auto* lines : {&chosen.notes, &chosen.warnings}) {
      std::transform(lines->begin(), lines->end(), lines->begin(), oneLine);
    }
    if (alternatives != nullptr) {
      *alternatives = alternativesTo(chosen, deposition);
    }
    Imported imported;
    imported.table = tableText(deposition, chosen, source);
    imported.map = mapText(chosen);
    imported.remarks = std::move(chosen.notes);
    imported.warnings = std::move(chosen.warnings);
    return imported;
  });
}

} // namespace

std::string readInput(const std::string& path) {
  std::error_code ignored;
  std::optional<std::string> text;
  if (!std::filesystem::is_directory(path, ignored)) {
    text = readWholeFile(path == "-" ? "/dev/stdin" : path);
  }
  if (!text) {
    throw ToolError(ToolStatus::inputMissing, path + ": cannot read the file");
  }
  return std::move(*text);
}

Imported importDeposition(std::string_view text, const std::string& name, const Choice& settings) {
  return importAs(text, name, name, settings, nullptr);
}

Imported importDeposition(std::string_view text, const std::string& name, const Choice& settings,
                          Alternatives& alternatives) {
  return importAs(text, name, name, settings, &alternatives);
}

Imported importDepositionFile(const std::string& path, const Choice& settings) {
  const std::string text = readInput(path);
  return importAs(text, path, std::filesystem::path(path).filename().string(), settings, nullptr);
}

std::string depositionContents(std::string_view text, const std::string& name) {
  return fromDeposition(text, name, listContents);
}

std::string depositionContentsOfFile(const std::string& path) {
  const std::string text = readInput(path);
  return depositionContents(text, path);
}
