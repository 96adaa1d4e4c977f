// Prints the prolines of shift tables: predict_texts TABLES_DIR TABLE...
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>

#include <citrans/citrans.h>

int main(int argc, char** argv) try {
  CITRANS database;
  database.keepSilent();
  database.setArgs({{"tabDir", argc > 1 ? argv[1] : "tab"}});
  database.loadDatabase(); // once, for all tables
  for (int i = 2; i < argc; ++i) {
    std::ifstream file(argv[i]);
    CITRANS run = database;
    run.inputTable.loadText({std::istreambuf_iterator<char>(file), {}});
    run.predictInput();
    for (const Prediction& proline : run.predictions) {
      const auto& [before, name, after] = proline.names;
      std::printf("%d %s %s %s %.3f\n", proline.residue, before.c_str(), name.c_str(),
                  after.c_str(), static_cast<double>(proline.likelihood.cis));
    }
  }
} catch (const std::exception& error) { // RunEnd, or std::out_of_range for a line cut short
  std::fputs(error.what(), stderr);
  return 1;
}
