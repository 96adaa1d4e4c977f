#include <algorithm>

#include "fuzz/support.h"
#include "tools/common/tool.h"
#include "tools/import/chain_alignment.h"
#include "tools/import/structure_file.h"
#include "tools/import/structure_text.h"

namespace {

using fuzzing::require;

constexpr char fileName[] = "structure";
constexpr std::size_t widestLine = 80;

/// A message is one line, of the file where it is about the file.
void requireOneLine(const std::string& message) {
  require(!message.empty() && message.compare(0, sizeof fileName - 1, fileName) == 0,
          "a message names the file");
}

void requireModels(const std::vector<StructureModel>& models) {
  for (const StructureModel& model : models) {
    require(!model.id.empty(), "a model has a name");
    for (const ModelChain& chain : model.chains) {
      require(!chain.residues.empty(), "a chain has residues");
      for (const ModelResidue& residue : chain.residues) {
        require(residue.atom("CA") != nullptr, "a residue has its alpha carbon");
      }
    }
  }
}

/// The number in columns 23 to 26 of a line that has them.
int numberIn(const std::string& line) {
  return std::stoi(line.substr(22, 4));
}

void requirePdb(const std::string& text, std::size_t residues) {
  int last = 0;
  for (const std::string& line : fuzzing::linesOf(text)) {
    if (line.compare(0, 4, "ATOM") != 0) {
      continue;
    }
    require(line.size() <= widestLine, "an atom fits its columns");
    const int number = numberIn(line);
    require(number >= last && number <= static_cast<int>(residues), "positions rise");
    last = number;
  }
}

void requireFit(const FittedStructure& fitted, const std::string& letters) {
  requirePdb(fitted.pdb, letters.size());
  require(fitted.agreements <= fitted.residues, "no more residues agree than there are");
  for (const ProlineBond& bond : fitted.prolines) {
    require(bond.cis <= bond.models, "a bond is cis in no more models than show it");
    require(!bond.broken || bond.models == 0, "no angle is measured where there is no bond");
  }
  for (const std::string& note : structureNotes(fitted)) {
    require(!note.empty(), "a note says something");
  }
}

} // namespace

/// Any bytes as a structure: a chain fitted to its own sequence and to another, or one line that
/// says why not.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(fuzzing::textOf(data, size));
  try {
    const Structure structure = readStructure(bytes, fileName);
    requireModels(structure.models);
    std::for_each(structure.warnings.begin(), structure.warnings.end(), requireOneLine);
    for (const StructureModel& model : structure.models) {
      if (!model.chains.empty()) {
        const std::string letters = lettersOf(model.chains.front());
        requireFit(fitStructure(structure.models, letters, {"", model.id}, fileName), letters);
        break;
      }
    }
    requireFit(fitStructure(structure.models, "SPGcHAPKD", {}, fileName), "SPGcHAPKD");
  } catch (const ToolError& error) {
    requireOneLine(error.what());
  }
  return 0;
}
