#include <cstdlib>
#include <gtest/gtest.h>

#include "app/citrans.h"
#include "app/command_line.h"
#include "tests/unit/support.h"

namespace {

CITRANS::Options cut(std::vector<std::string> arguments) {
  std::vector<char*> argv = {nullptr};
  for (std::string& argument : arguments) {
    argv.push_back(argument.data());
  }
  return readCommandLine(CITRANS(), static_cast<int>(argv.size()), argv.data());
}

/// Sets or removes an environment variable for a while.
class Environment {
 public:
  Environment(const char* name, const char* value) : name_(name) {
    const char* const old = std::getenv(name);
    had_ = old != nullptr;
    old_ = had_ ? old : "";
    set(value);
  }
  ~Environment() { set(had_ ? old_.c_str() : nullptr); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  void set(const char* value) { value != nullptr ? setenv(name_, value, 1) : unsetenv(name_); }
  const char* name_;
  bool had_;
  std::string old_;
};

} // namespace

TEST(App, TheCommandLineIsCutAtBlankHyphen) {
  const struct {
    std::vector<std::string> arguments;
    CITRANS::Options options;
  } rows[] = {
      {{"-in", "a.tab", "-in", "b.tab"}, {{"in", "b.tab"}}},
      {{"-in", "my", "file.tab"}, {{"in", "my file.tab"}}},
      {{"-in my  file.tab\t", "-sum", "x-y"}, {{"in", "my file.tab"}, {"sum", "x-y"}}},
      {{"-noclip", "yes", "-check", "-nodetail", "x"},
       {{"noclip", "true"}, {"check", "true"}, {"nodetail", "true"}}},
      {{"-nopath", "-verb", "-"}, {{"nopath", "nopath"}, {"verb", "verb"}}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(cut(row.arguments), row.options) << row.arguments[0];
  }
}

TEST(App, UnknownOptionsAreRefusedByName) {
  const struct {
    std::vector<std::string> arguments;
    const char* name;
  } rows[] = {{{"-foo", "x"}, "foo"},       {{"-first", "-5"}, "5"}, {{"-rc", "my.tab"}, "rc"},
              {{"-limits", "l"}, "limits"}, {{"--in", "a"}, "-in"},  {{"a.tab"}, ""}};
  for (const auto& row : rows) {
    const Outcome outcome = outcomeOf([&] { cut(row.arguments); });
    EXPECT_EQ(outcome.status, 0) << row.name;
    EXPECT_EQ(outcome.err, std::string(" Invaid arg name -") + row.name + "\n");
  }
}

TEST(App, OptionsBecomeSettings) {
  const Environment directory("CITRANS_DIR", "/db");
  using Options = CITRANS::Options;
  const struct {
    Options options;
    std::string CITRANS::*setting;
    const char* value;
  } texts[] = {
      {{}, &CITRANS::randName, "/db/tab/randcoil.tab"},
      {{{"citransDir", "x"}}, &CITRANS::proSeqName, "x/tab/Pro.seq.tab"},
      {{{"citransDir", "x"}, {"tabDir", "y"}}, &CITRANS::limitsName, "y/sslimit.tab"},
      {{{"rand", "my.tab"}}, &CITRANS::randName, "/db/tab/randcoil.tab"}, // accepted, no effect
      {{{"prev", "None"}}, &CITRANS::prevName, "None"},
      {{{"star", "s.tab"}, {"in", "a.tab"}}, &CITRANS::inName, "s.tab"},
      {{{"star", "s.tab"}, {"in", "a.tab"}}, &CITRANS::inTitle, "a.tab"},
      {{{"star", "s.tab"}}, &CITRANS::inTitle, "None"},
      {{{"ref", "a"}, {"pdb", "b"}}, &CITRANS::refName, "b"},
      {{{"ref", "none"}}, &CITRANS::refName, ""},
      {{{"ref", "none"}}, &CITRANS::refTitle, "None"},
      {{{"out", "res.tab"}, {"sum", "other.tab"}}, &CITRANS::sumName, "res.tab"},
      {{{"out", "res.tab"}, {"sum", "other.tab"}}, &CITRANS::sumBase, "res"},
      {{{"sum", "a.b/c"}}, &CITRANS::sumBase, "a"},
      {{{"sum", "plain"}}, &CITRANS::sumBase, "plain"},
  };
  for (const auto& row : texts) {
    CITRANS run;
    run.setArgs(row.options);
    EXPECT_EQ(run.*row.setting, row.value);
  }
  const struct {
    Options options;
    bool CITRANS::*setting;
    bool value;
  } switches[] = {{{{"verb", "verb"}, {"noverb", "noverb"}}, &CITRANS::quiet, false},
                  {{{"path", "path"}, {"nopath", "nopath"}}, &CITRANS::noPath, true},
                  {{{"path", "path"}}, &CITRANS::noPath, false},
                  {{{"clip", "x"}, {"noclip", "true"}}, &CITRANS::clipOn, false},
                  {{{"noiso", "noiso"}}, &CITRANS::isoOn, false}};
  for (const auto& row : switches) {
    CITRANS run;
    run.setArgs(row.options);
    EXPECT_EQ(run.*row.setting, row.value) << row.options.begin()->first;
  }
  CITRANS run;
  run.setArgs({{"first", "x"}, {"last", "12abc"}});
  EXPECT_EQ(run.firstResID, 0);
  EXPECT_EQ(run.lastResID, 12);
}

TEST(App, TheDatabaseIsFoundThroughTheEnvironment) {
  const struct {
    const char* directory;
    const char* path;
    const char* tables;
  } rows[] = {{nullptr, "/bin", "./tab"}, {nullptr, "C:\\bin", ".\\tab"},
              {nullptr, "bin", ".tab"},   {nullptr, nullptr, ".\\tab"},
              {"/db", "", "/db/tab"},     {"C:\\db", "/", "C:\\db\\tab"},
              {"db", "/bin", ".tab"}, // kept: a name without a separator is not used
              {"", "/bin", ".tab"}};
  for (const auto& row : rows) {
    const Environment directory("CITRANS_DIR", row.directory);
    const Environment path("PATH", row.path);
    CITRANS run;
    EXPECT_EQ(run.tabDir, row.tables);
    run.setArgs({});
    EXPECT_EQ(run.randName, row.tables + run.pathSep + "randcoil.tab");
  }
}
