#include "fuzz/support.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

#include "app/citrans.h"
#include "table/number.h"

namespace {

using fuzzing::require;

/// Where the runs write: a folder of their own, in memory where the system has one for that.
class Scratch {
 public:
  Scratch() {
    namespace fs = std::filesystem;
    const fs::path base = fs::exists("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path();
    folder_ = base / ("citrans-fuzz-" + std::to_string(getpid()));
    fs::create_directories(folder_);
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  std::string file(const char* name) const { return (folder_ / name).string(); }

 private:
  std::filesystem::path folder_;
};

/// Letters of a first line that begins with "#", which readers pass over: o offset, i iso,
/// n noclip, v verb, k check, p path, r reference structure.
CITRANS::Options optionsFrom(std::string_view text) {
  CITRANS::Options options;
  if (text.substr(0, 1) == "#") {
    for (const char c : text.substr(0, text.find('\n'))) {
      const struct {
        char letter;
        const char* name;
      } switches[] = {{'o', "offset"}, {'i', "iso"},   {'n', "noclip"},
                      {'v', "verb"},   {'k', "check"}, {'p', "path"}};
      for (const auto& known : switches) {
        if (c == known.letter) {
          options[known.name] = "true";
        }
      }
      if (c == 'r') {
        options["ref"] = CITRANS_SOURCE_DIR "/examples/ybbr_2kpu.pdb";
      }
    }
  }
  return options;
}

void requireSummary(const std::string& name) {
  GDB summary;
  summary.loadGDB(name);
  for (std::size_t row = 0; row < summary.rowCount(); ++row) {
    for (const char* column : {"P_CIS", "P_CIS_NORM"}) {
      const double likelihood = parseDouble(summary.cell(row, column));
      require(std::isnan(likelihood) || (likelihood >= 0 && likelihood <= 1), "a likelihood");
    }
    require(row == 0 || summary.rowNumber(row) > summary.rowNumber(row - 1), "ascending rows");
  }
}

} // namespace

/// Any bytes as the input table of a whole run over the database: a run that returns has written
/// a summary of likelihoods, one that is refused has not, and messages stay plain text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  static const Scratch scratch;
  static const fuzzing::MemoryFile file;
  const std::string sum = scratch.file("pred.tab");
  file.write(text);
  unlink(sum.c_str());

  CITRANS::Options options = optionsFrom(text);
  options["tabDir"] = CITRANS_SOURCE_DIR "/tab";
  options["in"] = file.path();
  options["sum"] = sum;
  CITRANS citrans;
  const fuzzing::Outcome outcome = fuzzing::run([&] {
    citrans.setArgs(options);
    citrans.runPredict();
  });
  require(fuzzing::plainMessages(outcome.messages), "plain messages");
  require(std::filesystem::exists(sum) == (outcome.end == fuzzing::End::returned),
          "a summary after a run that returns, and only then");
  if (outcome.end == fuzzing::End::returned) {
    requireSummary(sum);
  }
  return 0;
}
