#include "tools/import/structure_file.h"

#include <algorithm>

#include "table/file_io.h"
#include "table/number.h"
#include "tools/common/tool.h"
#include "tools/import/foreign_file.h"
#include "tools/import/gzip_text.h"
#include "tools/import/structure_mmcif.h"
#include "tools/import/structure_pdb.h"

namespace {

constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

/// Line ends of one character, be they those of a system that has two or of one that has another.
std::string plainLineEnds(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (!pair) {
      plain += text[i] == '\r' ? '\n' : text[i];
    }
  }
  return plain;
}

/// Whether the first line that is no comment begins a data block.
bool isCif(std::string_view text) {
  for (std::string_view line; takeLine(text, line);) {
    line = trimmed(line);
    if (!line.empty() && line.front() != '#') {
      std::string start(line.substr(0, 5));
      std::transform(start.begin(), start.end(), start.begin(),
                     [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
      return start == "data_";
    }
  }
  return false;
}

void readText(std::string_view text, const std::string& name, ModelBuilder& builder,
              std::vector<std::string>& warnings) {
  if (text.substr(0, byteOrderMark.size()) == byteOrderMark) {
    text.remove_prefix(byteOrderMark.size());
  }
  if (trimmed(text).empty()) {
    throw ToolError(ToolStatus::badData, name + ": the file is empty");
  }
  if (isCif(text)) {
    readMmcifAtoms(text, name, builder, warnings);
  } else if (!readPdbAtoms(text, name, builder, warnings)) {
    const std::string_view foreign = foreignKind(text);
    throw ToolError(ToolStatus::badData,
                    name + (foreign.empty() ? ": not a PDB or mmCIF file: no atoms"
                                            : ": this is " + std::string(foreign)));
  }
}

} // namespace

Structure readStructure(std::string_view bytes, const std::string& name) {
  std::string unpacked;
  std::string_view text = bytes;
  if (isGzip(bytes)) {
    unpacked = unpackGzip(bytes, name);
    text = unpacked;
  }
  if (text.find('\r') != std::string_view::npos) {
    unpacked = plainLineEnds(text);
    text = unpacked;
  }
  Structure structure;
  ModelBuilder builder;
  readText(text, name, builder, structure.warnings);
  structure.models = builder.finish();
  if (std::all_of(structure.models.begin(), structure.models.end(),
                  [](const StructureModel& model) { return model.chains.empty(); })) {
    throw ToolError(ToolStatus::badData, name + ": no protein atoms found");
  }
  return structure;
}
