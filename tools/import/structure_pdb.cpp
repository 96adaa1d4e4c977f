#include "tools/import/structure_pdb.h"

#include <optional>

#include "table/file_io.h"
#include "table/number.h"
#include "tools/common/tool.h"
#include "tools/import/amino_acids.h"
#include "tools/import/coordinate_number.h"

namespace {

/// Up to the end of z, without which a line is no atom.
constexpr std::size_t shortestAtomLine = 54;

/// Columns of a line, counted from 1 as in the format's description; what the line lacks is empty.
std::string_view columns(std::string_view line, std::size_t first, std::size_t last) {
  return first > line.size() ? std::string_view()
                             : trimmed(line.substr(first - 1, last - first + 1));
}

char column(std::string_view line, std::size_t number) {
  return number > line.size() ? ' ' : line[number - 1];
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isCapital(char c) {
  return c >= 'A' && c <= 'Z';
}

/// Whether the line is a record of that name, in capitals or not. A number may follow at once.
bool isRecord(std::string_view line, std::string_view name) {
  const char after = column(line, name.size() + 1);
  if (line.size() < name.size() || (after != ' ' && after != '\t' && !isDigit(after))) {
    return false;
  }
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = line[i] >= 'a' && line[i] <= 'z' ? static_cast<char>(line[i] - 32) : line[i];
    if (c != name[i]) {
      return false;
    }
  }
  return true;
}

/// Residue numbers from 10000 on, of which four columns hold no more: "A000" is 10000.
std::string plainResidueNumber(std::string_view text) {
  if (text.size() != 4 || !isCapital(text[0])) {
    return std::string(text);
  }
  constexpr int base = 36;
  int number = 0;
  for (const char c : text) {
    if (!isDigit(c) && !isCapital(c)) {
      return std::string(text);
    }
    number = number * base + (isDigit(c) ? c - '0' : c - 'A' + 10);
  }
  constexpr int firstCode = 10 * base * base * base;
  return std::to_string(number - firstCode + 10000);
}

/// The element of columns 77 and 78 where they name one of proteins, else by the atom's name.
std::string elementOf(std::string_view given, std::string_view name) {
  if (given == "SE" ||
      (given.size() == 1 && std::string_view("HCNOSPD").find(given) != std::string_view::npos)) {
    return std::string(given);
  }
  return elementNamed(name);
}

/// Residue name in columns 18 to 21 and chain in 22, or 18 to 20 and 21 to 22.
void readNames(std::string_view line, AtomRecord& record) {
  const std::string_view three = columns(line, 18, 20);
  const std::string_view four = columns(line, 18, 21);
  const bool wide =
      column(line, 21) != ' ' &&
      (!aminoAcidNamed(four).empty() || (column(line, 22) == ' ' && aminoAcidNamed(three).empty()));
  record.residue = wide ? four : three;
  record.chain = wide ? columns(line, 22, 22) : columns(line, 21, 22);
}

bool setPosition(std::string_view x, std::string_view y, std::string_view z, ModelAtom& atom) {
  const std::optional<double> position[] = {wholeNumber(x), wholeNumber(y), wholeNumber(z)};
  for (const auto& one : position) {
    if (!one) {
      return false;
    }
  }
  atom.x = *position[0];
  atom.y = *position[1];
  atom.z = *position[2];
  return true;
}

/// Residue number in columns 23 to 26 with an insertion code, or the fifth digit, in 27.
std::string numberOf(std::string_view line) {
  return plainResidueNumber(columns(line, 23, 26)) + std::string(columns(line, 27, 27));
}

/// An atom line by its columns; nothing when they hold no residue number or coordinates.
std::optional<AtomRecord> readColumns(std::string_view line) {
  AtomRecord record;
  record.number = numberOf(line);
  if (!isResidueNumber(record.number) || !setPosition(columns(line, 31, 38), columns(line, 39, 46),
                                                      columns(line, 47, 54), record.atom)) {
    return std::nullopt;
  }
  record.atom.name = capitals(columns(line, 13, 16));
  readNames(line, record);
  record.location = columns(line, 17, 17);
  record.atom.bFactor = wholeNumber(columns(line, 61, 66)).value_or(0);
  const bool numbered = isDigit(column(line, 80));
  if (!numbered) {
    record.segment = columns(line, 73, 76);
  }
  record.atom.element = elementOf(numbered ? "" : columns(line, 77, 78), record.atom.name);
  return record.atom.name.empty() ? std::nullopt : std::optional<AtomRecord>(record);
}

std::vector<std::string_view> wordsOf(std::string_view line) {
  std::vector<std::string_view> words;
  for (line = trimmed(line); !line.empty(); line = trimmed(line)) {
    const std::size_t end = std::min(line.find_first_of(" \t\r"), line.size());
    words.push_back(line.substr(0, end));
    line.remove_prefix(end);
  }
  return words;
}

/// Chain and number of a residue, which may be one word; false when the words are neither.
bool readPlace(const std::vector<std::string_view>& words, std::size_t& at, AtomRecord& record) {
  std::string_view word = words[at++];
  if (!isResidueNumber(word)) {
    record.chain = word.substr(0, 1);
    word = word.size() == 1 && at < words.size() ? words[at++] : word.substr(1);
  }
  record.number = word;
  return isResidueNumber(word);
}

/// An atom line whose columns are moved, as by a serial number of six digits, by its words: record
/// and serial number, which may be one word, atom, residue, chain, which may be missing or joined
/// with the number, number, coordinates.
std::optional<AtomRecord> readWords(std::string_view line) {
  const std::vector<std::string_view> words = wordsOf(line);
  std::size_t at = words.empty() || (words[0].size() > 4 && isDigit(words[0].back())) ? 1 : 2;
  if (at + 2 >= words.size()) {
    return std::nullopt;
  }
  AtomRecord record;
  record.atom.name = capitals(words[at]);
  record.residue = words[at + 1];
  record.atom.element = elementOf("", record.atom.name);
  at += 2;
  if (!readPlace(words, at, record) || at + 2 >= words.size() ||
      words[at].find('.') == std::string_view::npos ||
      !setPosition(words[at], words[at + 1], words[at + 2], record.atom)) {
    return std::nullopt;
  }
  return record;
}

/// The lines of a text that are no atoms but part them.
void readMark(std::string_view line, ModelBuilder& builder) {
  if (isRecord(line, "MODEL")) {
    const std::vector<std::string_view> words = wordsOf(line.substr(5));
    const bool given = !words.empty() && wholeNumber(words[0]).has_value();
    builder.startModel(given ? std::to_string(parseInt(words[0])) : "");
  } else if (isRecord(line, "ENDMDL") || trimmed(line) == "END") {
    builder.endModel();
  } else if (isRecord(line, "TER")) {
    builder.endChain();
  }
}

/// Whether a program that knew no place for an atom wrote its sign for that.
bool isUnplaced(const ModelAtom& atom) {
  constexpr double noPlace = 9999;
  return atom.x >= noPlace && atom.y >= noPlace && atom.z >= noPlace;
}

/// What the lines of a text that cannot be read add up to.
struct LeftOut {
  std::size_t count = 0;
  std::size_t first = 0; ///< line
};

void readAtomLine(std::string_view line, bool last, const std::string& place, std::size_t number,
                  ModelBuilder& builder, LeftOut& left) {
  const bool cut = last && line.size() < shortestAtomLine;
  std::optional<AtomRecord> record;
  if (!cut) {
    record = readColumns(line);
    if (!record) {
      record = readWords(line);
    }
  }
  if (record && !isUnplaced(record->atom)) {
    builder.add(*record);
  } else if (record || isRecord(line, "HETATM") || isWaterName(columns(line, 18, 21))) {
    left.first = left.count++ == 0 ? number : left.first;
  } else {
    throw ToolError(ToolStatus::badData,
                    atLine(place, number,
                           cut ? "the file is cut short in this line"
                               : "no residue number or no coordinates in this ATOM line"));
  }
}

} // namespace

bool readPdbAtoms(std::string_view text, const std::string& file, ModelBuilder& builder,
                  std::vector<std::string>& warnings) {
  const bool whole = text.empty() || text.back() == '\n';
  bool any = false;
  LeftOut left;
  std::size_t number = 0;
  for (std::string_view line; takeLine(text, line);) {
    ++number;
    if (isRecord(line, "ATOM") || isRecord(line, "HETATM")) {
      any = true;
      readAtomLine(line, text.empty() && !whole, file, number, builder, left);
    } else {
      readMark(line, builder);
    }
  }
  if (left.count > 0) {
    warnings.push_back(
        atLine(file, left.first,
               std::to_string(left.count) + (left.count == 1 ? " atom line" : " atom lines") +
                   " without residue number or coordinates left out, the first this one"));
  }
  return any;
}
