#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tools/import/amino_acids.h"
#include "tools/import/star_document.h"
#include "tools/import/table_atoms.h"

/// One residue of a polymer, in sequence order.
struct Residue {
  std::string index;  ///< number in the deposition's own count, as text
  std::string author; ///< the authors' number, as text; may be empty
  std::string name;   ///< three-letter name in capitals
};

/// One kind of molecule.
struct Polymer {
  std::string id;   ///< entity ID, frame name or chain code
  std::string name; ///< for people
  std::vector<Residue> residues;
  /// By ID of a copy in the assembly, where the deposition gives each copy its own list.
  std::map<std::string, std::vector<Residue>> copies;
  bool allDisulfide = false;    ///< the deposition says that all its cysteines are oxidised
  bool saysThiols = false;      ///< it says anything of the state of this one's cysteines
  std::set<std::string> bonded; ///< indices of the residues that are said to be oxidised

  std::size_t place = 0; ///< among the polymers
  bool guessed = false;  ///< its residues are those that the shifts name

  /// Whether most residues are amino acids.
  bool isProtein() const;
};

/// One assigned shift of an atom that the program reads.
struct Shift {
  double value = 0;           ///< ppm; not-a-number for a value that is no number
  std::uint8_t atom = 0;      ///< into `tableAtoms`, or `alphaAtom`, `alphaOneAtom`
  std::uint8_t ambiguity = 0; ///< BMRB ambiguity code, 0 when not given
};

/// Consecutive shifts of one residue in a list. The texts are parts of the file.
struct ShiftRun {
  std::string_view polymer; ///< id of its polymer; may be empty
  std::string_view copy;    ///< which copy of the polymer in the assembly; may be empty
  std::string_view index;   ///< residue number as the list counts
  std::string_view author;  ///< residue number of the authors; may be empty
  std::string_view name;    ///< residue name as the list writes it
  char letter = 'X';        ///< of its name
  std::uint32_t first = 0;  ///< of its shifts in the list
  std::uint32_t count = 0;  ///< of its shifts in the list
  std::uint32_t rows = 0;   ///< shifts of atoms that the program does not read included

  /// Whether it belongs to one residue for certain. Working assignments, which NEF may hold, have
  /// residue numbers such as "108?", "@12" or "45-1".
  bool isFirm() const;
};

/// One row of a loop of shifts, as the readers of the three kinds find it.
struct ListedShift {
  std::string_view polymer, copy, index, author, residue, atom, value, ambiguity;
};

/// One list of assigned shifts.
struct ShiftList {
  std::string id;
  std::string name;
  std::string conditions; ///< "298 K, pH 6.5", as far as the deposition says
  std::size_t line = 0;   ///< of its loop in the file
  std::size_t rows = 0;
  bool namedBySequence = false; ///< its residues have numbers only
  std::deque<ShiftRun> runs;
  std::deque<Shift> shifts; ///< of all runs

  void add(const ListedShift& listed);
};

/// What a deposition holds of interest here. Its shifts point into the text that it was read from,
/// which must outlive it.
struct Deposition {
  Deposition() = default;
  Deposition(Deposition&&) = default;
  Deposition& operator=(Deposition&&) = default;
  Deposition(const Deposition&) = delete; // shifts point to the names of polymers
  Deposition& operator=(const Deposition&) = delete;
  ~Deposition() = default;

  std::string kind; ///< "NMR-STAR 3", "NMR-STAR 2.1" or "NEF"
  std::string id;   ///< accession code, or empty
  std::deque<Polymer> polymers;
  /// The polymer of each copy in the assembly, where the deposition says it; shifts point here too.
  std::map<std::string, std::string, std::less<>> copyEntities;
  std::vector<ShiftList> lists;
  bool deuterated = false;           ///< a sample is said to hold deuterated protein
  std::size_t otherBlocks = 0;       ///< data blocks of the file that hold shifts too
  std::vector<std::string> problems; ///< of the file, none of which touches what was read

  /// The polymer of that id, added when there is none. Knows those that it has added itself.
  Polymer& polymer(const std::string& polymerId);
  /// The polymer of that id that has residues; null when there is none.
  const Polymer* known(std::string_view polymerId) const;
  /// Takes a list that has rows; others are dropped.
  void add(ShiftList list);

 private:
  std::map<std::string, std::size_t> places_; ///< of the polymers that were added by id
};

/// Recognises the kind of a file from its tags and gathers the molecules and shifts of its first
/// data block that holds shifts.
///
/// \param file  the name for messages
/// Throws ToolError(badData), with line and column where there is one, when the text is no such
/// file, when a loop that is needed cannot be read, and when there are no shifts.
Deposition readDeposition(std::string_view text, const std::string& file);

/// The readers of the three kinds.
Deposition readNmrStar3(const StarDocument& document, const StarBlock& frames);
Deposition readNmrStar21(const StarDocument& document, const StarBlock& frames);
Deposition readNef(const StarDocument& document, const StarBlock& frames);

/// What NMR-STAR files say in words.
namespace wording {
/// Whether a text on thiols says that all cysteines are oxidised.
bool allOxidised(const std::string& thiolState);
/// Whether it says anything of them.
bool saysThiols(const std::string& thiolState);
/// Whether a labelling text names deuterium of the protein, as "[U-2H; U-15N]" does.
bool namesDeuterium(std::string_view labelling);
} // namespace wording

/// Notes deuterated proteins among the components of a sample. Where these point to molecules, only
/// those count: heavy water and buffers are deuterated in many samples whose protein is not.
void noteLabelling(const StarDocument& document, const StarLoop& loop, const char* labellingTag,
                   const char* pointerTag, Deposition& deposition);

/// Temperature and pH in a loop of sample conditions: "298 K, pH 6.5".
std::string readConditions(const StarDocument& document, const StarLoop& loop, const char* typeTag,
                           const char* valueTag, const char* unitTag);
