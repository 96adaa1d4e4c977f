#include "fuzz/support.h"

#include <cmath>

#include "app/citrans.h"
#include "table/number.h"

namespace {

using fuzzing::require;

/// The database, loaded once, with its isotope corrections.
const CITRANS& database() {
  static const CITRANS loaded = [] {
    CITRANS run;
    run.keepSilent();
    run.setArgs({{"tabDir", CITRANS_SOURCE_DIR "/tab"}, {"iso", "true"}});
    run.loadDatabase();
    return run;
  }();
  return loaded;
}

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

void requireSummary(const GDB& summary) {
  for (std::size_t row = 0; row < summary.rowCount(); ++row) {
    for (const char* column : {"P_CIS", "P_CIS_NORM"}) {
      const double likelihood = parseDouble(summary.cell(row, column));
      require(std::isnan(likelihood) || (likelihood >= 0 && likelihood <= 1), "a likelihood");
    }
    require(row == 0 || summary.rowNumber(row) > summary.rowNumber(row - 1), "ascending rows");
  }
}

} // namespace

/// Any bytes as the input table of a whole run over the database: a run that returns has a summary
/// of likelihoods that can be written and read, and messages stay plain text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzzing::textOf(data, size));
  std::string printed;
  CITRANS run = database();
  run.out = run.errors = [&printed](std::string_view line) { printed += line; };
  const fuzzing::Outcome outcome = fuzzing::run([&] {
    run.setArgs(optionsFrom(text));
    run.inputTable.loadText(text);
    run.predictInput();
  });
  require(fuzzing::plainMessages(printed + outcome.messages), "plain messages");
  if (outcome.end == fuzzing::End::returned) {
    GDB readBack;
    readBack.loadText(run.summary.text());
    require(readBack.rowCount() == run.predictions.size(), "a row for each proline");
    requireSummary(readBack);
    require(!run.shiftTableText().empty(), "a table of secondary shifts");
  }
  return 0;
}
