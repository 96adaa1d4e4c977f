#include "tools/report/viewer.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <set>

#include "table/file_io.h"
#include "tools/common/tool.h"
#include "tools/report/style.h"
#include "tools/report/text.h"

namespace {

/// The groups of prolines that get a colour of their own.
struct Group {
  const char* name;
  const char* colour;
  Verdict::Call call;
  bool settled;
};

constexpr Group groups[] = {
    {"citrans_cis", "cis", Verdict::Call::cis, true},
    {"citrans_probably_cis", "cis-open", Verdict::Call::cis, false},
    {"citrans_trans", "trans", Verdict::Call::trans, true},
    {"citrans_probably_trans", "trans-open", Verdict::Call::trans, false},
    {"citrans_undecided", "undecided", Verdict::Call::undecided, false},
    {"citrans_no_call", "none", Verdict::Call::none, false},
};

bool isLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z');
}

/// A residue number as the viewers take it: digits, an insertion code, a sign before. Anything else
/// would end the command.
bool isViewerNumber(const std::string& number) {
  const std::size_t start = number.empty() || number[0] != '-' ? 0 : 1;
  std::size_t digits = start;
  while (digits < number.size() && number[digits] >= '0' && number[digits] <= '9') {
    ++digits;
  }
  const bool letter = digits + 1 == number.size() && isLetterOrDigit(number[digits]);
  return digits > start && (digits == number.size() || letter);
}

std::string structureNumber(const Report& report, const ViewerSettings& settings, int residue) {
  if (settings.numbers.empty()) {
    return report.inputs.number(residue);
  }
  const auto found = settings.numbers.find(residue);
  return found == settings.numbers.end() ? "" : found->second;
}

/// The numbers of a group's prolines between separators; `minus` stands for a sign.
std::string membersOf(const Report& report, const ViewerSettings& settings, const Group& group,
                      const char* separator, const char* minus) {
  std::string members;
  for (const ProlineReport& proline : report.prolines) {
    const std::string number = structureNumber(report, settings, proline.residue);
    if (proline.verdict.call == group.call && proline.verdict.settled == group.settled &&
        isViewerNumber(number)) {
      members += (members.empty() ? "" : separator) +
                 (number[0] == '-' ? minus + number.substr(1) : number);
    }
  }
  return members;
}

std::vector<std::string> leftOut(const Report& report, const ViewerSettings& settings) {
  std::vector<std::string> labels;
  for (const ProlineReport& proline : report.prolines) {
    if (!isViewerNumber(structureNumber(report, settings, proline.residue))) {
      labels.push_back(report.inputs.residueLabel(proline.residue));
    }
  }
  if (labels.empty()) {
    return {};
  }
  return {"left out of the files for viewers, which need the number of each residue in the "
          "structure: " +
          joined(labels)};
}

/// "[0.761, 0.314, 0.039]" for "#c2500a".
std::string pymolColour(const std::string& hex) {
  std::string text;
  for (const std::size_t at : {1U, 3U, 5U}) {
    const long part = std::strtol(hex.substr(at, 2).c_str(), nullptr, 16);
    text += (text.empty() ? "[" : ", ") + plainDecimal(static_cast<double>(part) / 255, 3);
  }
  return text + "]";
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos
             ? std::string_view()
             : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool startsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

/// Columns of a PDB line, counted from 1; what lies past its end is blank.
std::string_view columns(std::string_view line, std::size_t first, std::size_t last) {
  return line.size() < first ? std::string_view()
                             : trimmed(line.substr(first - 1, last - first + 1));
}

/// The value for each residue number of the structure.
std::map<std::string, double> valuesByNumber(const Report& report, const ViewerSettings& settings) {
  std::map<std::string, double> values;
  for (const ProlineReport& proline : report.prolines) {
    if (proline.predicted && std::isfinite(proline.row.pCisNorm)) {
      values[structureNumber(report, settings, proline.residue)] = 100 * proline.row.pCisNorm;
    }
  }
  return values;
}

void appendWithBFactor(std::string& text, std::string_view line, double value) {
  constexpr std::size_t before = 60;
  constexpr std::size_t after = 66;
  char cell[16];
  std::snprintf(cell, sizeof cell, "%6.2f", value);
  std::string start(line.substr(0, before));
  start.resize(before, ' ');
  text += start + cell;
  text += line.size() > after ? line.substr(after) : std::string_view();
}

} // namespace

void checkViewerSettings(const ViewerSettings& settings) {
  for (const auto& [option, text] :
       {std::pair{"--chain", settings.chain}, std::pair{"--model", settings.model}}) {
    for (const char c : text) {
      const bool fine = isLetterOrDigit(c) || c == '_' || (c == '.' && option[2] == 'm');
      if (!fine) {
        throw ToolError(ToolStatus::usage,
                        std::string(option) + " has a character that viewers do not take: " + text);
      }
    }
  }
}

ViewerText chimeraxText(const Report& report, const ViewerSettings& settings) {
  const std::string where = (settings.model.empty() ? "" : "#" + settings.model) +
                            (settings.chain.empty() ? "" : "/" + settings.chain);
  std::string text = "# Prolines by the form that their chemical shifts say\n";
  for (const Group& group : groups) {
    const std::string members = membersOf(report, settings, group, ",", "-");
    if (!members.empty()) {
      text += std::string("name ") + group.name + " " + where + ":" + members + " & :PRO\n";
      text += std::string("color ") + group.name + " " + colour(group.colour) + " target abcs\n";
      text += std::string("show ") + group.name + " atoms\n";
    }
  }
  return {text, leftOut(report, settings)};
}

ViewerText pymolText(const Report& report, const ViewerSettings& settings) {
  const std::string where = (settings.model.empty() ? "" : "model " + settings.model + " and ") +
                            (settings.chain.empty() ? "" : "chain " + settings.chain + " and ");
  std::string text = "# Prolines by the form that their chemical shifts say\n";
  for (const Group& group : groups) {
    const std::string members = membersOf(report, settings, group, "+", "\\-");
    if (!members.empty()) {
      const std::string name = std::string(group.name) + "_colour";
      text += "set_color " + name + ", " + pymolColour(colour(group.colour)) + "\n";
      text += std::string("select ") + group.name + ", " + where + "resn PRO and resi " + members +
              "\n";
      text += "color " + name + ", " + group.name + "\n";
      text += std::string("show sticks, ") + group.name + "\n";
    }
  }
  return {text + "deselect\n", leftOut(report, settings)};
}

ViewerText bFactorText(const Report& report, const ViewerSettings& settings,
                       const NamedText& structure) {
  const std::map<std::string, double> values = valuesByNumber(report, settings);
  std::set<std::string> seen;
  std::string text = "REMARK  99 B factors are 100 times P_CIS_NORM for the prolines that were\n"
                     "REMARK  99 predicted, and -1 for all other atoms.\n";
  bool atoms = false;
  std::string model;
  std::string_view rest = structure.text;
  for (std::string_view line; takeLine(rest, line);) {
    if (!line.empty() && line.back() == '\r') {
      line.remove_suffix(1);
    }
    if (startsWith(line, "MODEL ")) {
      model = trimmed(line.substr(6));
    }
    if (startsWith(line, "ANISOU")) {
      continue; // would speak of the displacements that the B factors no longer are
    }
    if (startsWith(line, "ATOM  ") || startsWith(line, "HETATM")) {
      atoms = true;
      const auto found = values.find(std::string(columns(line, 23, 27)));
      const bool meant = found != values.end() && columns(line, 18, 20) == "PRO" &&
                         (settings.chain.empty() || columns(line, 21, 22) == settings.chain) &&
                         (settings.model.empty() || model.empty() || model == settings.model);
      if (meant) {
        seen.insert(found->first);
      }
      appendWithBFactor(text, line, meant ? found->second : -1);
    } else {
      text += line;
    }
    text += "\n";
  }
  if (!atoms) {
    throw ToolError(ToolStatus::badData, structure.name + ": no ATOM lines of a PDB file");
  }
  if (seen.empty() && !values.empty()) {
    throw ToolError(ToolStatus::badData,
                    structure.name + ": has none of the predicted prolines at their numbers" +
                        (settings.chain.empty() ? "" : " in chain " + settings.chain));
  }
  std::vector<std::string> missing;
  for (const auto& [number, value] : values) {
    if (seen.count(number) == 0) {
      missing.push_back("Pro" + number);
    }
  }
  if (missing.empty()) {
    return {text, {}};
  }
  return {text, {structure.name + " does not have " + joined(missing)}};
}
