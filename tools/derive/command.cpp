#include "tools/derive/command.h"

#include <cstdio>
#include <filesystem>
#include <string>

#include "tools/common/file_identity.h"
#include "tools/common/output.h"
#include "tools/common/tool.h"
#include "tools/derive/accuracy.h"
#include "tools/derive/companion_tables.h"
#include "tools/derive/pipeline.h"

namespace derive {
namespace {

constexpr char usage[] =
    "Usage: citrans-derive tables   DATA [FOLDER]   derive tables into FOLDER (tab)\n"
    "       citrans-derive companions DATA [FOLDER] derive those of the companion programs (tab)\n"
    "       citrans-derive accuracy DATA [FOLDER]   measure them into FOLDER (docs)\n"
    "       citrans-derive --version | --help\n"
    "\n"
    "DATA holds training_sequences.tab, training_shifts.tab, training_prolines.tab and\n"
    "published/*.tsv; tools/derive/README.md describes them.\n";

void report(const std::string& line) {
  std::fprintf(stderr, "%s: %s\n", program, line.c_str());
}

/// Name of a data folder in documents, which must not depend on where the folder lies.
constexpr char dataName[] = "DATA";

/// What the data folder holds, all of which may have been read.
std::vector<std::string> filesIn(const std::string& data) {
  std::vector<std::string> files;
  for (const std::string& folder : {data, data + "/published"}) {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
      files.push_back(entry.path().string());
    }
  }
  return files;
}

void writeAll(const std::string& data, const std::string& folder,
              const std::map<std::string, std::string>& files) {
  std::vector<Output> outputs;
  std::vector<std::string> names;
  outputs.reserve(files.size());
  for (const auto& [name, text] : files) {
    outputs.push_back({folder + "/" + name, text});
    names.push_back(folder + "/" + name);
  }
  requireDistinctFiles(filesIn(data), names);
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  writeWholeFiles(outputs);
  report(std::to_string(files.size()) + " files written to " + folder);
}

Origin originOf(const Training& training, const char* command) {
  const std::vector<bool> all(training.proteins.size(), true);
  return {describeSelection(training, all), std::string(program) + " " + command + " " + dataName,
          versionLine(program)};
}

void deriveTables(const std::string& data, const std::string& folder) {
  const Training training = readTraining(data);
  const Published published = readPublished(data + "/published");
  const std::vector<bool> all(training.proteins.size(), true);
  const TableSet tables = Derivation(training, published, report).derive(all, report);
  writeAll(data, folder, tableTexts(tables, originOf(training, "tables")));
}

void deriveCompanions(const std::string& data, const std::string& folder) {
  const Training training = readTraining(data);
  const Published published = readPublished(data + "/published");
  const Derivation derivation(training, published, report);
  writeAll(data, folder, companionTables(derivation, originOf(training, "companions"), report));
}

void measureAccuracy(const std::string& data, const std::string& folder) {
  const Training training = readTraining(data);
  const Published published = readPublished(data + "/published");
  const Derivation derivation(training, published, report);
  writeAll(data, folder, accuracyDocuments(derivation, report));
}

} // namespace

int runCommand(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "--version" && argc == 2) {
    std::printf("%s\n", versionLine(program).c_str());
    return 0;
  }
  if (command == "--help" && argc == 2) {
    std::fputs(usage, stdout);
    return 0;
  }
  struct Command {
    const char* name;
    void (*run)(const std::string& data, const std::string& folder);
    const char* folder;
  };
  for (const Command& each :
       {Command{"tables", deriveTables, "tab"}, Command{"companions", deriveCompanions, "tab"},
        Command{"accuracy", measureAccuracy, "docs"}}) {
    if (command == each.name && (argc == 3 || argc == 4)) {
      each.run(argv[2], argc == 4 ? argv[3] : each.folder);
      return 0;
    }
  }
  throw ToolError(ToolStatus::usage,
                  "tables, companions or accuracy and a folder expected (see --help)");
}

} // namespace derive
