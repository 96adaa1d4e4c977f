#include <algorithm>
#include <cstdlib>
#include <utility>

#include "app/citrans.h"
#include "table/number.h"

namespace {

constexpr const char* acceptedNames[] = {
    "citransDir", "tabDir", "predDir",    "in",       "inTitle", "star",   "bmrb",     "auto",
    "noauto",     "graph",  "nograph",    "sum",      "pdb",     "out",    "ref",      "refTitle",
    "iso",        "noiso",  "autoproton", "noproton", "proton",  "offset", "rand",     "adj",
    "prev",       "next",   "first",      "last",     "clip",    "noclip", "nodetail", "path",
    "nopath",     "verb",   "noverb",     "check",    "help",
};

/// The value of an option, or empty text when it is not given.
std::string valueOf(const CITRANS::Options& options, const char* name) {
  const auto found = options.find(name);
  return found == options.end() ? std::string() : found->second;
}

bool given(const CITRANS::Options& options, const char* name) {
  return !valueOf(options, name).empty();
}

/// Replaces `setting` when the option is given.
void take(const CITRANS::Options& options, const char* name, std::string& setting) {
  if (given(options, name)) {
    setting = valueOf(options, name);
  }
}

/// The path separator that a text uses, or none.
std::string separatorIn(const std::string& text) {
  if (text.find('/') != std::string::npos) {
    return "/";
  }
  return text.find('\\') != std::string::npos ? "\\" : "";
}

} // namespace

CITRANS::CITRANS() {
  argNames.assign(std::begin(acceptedNames), std::end(acceptedNames));
  findDatabase();
}

CITRANS::CITRANS(std::string inputName) {
  inName = std::move(inputName);
}

void CITRANS::keepSilent() {
  out = errors = toNowhere;
  writesFiles = false;
}

void CITRANS::findDatabase() {
  citransDir = ".";
  if (const char* const directory = std::getenv("CITRANS_DIR")) {
    pathSep = separatorIn(directory);
    // Kept: a directory without a separator is not used, and tables are then sought as ".tab...".
    citransDir = pathSep.empty() ? "." : directory;
  } else if (const char* const path = std::getenv("PATH")) {
    pathSep = separatorIn(path);
  } else {
    pathSep = "\\";
  }
  tabDir = citransDir + pathSep + "tab";
}

bool CITRANS::acceptsOption(const std::string& name) const {
  return std::find(argNames.begin(), argNames.end(), name) != argNames.end();
}

void CITRANS::setArgs(const Options& options) {
  if (given(options, "help")) {
    printSyntax();
  }
  setFileNames(options);
  setReferenceNames(options);
  setSummaryName(options);
  setTableNames(options);
  setSwitches(options);
}

void CITRANS::setFileNames(const Options& options) {
  take(options, "citransDir", citransDir);
  tabDir = citransDir + pathSep + "tab";
  take(options, "tabDir", tabDir);
  take(options, "in", inName);
  inTitle = inName;
  // Kept: "star" changes the file that is read, not its title.
  take(options, "star", inName);
  take(options, "inTitle", inTitle);
  if (inTitle.empty()) {
    inTitle = "None";
  }
}

void CITRANS::setReferenceNames(const Options& options) {
  take(options, "ref", refName);
  take(options, "pdb", refName);
  if (refName == "None" || refName == "none") {
    refName.clear();
  }
  refTitle = refName;
  take(options, "refTitle", refTitle);
  if (refTitle.empty()) {
    refTitle = "None";
  }
}

void CITRANS::setSummaryName(const Options& options) {
  sumName = "pred.tab";
  take(options, "sum", sumName);
  take(options, "out", sumName);
  sumBase = sumName.substr(0, sumName.rfind('.'));
}

void CITRANS::setTableNames(const Options& options) {
  const std::string prefix = tabDir + pathSep;
  randName = prefix + "randcoil.tab";
  adjName = prefix + "rcadj.tab";
  prevName = prefix + "rcprev.tab";
  nextName = prefix + "rcnext.tab";
  limitsName = prefix + "sslimit.tab";
  isoName = prefix + "isoadj.tab";
  proCSName = prefix + "Pro.cs.tab";
  proSeqName = prefix + "Pro.seq.tab";
  // Kept: "rc" and "limits" are read here, but the command line does not accept them.
  take(options, "rc", randName);
  take(options, "adj", adjName);
  take(options, "prev", prevName);
  take(options, "next", nextName);
  take(options, "limits", limitsName);
}

void CITRANS::setSwitches(const Options& options) {
  firstResID = given(options, "first") ? parseInt(valueOf(options, "first")) : 1;
  lastResID = given(options, "last") ? parseInt(valueOf(options, "last")) : 9999;
  clipOn = !given(options, "noclip");
  isoOn = given(options, "iso");
  checkOnly = given(options, "check");
  offsetOn = given(options, "offset");
  quiet = !given(options, "verb");
  noPath = !given(options, "path") || given(options, "nopath");
  reportClip = false;
}
