#include "tools/referencing/correction.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <strings.h>

#include "table/file_io.h"
#include "table/number.h"
#include "tools/common/plain_number.h"
#include "tools/common/tool.h"

namespace referencing {
namespace {

/// Aliphatic carbons beyond CA and CB, each between blanks.
struct SideChain {
  char code;
  const char* name;
  const char* aliphatic;
};
constexpr SideChain sideChains[] = {{'R', "ARG", " CG CD "},      {'Q', "GLN", " CG "},
                                    {'E', "GLU", " CG "},         {'I', "ILE", " CG1 CG2 CD1 CD "},
                                    {'L', "LEU", " CG CD1 CD2 "}, {'K', "LYS", " CG CD CE "},
                                    {'M', "MET", " CG CE "},      {'P', "PRO", " CG CD "},
                                    {'T', "THR", " CG2 "},        {'V', "VAL", " CG1 CG2 "}};

bool isAliphatic(std::string_view residue, std::string_view atom) {
  for (const SideChain& chain : sideChains) {
    const bool same = residue.size() == 1
                          ? residue[0] == chain.code || (chain.code == 'P' && residue[0] == 'p')
                          : residue.size() >= 3 && strncasecmp(residue.data(), chain.name, 3) == 0;
    if (same) {
      const std::string between = " " + std::string(atom) + " ";
      return std::string_view(chain.aliphatic).find(between) != std::string_view::npos;
    }
  }
  return false;
}

/// The corrected shift as text; nothing when it stays.
std::optional<std::string> correctedShift(std::string_view residue, std::string_view atom,
                                          std::string_view shift, const Offsets& offsets) {
  const std::optional<Nucleus> nucleus = nucleusOf(residue, atom);
  const double value = parseDouble(shift);
  if (!nucleus || offsets[static_cast<std::size_t>(*nucleus)] == 0 ||
      !(value < shift::missingFrom)) {
    return {};
  }
  char text[64];
  std::snprintf(text, sizeof text, "%.3f", value - offsets[static_cast<std::size_t>(*nucleus)]);
  return text;
}

/// Puts a cell in the place of another so that it ends where that one did, if blanks allow.
std::string replaceCell(std::string_view line, std::string_view cell, const std::string& text) {
  auto start = static_cast<std::size_t>(cell.data() - line.data());
  const std::size_t end = start + cell.size();
  std::size_t blanks = 0;
  while (blanks + 1 < start && line[start - blanks - 1] == ' ' && line[start - blanks - 2] == ' ') {
    ++blanks;
  }
  const std::size_t wanted = text.size() > cell.size() ? text.size() - cell.size() : 0;
  start -= std::min(blanks, wanted);
  const std::size_t room = end - start;
  const std::string padding(room > text.size() ? room - text.size() : 0, ' ');
  return std::string(line.substr(0, start)) + padding + text + std::string(line.substr(end));
}

std::vector<std::string_view> cellsOf(std::string_view line) {
  std::vector<std::string_view> cells;
  for (std::size_t at = 0; at < line.size();) {
    if (GDB::isSpace(line[at])) {
      ++at;
      continue;
    }
    const std::size_t start = at;
    while (at < line.size() && !GDB::isSpace(line[at])) {
      ++at;
    }
    cells.push_back(line.substr(start, at - start));
  }
  return cells;
}

/// Places of the columns that a correction needs, from a VARS line.
struct Columns {
  std::size_t count = 0, residue = 0, atom = 0, shift = 0;

  static Columns of(const std::vector<std::string_view>& names) {
    const auto place = [&](const char* name) {
      return static_cast<std::size_t>(std::find(names.begin() + 1, names.end(), name) -
                                      names.begin()) -
             1;
    };
    const Columns columns = {names.size() - 1, place("RESNAME"), place("ATOMNAME"), place("SHIFT")};
    return std::max({columns.residue, columns.atom, columns.shift}) < columns.count ? columns
                                                                                    : Columns();
  }
};

bool is(std::string_view word, const char* keyword) {
  return strcasecmp(std::string(word).c_str(), keyword) == 0;
}

} // namespace

std::optional<Nucleus> nucleusOf(std::string_view residue, std::string_view atom) {
  if (atom == "C") {
    return Nucleus::carbonyl;
  }
  if (atom == "HA" || atom == "HA1" || atom == "HA2" || atom == "HA3") {
    return Nucleus::alphaProton;
  }
  if (atom == "CA" || atom == "CB" || isAliphatic(residue, atom)) {
    return Nucleus::carbon;
  }
  return {};
}

Offsets offsetsToApply(const Estimates& estimates) {
  Offsets offsets{};
  for (std::size_t i = 0; i < nucleusCount; ++i) {
    offsets[i] = estimates[i].applies ? estimates[i].offset : 0;
  }
  return offsets;
}

int correct(GDB& table, const Offsets& offsets) {
  int changed = 0;
  for (std::size_t row = 0; row < table.rowCount(); ++row) {
    const auto text = correctedShift(table.cell(row, "RESNAME"), table.cell(row, "ATOMNAME"),
                                     table.cell(row, "SHIFT"), offsets);
    if (text) {
      table.setCell(row, "SHIFT", *text);
      ++changed;
    }
  }
  return changed;
}

std::string correctText(std::string_view text, const Offsets& offsets,
                        const std::vector<std::string>& remarks) {
  std::string corrected;
  for (const std::string& remark : remarks) {
    corrected += "REMARK " + remark + "\n";
  }
  Columns columns;
  for (std::string_view line; takeLine(text, line);) {
    const std::vector<std::string_view> cells = cellsOf(line);
    std::optional<std::string> shift;
    if (!cells.empty() && is(cells[0], "VARS")) {
      columns = Columns::of(cells);
    } else if (columns.count > 0 && cells.size() == columns.count && !is(cells[0], "REMARK") &&
               !is(cells[0], "DATA") && !is(cells[0], "FORMAT")) {
      shift = correctedShift(cells[columns.residue], cells[columns.atom], cells[columns.shift],
                             offsets);
    }
    corrected += shift ? replaceCell(line, cells[columns.shift], *shift) : std::string(line);
    corrected += '\n';
  }
  return corrected;
}

std::vector<std::string> describe(const Estimates& estimates) {
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < nucleusCount; ++i) {
    const Estimate& each = estimates[i];
    const std::string nucleus = describe(static_cast<Nucleus>(i));
    char text[160];
    if (each.points < fewestPoints) {
      std::snprintf(text, sizeof text, "referencing of %s: not known, %d points", nucleus.c_str(),
                    each.points);
    } else {
      std::snprintf(text, sizeof text, "referencing of %s: off by %.3f +/- %.2f ppm, %d points: %s",
                    nucleus.c_str(), each.offset, each.error, each.points,
                    each.applies ? "taken off" : "left as it is");
    }
    lines.emplace_back(text);
  }
  return lines;
}

namespace {

/// Sets the offset of what a key names; false for an unknown key and for a nucleus given twice.
bool setOffset(const std::string& key, double offset, Offsets& offsets,
               std::array<bool, nucleusCount>& given) {
  constexpr std::array<const char*, nucleusCount> keys = {"CA", "HA", "CO"};
  bool known = false;
  for (std::size_t i = 0; i < nucleusCount; ++i) {
    const bool oneOfAll = key == "C" && static_cast<Nucleus>(i) != Nucleus::alphaProton;
    if (key == keys[i] || oneOfAll) {
      if (given[i]) {
        return false;
      }
      known = given[i] = true;
      offsets[i] = offset;
    }
  }
  return known;
}

} // namespace

Offsets parseShiftBy(const std::string& text) {
  Offsets offsets{};
  std::array<bool, nucleusCount> given{};
  const std::vector<std::string> items = GDB::split(",", text);
  bool good = !items.empty();
  for (const std::string& item : items) {
    const std::size_t equals = std::min(item.find('='), item.size());
    const std::optional<double> by =
        plainNumber(std::string_view(item).substr(std::min(equals + 1, item.size())));
    good = good && by && std::fabs(*by) < shift::missingFrom &&
           setOffset(item.substr(0, equals), -*by, offsets, given);
  }
  if (!good) {
    throw ToolError(ToolStatus::usage,
                    "not of the form C=-2.36,HA=0.02 with C, CA, CO, HA: '" + text + "'");
  }
  return offsets;
}

Offsets takenOff(const std::vector<std::string>& notes) {
  Offsets offsets{};
  for (const std::string& note : notes) {
    for (std::size_t i = 0; i < nucleusCount; ++i) {
      const std::string start =
          std::string("referencing of ") + describe(static_cast<Nucleus>(i)) + ": ";
      if (note.compare(0, start.size(), start) != 0) {
        continue;
      }
      const std::string what = note.substr(start.size());
      constexpr std::string_view found = "off by ";
      constexpr std::string_view told = "shifted by ";
      if (what.compare(0, told.size(), told) == 0) {
        offsets[i] = -parseDouble(std::string_view(what).substr(told.size()));
      } else if (what.find(": taken off") != std::string::npos) {
        offsets[i] = parseDouble(std::string_view(what).substr(found.size()));
      }
    }
  }
  return offsets;
}

} // namespace referencing
