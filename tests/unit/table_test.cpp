#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <stdexcept>

#include "table/cell_format.h"
#include "table/gdb.h"
#include "tests/unit/support.h"

namespace {

using Strings = std::vector<std::string>;

/// Rows as "number: cell cell", for comparison at a glance.
Strings rowsOf(GDB& table, int lastNumber) {
  Strings rows;
  for (int number = 1; number <= lastNumber; ++number) {
    std::string text = std::to_string(number) + ":";
    for (const auto& [name, cell] : table.getEntry(number)) {
      text += " " + cell;
    }
    rows.push_back(text);
  }
  return rows;
}

std::string sequenceOf(const GDB& table) {
  std::string text;
  for (const auto& [number, name] : table.residueNames()) {
    text += std::to_string(number) + name + " ";
  }
  return text;
}

} // namespace

TEST(Table, TextUtilitiesCutWhiteSpaceAndPieces) {
  EXPECT_EQ(GDB::simplifyWhiteSpace("  a \t\r\n\v\f b  "), "a b");
  EXPECT_EQ(GDB::simplifyWhiteSpace(" \n "), "");
  EXPECT_EQ(GDB::split_WhiteSpace(""), Strings{""}) << "kept: one empty token";
  EXPECT_EQ(GDB::split_WhiteSpace(" \t"), Strings());
  EXPECT_EQ(GDB::split_WhiteSpace(" a\tb "), (Strings{"a", "b"}));
  EXPECT_EQ(GDB::split(" ", "  a  b "), (Strings{"a", "b"}));
  EXPECT_EQ(GDB::split(" -", " -in a -b"), (Strings{"in a", "b"}));
  EXPECT_EQ(GDB::split('%', ""), Strings());
  EXPECT_EQ(GDB::contains("aaa", "aa"), 2);
  EXPECT_EQ(GDB::contains("%4d%", '%'), 2);
  char out[32];
  EXPECT_STREQ(GDB::section("a::b:c:d", ':', out, 1, 2), "b:c");
  EXPECT_STREQ(GDB::section("a:b", ':', out, 1, 9), "b");
  EXPECT_STREQ(GDB::section("a:b", ':', out, 2, 3), "");
}

TEST(Table, AConversionIsOneLetterAfterDigitsHyphensAndPoints) {
  for (const char* good : {"%4d", "%-4s", "%s", "%8.3f", " %5.3f  ", "%4s  ", "%.f"}) {
    EXPECT_TRUE(GDB::checkFormat(good)) << good;
  }
  for (const char* bad : {"",   "%",   "d",   "%5",  "%ld", "%e",  "%g",  "%x",  "%i",  "%+5d",
                          "d%", "%d%", "%sd", "%ss", "%d4", "% d", "%%d", "4%d", "%*d", "%n"}) {
    EXPECT_FALSE(GDB::checkFormat(bad)) << bad;
  }
}

TEST(Table, ReaderTellsRowsFromKeywords) {
  const struct {
    const char* what;
    const char* text;
    int count;
    Strings rows;
    Strings remarks;
  } cases[] = {
      {"a row for each line of the right length",
       "VARS A B\nFORMAT %d %s\n1 x\n1 x y\n1\n 2\ty \n",
       2,
       {"1: 1 x", "2: 2 y"},
       {}},
      {"no row before the FORMAT line", "VARS A B\n1 x\nformat %d %s\n2 y", 1, {"1: 2 y"}, {}},
      {"a remark of two words is also a row",
       "VARS A B\nFORMAT %d %s\nREMARK z\n",
       1,
       {"1: REMARK z"},
       {"z"}},
      {"a remark is cut from the start of the line",
       "  REMARK x\nremark hello \nREMARK \n",
       0,
       {},
       {"K x", "hello ", ""}},
      {"a later VARS line drops the rows, not the numbering",
       "VARS A B\nFORMAT %d %s\n1 x\nVARS B A\n2 y\nFORMAT %d %s\n3 z\n",
       1,
       {"1:", "2:", "3: z 3"},
       {}},
      {"a FORMAT of another length leaves the rows",
       "VARS A B\nFORMAT %d\n1 x\n",
       1,
       {"1: 1 x"},
       {}},
      {"CRLF ends a line like LF", "VARS A\r\nFORMAT %s\r\nx\r\n\r\n", 1, {"1: x"}, {}},
      {"columns of one name share a cell", "VARS A A\nFORMAT %s %s\nx y\n", 1, {"1: y"}, {}},
  };
  for (const auto& row : cases) {
    GDB table;
    table.loadText(row.text);
    EXPECT_EQ(table.getEntryCount(), row.count) << row.what;
    EXPECT_EQ(rowsOf(table, static_cast<int>(row.rows.size())), row.rows) << row.what;
    EXPECT_EQ(table.remarks(), row.remarks) << row.what;
  }
}

TEST(Table, SequenceLettersAreNumberedWithoutGaps) {
  const struct {
    const char* text;
    const char* sequence;
  } rows[] = {
      {"DATA SEQUENCE AC DE\nDATA SEQUENCE FG\nDATA FIRST_RESID 10", "10A 11C 12D 13E 14F 15G "},
      {"data sequence AZb1\nDATA SEQUENCE cph?", "1A 2X 3X 4X 5c 6p 7h 8? "},
      {"DATA FIRST_RESID -1x\nDATA SEQUENCE AY", "-1A 0Y "},
      {"DATA SEQUENCE AC\nDATA SEQUENCE", "1A 2C 3S 4E 5Q 6U 7E 8N 9C 10E "}, // its own value
      {"DATA FIRST_RESID 2147483647\nDATA SEQUENCE AC", "2147483647C "},
  };
  for (const auto& row : rows) {
    GDB table;
    table.loadText(row.text);
    EXPECT_EQ(sequenceOf(table), row.sequence) << row.text;
  }
}

TEST(Table, HeaderItemsOfOneKeyAreJoined) {
  GDB table;
  table.loadText("DATA SEQUENCE  A  C\nDATA sequence DE\nDATA FOO\nDATA FIRST_RESID 1\n");
  EXPECT_EQ(table.getData("SEQUENCE"), " A C DE");
  EXPECT_EQ(table.getData("sequence"), "");
  EXPECT_EQ(table.getData("FOO"), " FOO");
  EXPECT_EQ(table.getData("FIRST_RESID"), " 1");
}

TEST(Table, RefusedFilesEndTheRun) {
  GDB table;
  EXPECT_THROW(table.loadText("REMARK\n"), std::out_of_range);
  EXPECT_THROW(table.loadText("DATA \t\n"), std::out_of_range);
  const Outcome bad = outcomeOf([&] { table.loadText("VARS A B\nFORMAT %4d %4ld \n"); });
  EXPECT_EQ(bad.status, 0);
  EXPECT_EQ(bad.err, "\tBad format syntax '%4ld '\n");
  const Outcome dos = outcomeOf([&] { table.loadText("VARS A\r\nFORMAT %8\r.3\r\n"); });
  EXPECT_EQ(dos.err, "\tBad format syntax '%8\\x0d.3\r'\n");
  const Outcome twice = outcomeOf([&] { table.loadText("VARS A B\nFORMAT %%s\n"); });
  EXPECT_EQ(twice.err, "\tBad format syntax '%'\n");
  const Outcome missing = outcomeOf([&] { table.loadGDB("no/such.tab"); });
  EXPECT_EQ(missing.status, 0);
  EXPECT_EQ(missing.err, "\tCan't open file no/such.tab for reading\n");
}

TEST(Table, ColumnsAreAddedAndChangedWithWarnings) {
  GDB table;
  table.VARS_str_parser("A B");
  table.FORMAT_str_parser("%4d %s");
  const auto messages = [&](const auto& change) { return outcomeOf(change).err; };
  EXPECT_EQ(messages([&] { table.addVAR("C", "%g"); }), "\tBad format syntax '%g'\n");
  EXPECT_EQ(messages([&] { table.setVAR(1, "C D", "%s"); }),
            "\tInvalid varible name 'C D' (with space)\n");
  EXPECT_EQ(messages([&] { table.setVAR(4, "C", "%s"); }),
            "\tPlease use number 1-3 as index for varible 'C' with format '%s'\n");
  EXPECT_EQ(messages([&] { table.addVAR("B", "%8.3f"); }), "");
  EXPECT_EQ(messages([&] { table.setVAR(3, "C", "%-4s"); }), "");
  EXPECT_EQ(messages([&] { table.addVAR("D", "%2d "); }), "");
  EXPECT_EQ(table.columnNames(), (Strings{"A", "B", "C", "D"}));
  EXPECT_TRUE(table.isVarInt("A") && table.isVarFloat("B") && table.isVarString(2));
  EXPECT_FALSE(table.isVarString("B") || table.isVarInt("E") || table.isVarInt(-1));
  const Outcome unknown = outcomeOf([&] { table.addEntry("E", "1"); });
  EXPECT_EQ(unknown.status, 0);
  EXPECT_EQ(unknown.err, "\tInvalid varible name 'E'\n");
}

TEST(Table, LookUpsCountMatchesFromOne) {
  GDB table;
  table.loadText("VARS A B\nFORMAT %s %s\nx 1\ny 2\nx 3\n");
  EXPECT_EQ(table.getEntry("A", "x", 2)["B"], "3");
  EXPECT_TRUE(table.getEntry("A", "x", 0).empty());
  EXPECT_TRUE(table.getEntry("A", "x", 3).empty());
  EXPECT_EQ(table.getEntry("A", "x", "B", "3", 1)["B"], "3");
  EXPECT_EQ(table.getEntry("A", "x", "NONE", "", 2)["B"], "3");
  EXPECT_TRUE(table.getEntry("A", "x", "B", "3", 2).empty());
  EXPECT_EQ(table.getEntry("NONE", "", 1)["B"], "1") << "a missing cell is empty text";
  EXPECT_TRUE(table.getEntry(5).empty());
  EXPECT_EQ(table.getEntryCount(), 4) << "kept: asking for a row makes it";
}

TEST(Table, SearchesAgreeWithAPlainMapWhileCellsChange) {
  std::mt19937 random(4);
  GDB table;
  table.VARS_str_parser("A B");
  std::map<int, GDB::Entry> model;
  for (int step = 0; step < 5000; ++step) {
    const int row = static_cast<int>(random() % 40) - 5;
    const std::string column = random() % 2 != 0 ? "A" : "B";
    const std::string value = std::to_string(random() % 6);
    if (random() % 3 == 0) {
      table.setEntry(row, column, value);
      model[row][column] = value;
    }
    const std::string wanted = random() % 7 == 0 ? "" : value;
    GDB::Entry one;
    GDB::Entry both;
    for (auto at = model.rbegin(); at != model.rend(); ++at) {
      GDB::Entry entry = at->second; // a copy: asking for a cell makes it
      one = entry[column] == wanted ? at->second : one;
      both = entry["A"] == wanted && entry["B"] == "1" ? at->second : both;
    }
    ASSERT_EQ(table.getEntry(column, wanted, 1), one) << step;
    ASSERT_EQ(table.getEntry("A", wanted, "B", "1", 1), both) << step;
  }
}

TEST(Table, WriterKeepsTheLayout) {
  GDB table;
  table.presetClass("KESLO_SHIFT");
  table.addRemark("shifts");
  table.setData("SEQUENCE", "AC");
  table.addEntry("RESID", "1");
  table.setEntry(1, "RESNAME", "A");
  table.setEntry(1, "ATOMNAME", "CA");
  table.setEntry(1, "SHIFT", "52.1");
  table.addEntry("RESID", "2");
  EXPECT_EQ(table.text(), "REMARK shifts\n\nDATA SEQUENCE AC\n\n"
                          "VARS   RESID RESNAME ATOMNAME SHIFT \n"
                          "FORMAT %4d %1s %4s  %8.3f\n\n"
                          "   1 A   CA    52.100\n"
                          "   2            0.000\n");
  table.set_plaintext();
  EXPECT_EQ(table.text(), "   1 A   CA    52.100\n   2            0.000\n");
  GDB empty;
  EXPECT_EQ(empty.text(), "\n\nVARS   \nFORMAT \n\n");
}

TEST(Table, DecimalsAreRoundedAsPrintfRoundsTheirDouble) {
  // Ties as the double lies: 0.125 is one, 2.675 is just below and 8.345 just above the half.
  for (const char* cell : {"0.125",
                           "0.375",
                           "2.675",
                           "8.345",
                           "0.1250",
                           "0.12500000000001",
                           "9.995",
                           "99.9951",
                           "-9.996",
                           "-0.004",
                           "0.996",
                           ".005",
                           "5.",
                           "000.996",
                           "123456789012.345",
                           "1234567890123456.789",
                           "1e-3",
                           "-",
                           "--1",
                           "1.2.3"}) {
    const struct {
      const char* format;
      int width; // negative to the left, as printf takes it
      int precision;
    } columns[] = {{"%7.2f", 7, 2}, {"%-9.2f", -9, 2}, {"%.0f", 0, 0}, {"%12.8f", 12, 8}};
    for (const auto& column : columns) {
      char printed[64];
      std::snprintf(printed, sizeof printed, "%*.*f", column.width, column.precision,
                    std::strtod(cell, nullptr));
      std::string out;
      CellFormat(column.format).append(out, cell);
      EXPECT_EQ(out, printed) << column.format << " of " << cell;
    }
  }
}

TEST(Table, CellsOfAnyLengthAreKept) {
  GDB table;
  table.VARS_str_parser("A B");
  GDB other;
  other.VARS_str_parser("C B A");
  for (const std::size_t length : {0U, 1U, 65534U, 65535U, 65536U, 300000U}) {
    const std::string text(length, 'x');
    table.addEntry("A", text);
    EXPECT_EQ(table.getEntry(table.getEntryCount())["A"], text);
    other.appendRowFrom(table, table.rowCount() - 1);
    EXPECT_EQ(other.getEntry("A", text, 1)["A"], text);
  }
}

TEST(Table, SequencesAreWrittenInLinesOf55) {
  const std::string line = "DATA SEQUENCE ";
  const std::string full(55, 'A');
  const struct {
    std::string value;
    std::string written;
  } rows[] = {{"", ""},
              {full, line + full + "\n" + line + "\n"}, // kept: the line without letters
              {full + "C", line + full + "\n" + line + "C\n"}};
  for (const auto& row : rows) {
    GDB table;
    table.setData("SEQUENCE", row.value);
    EXPECT_EQ(table.text(), "\n" + row.written + "\nVARS   \nFORMAT \n\n");
  }
}

TEST(Table, SequencesAreReadBackAsTheyWereCut) {
  const std::string full(55, 'A');
  const struct {
    std::string items;
    std::string letters;
  } rows[] = {{"DATA SEQUENCE " + full + "C\n", full + "C"},
              {"DATA SEQUENCE AC\nDATA SEQUENCE DE\n", "ACDE"},
              // Kept: the line without letters reads as the letters of its key.
              {"DATA SEQUENCE " + full + "\n", full + "SEQUENCE"}};
  for (const auto& row : rows) {
    GDB table;
    table.loadText(row.items);
    GDB again;
    again.loadText(table.text());
    std::string letters;
    for (const auto& [number, name] : again.residueNames()) {
      letters += name;
    }
    EXPECT_EQ(letters, row.letters);
  }
  GDB table;
  table.loadText("DATA FIRST_RESID 7\nDATA SEQUENCE A\n");
  EXPECT_EQ(table.getResidName(7) + table.getResidName(8), "A");
  EXPECT_EQ(table.residueNames().size(), 2U) << "kept: asking for a residue makes it";
}

TEST(Table, ACopyIsATableOfItsOwn) {
  GDB table;
  table.loadText("REMARK r\nVARS A B\nFORMAT %s %d\nx 1\ny 2\n");
  GDB copy = table;
  const std::string text = copy.text();
  copy.setEntry(1, "A", "changed");
  copy.addEntry("A", "new");
  EXPECT_EQ(table.text(), text);
  table = GDB(); // what both shared stays with the copy
  EXPECT_EQ(copy.getEntry("A", "changed", 1)["B"] + copy.getEntry("A", "y", 1)["B"], "12");
  EXPECT_EQ(copy.getEntryCount(), 3);
}

TEST(Table, KnownClassesDeclareTheirColumns) {
  GDB table;
  table.presetClass("KESLO_PRED");
  EXPECT_EQ(table.className() + " " + table.columnNames()[8], "KESLO_PRED SOURCE");
  EXPECT_TRUE(table.isVarInt("INDEX") && table.isVarFloat("W") && table.isVarString("R1"));
  table.presetClass("keslo_shift");
  EXPECT_EQ(table.columnCount(), 9U) << "any other name does nothing";
  table.VARS_str_parser("A B");
  EXPECT_TRUE(table.isVarFloat(2)) << "formats are left over";
  EXPECT_FALSE(table.isVarInt("C") || table.isVarFloat("C") || table.isVarString("C"));
  EXPECT_FALSE(table.isVarFloat(9) || table.isVarFloat(-1));
  table.FORMAT_str_parser("%d");
  EXPECT_FALSE(table.isVarInt(0)) << "a FORMAT of another length leaves none";
}

TEST(Table, ASavedTableReadsBackTheSame) {
  const std::string text = "REMARK one\nREMARK \n\nDATA FIRST_RESID 3\nDATA SEQUENCE ACD\n\n"
                           "VARS   A B C \nFORMAT %-5s %4d  %8.3f\n\n"
                           "x        7    -1.250\nlonger   -3     0.000\n";
  GDB table;
  table.loadText(text);
  EXPECT_EQ(table.text(), text);
}

TEST(Table, FilesThatCannotBeWrittenAreReported) {
  GDB table;
  for (const char* path : {"no/such/folder.tab", "/dev/full"}) {
    const Outcome outcome = outcomeOf([&] { table.saveGDB(path); });
    EXPECT_EQ(outcome.err, std::string("\tCan't save file ") + path + "\n");
    EXPECT_FALSE(outcome.status.has_value());
  }
  GDB folder;
  folder.loadGDB("/");
  EXPECT_EQ(folder.getEntryCount(), 0) << "a folder reads as an empty file";
}
