#include "tools/import/table_text.h"

#include <cstdio>

namespace {

constexpr std::size_t lettersPerLine = 50;
constexpr std::size_t lettersPerBlock = 10;

std::string sequenceLines(const std::string& letters) {
  std::string text;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    if (i % lettersPerLine == 0) {
      text += i == 0 ? "DATA SEQUENCE " : "\nDATA SEQUENCE ";
    } else if (i % lettersPerBlock == 0) {
      text += ' ';
    }
    text += letters[i];
  }
  return text + "\n";
}

std::string row(std::size_t residue, char letter, const char* atom, double value) {
  char line[128];
  std::snprintf(line, sizeof line, "%4zu %c %4s  %8.3f\n", residue, letter, atom, value);
  return line;
}

} // namespace

std::string oneLine(std::string text) {
  for (char& c : text) {
    c = static_cast<unsigned char>(c) < ' ' || c == '\x7f' ? ' ' : c;
  }
  return text;
}

std::string tableText(const Deposition& deposition, const ChosenShifts& chosen,
                      const std::string& source) {
  std::string text = "REMARK Chemical shifts of " + deposition.kind +
                     (deposition.id.empty() ? "" : " entry " + oneLine(deposition.id)) + ", from " +
                     oneLine(source) + "\n";
  for (const std::string& note : chosen.notes) {
    text += "REMARK " + oneLine(note) + "\n";
  }
  for (const std::string& warning : chosen.warnings) {
    text += "REMARK Warning: " + oneLine(warning) + "\n";
  }
  text += "\n" + sequenceLines(chosen.letters) +
          "\nVARS   RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s  %8.3f\n\n";
  for (std::size_t i = 0; i < chosen.values.size(); ++i) {
    for (std::size_t atom = 0; atom < tableAtoms.size(); ++atom) {
      if (present(chosen.values[i][atom])) {
        text += row(i + 1, chosen.letters[i], tableAtoms[atom], chosen.values[i][atom]);
      }
    }
  }
  return text;
}

std::string mapText(const ChosenShifts& chosen) {
  std::string text = "resid\tauthor\tresname\n";
  for (std::size_t i = 0; i < chosen.letters.size(); ++i) {
    text +=
        std::to_string(i + 1) + "\t" + oneLine(chosen.authors[i]) + "\t" + chosen.letters[i] + "\n";
  }
  return text;
}
