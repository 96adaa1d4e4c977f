#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// One atom of a structure file, Angstrom.
struct ModelAtom {
  std::string name;
  std::string element; ///< in capitals; may be empty
  double x = 0;
  double y = 0;
  double z = 0;
  double bFactor = 0; ///< square Angstrom; 0 when the file gives none
};

/// One residue with the first of its alternate locations.
struct ModelResidue {
  std::string number; ///< the author's, with insertion code
  std::string name;   ///< the amino acid's three letters, or another residue's name as it stands
  std::vector<ModelAtom> atoms;

  /// The atom of that name, or null.
  const ModelAtom* atom(const std::string& wanted) const;
};

/// The C-N distance up to which two residues are taken for bonded, Angstrom; a peptide bond has
/// 1.33, and one in a strained model hardly more than 1.5.
constexpr double longestPeptideBond = 2.0;

enum class Bond { yes, no, unknown };
/// Whether a residue is bonded to the next; unknown when C or N is missing.
Bond bondBetween(const ModelResidue& before, const ModelResidue& next);

struct ModelChain {
  std::string id;                     ///< may be empty
  std::vector<ModelResidue> residues; ///< amino acids only
};

struct StructureModel {
  std::string id;
  std::vector<ModelChain> chains;
};

/// One atom as a file lists it.
struct AtomRecord {
  std::string chain;    ///< empty when the file gives none
  std::string segment;  ///< empty likewise; counts where there is no chain
  std::string number;   ///< of the residue, with insertion code
  std::string residue;  ///< its name as the file has it
  std::string location; ///< alternate location; empty for the only one
  ModelAtom atom;
};

/// The element of an atom of a protein by its name, of which old files put a digit first: its
/// first other character, as a capital; empty for a name without one.
std::string elementNamed(std::string_view atomName);

/// Whether it is a name of water.
bool isWaterName(std::string_view residueName);

/// Puts the atoms of a file together to models, chains and residues, in the order of the file.
///
/// Atoms of one chain name are one chain however they are scattered, until a residue that is
/// complete comes again: then they are another copy of the chain. Where a file names no chains, a
/// chain also ends at an end mark and where numbers go back, unless a bond goes on. Of alternate
/// locations, of atoms and of whole residues, the first stays. Water is left out.
class ModelBuilder {
 public:
  /// Begins a model; an empty or known id becomes its place in the file.
  void startModel(const std::string& id);
  /// Goes on with the model of that id, or begins it.
  void selectModel(const std::string& id);
  /// The next atom, if there is one, begins a model of its own.
  void endModel() { open_ = false; }
  /// An end mark after a chain.
  void endChain();
  void add(const AtomRecord& record);

  /// The models with what is left of chains when residues that are no amino acids are dropped.
  /// Copies of a chain are told apart by their ids: "1", "2" without a name, else "A", "A-2".
  std::vector<StructureModel> finish();

 private:
  struct OpenResidue {
    ModelResidue residue;
    std::string location;                         ///< of its first atom
    std::map<std::string, std::string> locations; ///< of each atom that is taken, by name
  };
  struct OpenChain {
    std::string name;
    std::vector<OpenResidue> residues;
    std::map<std::string, std::size_t> known; ///< index of a residue by number and name
    bool ended = false;
  };
  struct OpenModel {
    std::string id;
    std::vector<OpenChain> chains;
    std::map<std::string, std::size_t> latest; ///< index of the last copy by chain name
  };

  OpenChain& chainFor(const AtomRecord& record);
  static bool beginsCopy(const OpenChain& chain, const AtomRecord& record);

  std::vector<OpenModel> models_;
  std::size_t current_ = 0;
  bool open_ = false;
};
