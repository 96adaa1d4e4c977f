#include "tools/import/deposition.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "tools/import/amino_acids.h"

namespace {

/// Words of which a text on thiols may consist that calls all of them oxidised; those from
/// `firstOfOxidised` on say so.
constexpr const char* oxidisedWords[] = {
    "ALL",        "FULLY",      "COMPLETELY",  "THIOLS",   "THIOL",    "CYSTEINES", "CYSTEINE",
    "CYS",        "ARE",        "IS",          "BOUND",    "BONDED",   "BOND",      "BONDS",
    "BRIDGED",    "BRIDGES",    "BRIDGE",      "IN",       "FORM",     "STATE",     "DISULFIDE",
    "DISULFIDES", "DISULPHIDE", "DISULPHIDES", "OXIDIZED", "OXIDISED",
};
constexpr std::size_t firstOfOxidised = 20;

/// Whether a cell points to a molecule: an entity ID, or "$" and the name of a frame.
bool isPointer(std::string_view cell) {
  return !cell.empty() && (cell[0] == '$' || (cell[0] >= '0' && cell[0] <= '9'));
}

} // namespace

bool wording::allOxidised(const std::string& thiolState) {
  std::string words = capitals(thiolState);
  std::replace_if(
      words.begin(), words.end(), [](char c) { return c < 'A' || c > 'Z'; }, ' ');
  std::istringstream stream(words);
  bool oxidised = false;
  for (std::string word; stream >> word;) {
    const auto* const known = std::find(std::begin(oxidisedWords), std::end(oxidisedWords), word);
    if (known == std::end(oxidisedWords)) {
      return false;
    }
    oxidised = oxidised ||
               known - std::begin(oxidisedWords) >= static_cast<std::ptrdiff_t>(firstOfOxidised);
  }
  return oxidised && thiolState.find_first_of("0123456789") == std::string::npos;
}

bool wording::saysThiols(const std::string& thiolState) {
  const std::string text = capitals(thiolState);
  return !text.empty() && text.find("NOT REPORTED") == std::string::npos &&
         text.find("NOT AVAILABLE") == std::string::npos &&
         text.find("UNKNOWN") == std::string::npos;
}

bool wording::namesDeuterium(std::string_view labelling) {
  const std::string text = capitals(labelling);
  return text.find("2H") != std::string::npos || text.find("DEUTER") != std::string::npos;
}

void noteLabelling(const StarDocument& document, const StarLoop& loop, const char* labellingTag,
                   const char* pointerTag, Deposition& deposition) {
  if (!loop.has(labellingTag) || !loop.broken.empty()) {
    return;
  }
  bool pointed = false;
  bool ofPointed = false;
  bool ofAny = false;
  StarRows rows(document, loop, {loop.column({labellingTag}), loop.column({pointerTag})});
  while (rows.next()) {
    const bool deuterated = wording::namesDeuterium(rows[0]);
    pointed = pointed || isPointer(rows[1]);
    ofPointed = ofPointed || (deuterated && isPointer(rows[1]));
    ofAny = ofAny || deuterated;
  }
  deposition.deuterated = deposition.deuterated || (pointed ? ofPointed : ofAny);
}

std::string readConditions(const StarDocument& document, const StarLoop& loop, const char* typeTag,
                           const char* valueTag, const char* unitTag) {
  std::string temperature;
  std::string acidity;
  StarRows rows(document, loop,
                {loop.column({typeTag}), loop.column({valueTag}), loop.column({unitTag})});
  while (rows.next()) {
    const std::string type = capitals(rows[0]);
    if (type.compare(0, 4, "TEMP") == 0 && !rows[1].empty()) {
      temperature = std::string(rows[1]) + " " + (rows[2].empty() ? "K" : std::string(rows[2]));
    } else if ((type == "PH" || type == "PH*" || type == "PD") && !rows[1].empty()) {
      acidity = (type == "PD" ? "pD " : "pH ") + std::string(rows[1]);
    }
  }
  return temperature + (temperature.empty() || acidity.empty() ? "" : ", ") + acidity;
}
