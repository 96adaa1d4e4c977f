#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>

#include "web/entry.h"

// What the page does, on the command line: analyses a file and writes all outputs to a folder.
//
//   driver SETTINGS FOLDER SHIFTS [STRUCTURE]
//
// The folder gets outcome.json, a file for each kind of output, and the list of this file and one
// without a report as index.html. The status is 1 and the outcome the line on standard error when
// the analysis fails.

namespace {

std::string contentOf(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void saveOutcome(const std::filesystem::path& path) {
  std::ofstream(path, std::ios::binary)
      .write(citrans_page_text(), static_cast<std::streamsize>(citrans_page_size()));
}

std::string nameOf(const char* path) {
  return std::filesystem::path(path).filename().string();
}

} // namespace

// An exception ends it as a fault. NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  if (argc < 4) {
    return 2;
  }
  const std::string shifts = contentOf(argv[3]);
  const std::string structure = argc > 4 ? contentOf(argv[4]) : "";
  const std::string structureName = argc > 4 ? nameOf(argv[4]) : "";
  const int status = citrans_page_analyse(argv[1], nameOf(argv[3]).c_str(), shifts.data(),
                                          shifts.size(), structureName.c_str(),
                                          argc > 4 ? structure.data() : nullptr, structure.size());
  if (status != 0) {
    std::cerr.write(citrans_page_text(), static_cast<std::streamsize>(citrans_page_size())) << '\n';
    return 1;
  }
  const std::filesystem::path folder = argv[2];
  saveOutcome(folder / "outcome.json");
  const nlohmann::json entry = nlohmann::json::parse(contentOf((folder / "outcome.json").c_str()));
  const nlohmann::json rows = {
      {{"name", nameOf(argv[3])}, {"page", "its page.html"}, {"entry", entry.at("entry")}},
      {{"name", "other"}, {"message", "why <not>"}}};
  if (citrans_page_index("[{}") == 0 || citrans_page_index(rows.dump().c_str()) != 0) {
    return 1;
  }
  saveOutcome(folder / "index.html");
  for (const char* kind : {"html", "tsv", "json", "svg", "chimerax", "pymol", "table", "map",
                           "summary", "secondary", "structure"}) {
    if (citrans_page_output(kind) != 0) {
      return 1;
    }
    saveOutcome(folder / kind);
  }
  return citrans_page_output("nonsense") == 1 ? 0 : 1;
}
