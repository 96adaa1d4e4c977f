// The run as other programs call it: silent, in memory, as often as they like.
#include <filesystem>
#include <gtest/gtest.h>
#include <set>

#include "app/citrans.h"
#include "tests/unit/support.h"

namespace {

const std::string shiftColumns = "VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %d %s %s %f\n";

const std::string examples = CITRANS_SOURCE_DIR "/examples/";
const std::string tables = CITRANS_SOURCE_DIR "/tab";

CITRANS loadedDatabase() {
  CITRANS database;
  database.keepSilent();
  database.setArgs({{"tabDir", tables}});
  database.loadDatabase();
  return database;
}

/// A run over a table in memory.
CITRANS predicted(const CITRANS& database, const std::string& shifts) {
  CITRANS run = database;
  run.inputTable.loadText(shifts);
  run.predictInput();
  return run;
}

} // namespace

TEST(Library, ARunInMemoryGivesTheTextsOfTheFiles) {
  const std::string input = examples + "ybbr.tab";
  const std::string sum = scratchPath("files.tab");
  CITRANS withFiles;
  withFiles.setArgs({{"in", input}, {"tabDir", tables}, {"sum", sum}, {"verb", "verb"}});
  const Outcome printed = outcomeOf([&] { withFiles.runPredict(); });
  EXPECT_NE(printed.out.find("S81  P82  R83"), std::string::npos);

  CITRANS silent = loadedDatabase();
  silent.inName = silent.inTitle = input;
  const std::set<std::filesystem::path> before(std::filesystem::directory_iterator("."), {});
  const Outcome nothing = outcomeOf([&] { silent = predicted(silent, readFile(input)); });
  EXPECT_EQ(nothing.out + nothing.err, "");
  EXPECT_EQ(std::set<std::filesystem::path>(std::filesystem::directory_iterator("."), {}), before);
  EXPECT_EQ(silent.summary.text(), readFile(sum));
  EXPECT_EQ(silent.shiftTableText(), readFile(scratchPath("filesAdjCS.tab")));
  ASSERT_EQ(silent.predictions.size(), 8U);
  EXPECT_EQ(silent.predictions.back().residue, 82);
  EXPECT_EQ(silent.predictions.back().names, (std::array<std::string, 3>{"S", "P", "R"}));
}

TEST(Library, RunsLeaveNothingToEachOther) {
  const CITRANS database = loadedDatabase();
  const std::string ybbr = readFile(examples + "ybbr.tab");
  const std::string summary = predicted(database, ybbr).summary.text();
  EXPECT_EQ(predicted(database, readFile(examples + "ubiquitin.tab")).predictions.size(), 3U);
  EXPECT_EQ(predicted(database, ybbr).summary.text(), summary) << "copies of one database";

  CITRANS again = loadedDatabase();
  again.sumName = again.sumBase = scratchPath("again");
  for (const char* name : {"xcc2852.tab", "ybbr.tab", "ybbr.tab"}) {
    again.inName = again.inTitle = examples + name;
    again.offsetOn = !again.offsetOn;
    again.runPredict(); // one object, with its range limited to each protein anew
  }
  CITRANS once = loadedDatabase();
  once.offsetOn = true;
  once.inName = once.inTitle = examples + "ybbr.tab";
  once.runPredict();
  EXPECT_EQ(again.summary.text(), once.summary.text());
  EXPECT_EQ(again.shiftTableText(), once.shiftTableText());
}

TEST(Library, TheEndOfTheProgramReachesTheCaller) {
  const std::string noRows = "DATA SEQUENCE AP\nVARS RESID\nFORMAT %d\n";
  const struct {
    std::string shifts;
    CITRANS::Options options;
    int status;
    std::string message;
  } rows[] = {
      {"",
       {},
       -1,
       " A full amino acid sequence is required in the DATA SEQUENCE header, exit ...\n"},
      {"DATA SEQUENCE AP\n", {}, -1, " No entry found in the VARS header, exit ...\n"},
      {noRows, {{"in", "x\x1b.tab"}}, -1, " No chemical shift data found in file x\\x1b.tab\n"},
      {"DATA SEQUENCE AP\n" + shiftColumns + "1 A CA 50\n", {{"check", "true"}}, -1, ""},
      {"DATA SEQUENCE AP\n" + shiftColumns + "1 A CA 50\n",
       {{"ref", "none.pdb"}},
       0,
       "\tCan't open file none.pdb for reading\n"},
      {"VARS A\nFORMAT %ld\n", {}, 0, "\tBad format syntax '%ld'\n"},
      {"", {{"help", "help"}}, 0, ""}};
  for (const auto& row : rows) {
    CITRANS run = loadedDatabase();
    try {
      run.setArgs(row.options);
      run.inputTable.loadText(row.shifts);
      run.predictInput();
      ADD_FAILURE() << "no end: " << row.message;
    } catch (const RunEnd& end) {
      EXPECT_EQ(end.status(), row.status) << row.message;
      EXPECT_EQ(end.message(), row.message);
    }
  }
}

TEST(Library, PrintedLinesGoWhereTheCallerWants) {
  CITRANS run;
  std::string out;
  std::string errors;
  run.out = [&out](std::string_view text) { out += text; };
  run.errors = [&errors](std::string_view text) { errors += text; };
  run.sumName = run.sumBase = "no/such/folder";
  run.randTable.loadText("VARS RESNAME CA CB HA C\nFORMAT %s %f %f %f %f\nA 52.5 19 4.3 178\n");
  run.limitsTable.loadText("VARS RESNAME CA_MIN CB_MAX HA_MIN C_MIN\nFORMAT %s %f %f %f %f\n"
                           "A -3.5 2 -1 -9\n");
  run.inputTable.loadText("DATA SEQUENCE AP\n" + shiftColumns +
                          "1 G CA 45\n1 A CB 20\n1 A HA 4.2\n1 A C 177\n");
  run.predictInput();
  EXPECT_EQ(out, "Analyzing Chemical Shifts \n\nChecking for Chemical Shift Outliers ...\n"
                 "    1 A  CA Secondary Shift:   -7.500    Limit:   -3.500 !\n"
                 "\nChecking Chemical Shift Referencing ...\n"
                 "\nPredicting Pro Xaa-Pro Conformation ...\n\n");
  EXPECT_EQ(errors,
            "WARNING: Unmatched name for residue 1 between header (A) and chemical shift table "
            "(G)\n"
            "  Not enough CA shifts to check CA/CB chemical shift referencing offset ...\n"
            "  Not enough HA shifts to check HA chemical shift referencing offset ...\n"
            "  Not enough C' shifts to check C' chemical shift referencing offset ...\n"
            "\tCan't save file no/such/folderAdjCS.tab\n\tCan't save file no/such/folder\n");
}

TEST(Library, TheIsotopeTableIsReadForDeuteratedProteinsOnly) {
  const std::string folder = scratchPath("tab");
  std::filesystem::copy(tables, folder);
  std::filesystem::remove(folder + "/isoadj.tab");
  for (const bool iso : {false, true}) {
    CITRANS run;
    run.setArgs({{"in", examples + "ybbr.tab"},
                 {"tabDir", folder},
                 {"sum", scratchPath("iso.tab")},
                 {"iso", iso ? "iso" : ""}});
    const Outcome outcome = outcomeOf([&] { run.runPredict(); });
    EXPECT_EQ(outcome.err, iso ? "\tCan't open file " + folder + "/isoadj.tab for reading\n" : "");
    EXPECT_EQ(outcome.status.has_value(), iso);
  }
}
