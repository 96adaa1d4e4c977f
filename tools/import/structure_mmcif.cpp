#include "tools/import/structure_mmcif.h"

#include <algorithm>
#include <gemmi/cif.hpp>
#include <optional>

#include "tools/common/tool.h"
#include "tools/import/coordinate_number.h"

namespace cif = gemmi::cif;

namespace {

/// The table of atoms, with the columns that are of use here.
class AtomTable {
 public:
  explicit AtomTable(const cif::Loop& loop) : loop_(loop) {
    const auto find = [&loop](const char* tag) {
      return loop.find_tag_lc(std::string("_atom_site.") + tag);
    };
    group_ = find("group_pdb");
    symbol_ = find("type_symbol");
    name_ = {find("auth_atom_id"), find("label_atom_id")};
    residue_ = {find("auth_comp_id"), find("label_comp_id")};
    chain_ = {find("auth_asym_id"), find("label_asym_id")};
    number_ = {find("auth_seq_id"), find("label_seq_id")};
    insertion_ = find("pdbx_pdb_ins_code");
    location_ = find("label_alt_id");
    model_ = find("pdbx_pdb_model_num");
    b_ = find("b_iso_or_equiv");
    position_ = {find("cartn_x"), find("cartn_y"), find("cartn_z")};
  }

  std::size_t rows() const { return loop_.length(); }
  /// Whether an atom can be told from these columns.
  bool suffices() const {
    return position_[0] >= 0 && position_[1] >= 0 && position_[2] >= 0 &&
           (name_[0] >= 0 || name_[1] >= 0) && (residue_[0] >= 0 || residue_[1] >= 0) &&
           (number_[0] >= 0 || number_[1] >= 0);
  }
  bool isHet(std::size_t row) const { return value(row, group_) == "HETATM"; }
  bool isWater(std::size_t row) const { return isWaterName(either(row, residue_)); }
  std::string model(std::size_t row) const {
    const std::string id = value(row, model_);
    return id.empty() ? "1" : id;
  }
  /// Whether a row has coordinates at all, be they good or not.
  bool placed(std::size_t row) const {
    return !value(row, position_[0]).empty() && !value(row, position_[1]).empty() &&
           !value(row, position_[2]).empty();
  }

  /// The atom of a row; nothing when its number or coordinates are none.
  std::optional<AtomRecord> atom(std::size_t row) const {
    AtomRecord record;
    record.number = either(row, number_) + value(row, insertion_);
    const auto x = number(row, position_[0]);
    const auto y = number(row, position_[1]);
    const auto z = number(row, position_[2]);
    if (!isResidueNumber(record.number) || !x || !y || !z) {
      return std::nullopt;
    }
    record.chain = either(row, chain_);
    record.residue = either(row, residue_);
    record.location = value(row, location_);
    record.atom.name = gemmi::to_upper(either(row, name_));
    record.atom.element = gemmi::to_upper(value(row, symbol_));
    if (record.atom.element.empty()) {
      record.atom.element = elementNamed(record.atom.name);
    }
    record.atom.x = *x;
    record.atom.y = *y;
    record.atom.z = *z;
    record.atom.bFactor = number(row, b_).value_or(0);
    return record;
  }

 private:
  /// Without quotes; empty for a missing column, "?" and ".".
  std::string value(std::size_t row, int column) const {
    return column < 0 ? "" : cif::as_string(loop_.val(row, static_cast<std::size_t>(column)));
  }

  std::string either(std::size_t row, const std::array<int, 2>& columns) const {
    std::string first = value(row, columns[0]);
    return first.empty() ? value(row, columns[1]) : first;
  }

  /// A number, its standard uncertainty in parentheses left out.
  std::optional<double> number(std::size_t row, int column) const {
    const std::string text = value(row, column);
    const std::size_t open = text.find('(');
    const bool closed = open != std::string::npos && text.back() == ')';
    return wholeNumber(std::string_view(text).substr(0, closed ? open : std::string::npos));
  }

  const cif::Loop& loop_;
  int group_ = -1, symbol_ = -1, insertion_ = -1, location_ = -1, model_ = -1, b_ = -1;
  std::array<int, 2> name_{}, residue_{}, chain_{}, number_{};
  std::array<int, 3> position_{};
};

bool isForeign(char c) {
  return c < ' ' ? c != '\n' && c != '\t' : c == '\x7f';
}

/// The format is printable ASCII; names of people and remarks often are not.
std::string printable(std::string_view text) {
  std::string plain(text);
  std::replace_if(plain.begin(), plain.end(), isForeign, 'x');
  return plain;
}

/// What is wrong with a text by the parser's words; empty when it was read. The handler does no
/// more than that: with objects to destroy, clang 14 for WebAssembly compiles it in one of two
/// ways.
std::string parseInto(cif::Document& document, std::string_view text, const std::string& file) {
  std::string complaint;
  try {
    tao::pegtl::memory_input<> input(text.data(), text.size(), file);
    cif::parse_input(document, input);
  } catch (const std::exception& error) {
    complaint = error.what();
  }
  return complaint;
}

cif::Document parse(std::string_view text, const std::string& file) {
  const bool foreign = std::any_of(text.begin(), text.end(), isForeign);
  const std::string plain = foreign ? printable(text) : "";
  cif::Document document;
  const std::string complaint = parseInto(document, foreign ? plain : text, file);
  if (!complaint.empty()) {
    const std::string what = complaint.substr(0, complaint.find('\n'));
    const bool named = what.compare(0, file.size() + 1, file + ":") == 0;
    throw ToolError(ToolStatus::badData, named ? what : file + ": " + what);
  }
  return document;
}

/// The loops of atoms, one a block at most.
std::vector<const cif::Loop*> atomLoops(cif::Document& document) {
  std::vector<const cif::Loop*> loops;
  for (cif::Block& block : document.blocks) {
    const cif::Loop* const loop = block.find_loop("_atom_site.Cartn_x").get_loop();
    if (loop != nullptr && loop->length() > 0) {
      loops.push_back(loop);
    }
  }
  return loops;
}

std::size_t addAtoms(const AtomTable& table, const std::string& file, ModelBuilder& builder) {
  std::size_t left = 0;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const std::optional<AtomRecord> record = table.atom(row);
    if (table.isWater(row)) {
      continue; // which often has no number
    }
    if (record) {
      builder.selectModel(table.model(row));
      builder.add(*record);
    } else if (table.isHet(row) || !table.placed(row)) {
      ++left;
    } else {
      throw ToolError(ToolStatus::badData, file + ": no residue number or no coordinates in row " +
                                               std::to_string(row + 1) +
                                               " of the atoms (_atom_site)");
    }
  }
  return left;
}

} // namespace

void readMmcifAtoms(std::string_view text, const std::string& file, ModelBuilder& builder,
                    std::vector<std::string>& warnings) {
  cif::Document document = parse(text, file);
  const std::vector<const cif::Loop*> loops = atomLoops(document);
  if (loops.empty()) {
    throw ToolError(ToolStatus::badData, file + ": no atoms in this file (no _atom_site loop)");
  }
  const AtomTable table(*loops[0]);
  if (!table.suffices()) {
    throw ToolError(ToolStatus::badData,
                    file + ": the _atom_site loop lacks atom names, residues or coordinates");
  }
  const std::size_t left = addAtoms(table, file, builder);
  if (left > 0) {
    warnings.push_back(file + ": " + std::to_string(left) + (left == 1 ? " atom" : " atoms") +
                       " without residue number or coordinates left out");
  }
  if (loops.size() > 1) {
    warnings.push_back(file + ": " + std::to_string(loops.size() - 1) +
                       (loops.size() == 2 ? " more data block holds" : " more data blocks hold") +
                       " atoms; the first was read");
  }
}
