#include <cmath>

#include "tools/derive/accuracy_sections.h"
#include "tools/derive/markdown.h"
#include "tools/derive/remedy_choice.h"

namespace derive {
namespace {

/// How far the estimates miss on proteins that are taken for well referenced.
std::vector<std::string> missRow(const CrossValidation& result, std::size_t nucleus) {
  std::vector<double> program;
  std::vector<double> companion;
  double covered = 0;
  for (std::size_t i = 0; i < result.estimates.size(); ++i) {
    const referencing::Estimate& estimate = result.estimates[i][nucleus];
    if (estimate.points >= referencing::fewestPoints) {
      companion.push_back(std::fabs(estimate.offset));
      covered += std::fabs(estimate.offset) <= estimate.error ? 1 : 0;
    }
    if (result.offsets[i].estimated[nucleus]) {
      program.push_back(std::fabs(result.offsets[i].offset[nucleus]));
    }
  }
  return {describe(static_cast<referencing::Nucleus>(nucleus)),
          fixed(quantile(program, 0.5), 3) + ", " + fixed(quantile(program, 0.9), 3),
          fixed(quantile(companion, 0.5), 3) + ", " + fixed(quantile(companion, 0.9), 3),
          std::to_string(companion.size()),
          percent(covered / static_cast<double>(companion.size()))};
}

std::string errorName(const CarbonError& error) {
  return (error.size > 0 ? "+" : "") + fixed(error.size, 1) + (error.ofAll ? "" : ", not C'");
}

std::string errorTable(const CrossValidation& result, std::size_t companion) {
  std::vector<std::vector<std::string>> rows;
  for (const bool hideCg : {false, true}) {
    for (std::size_t error = 0; error < carbonErrors.size(); ++error) {
      std::vector<std::string> row = {errorName(carbonErrors[error]), hideCg ? "hidden" : "given"};
      for (const std::size_t remedy : {noRemedy, programRemedy, companion}) {
        const Metrics metrics = measure(referencingCalls(result, error, remedy, hideCg));
        row.push_back(fixed(metrics.matthews, 3));
        row.push_back(std::to_string(metrics.falseCis) + ", " + std::to_string(metrics.missedCis));
      }
      rows.push_back(row);
    }
  }
  return markdownTable({"added, ppm", "CG", "as it is: MCC", "wrong: cis, trans",
                        "program's estimate: MCC", "wrong", "corrected: MCC", "wrong"},
                       rows);
}

std::string remedyTable(const CrossValidation& result) {
  struct Kind {
    Remedy::Kind kind;
    const char* name;
  };
  std::vector<std::string> head = {"estimate", "errors"};
  std::vector<std::vector<std::string>> rows;
  for (const Kind& kind : {Kind{Remedy::Kind::separate, "C' by itself"},
                           Kind{Remedy::Kind::agreeing, "shared by CA/CB and C' that agree"},
                           Kind{Remedy::Kind::common, "shared by CA/CB and C'"}}) {
    std::vector<std::string> all = {kind.name, "all carbons"};
    std::vector<std::string> some = {kind.name, "not C'"};
    for (std::size_t i = firstCompanionRemedy; i < remedies().size(); ++i) {
      if (remedies()[i].kind == kind.kind) {
        if (rows.empty()) {
          head.push_back("from " + fixed(remedies()[i].fewestErrors, 1));
        }
        all.push_back(fixed(remedyWorth(result, i, 0, errorsOfAll), 4));
        some.push_back(fixed(remedyWorth(result, i, errorsOfAll, carbonErrors.size()), 4));
      }
    }
    rows.push_back(all);
    rows.push_back(some);
  }
  return markdownTable(head, rows);
}

} // namespace

std::string correctionSection(const CrossValidation& result) {
  std::vector<std::vector<std::string>> rows;
  for (std::size_t nucleus = 0; nucleus < referencing::nucleusCount; ++nucleus) {
    rows.push_back(missRow(result, nucleus));
  }
  const std::size_t chosen = chooseRemedy(result);
  return "## Correcting the referencing\n\n"
         "The companion programs estimate the offsets by lines that are the same for all proteins, "
         "without\nthe shifts that are far out (`tab/reref.tab`), and take an offset off once from "
         "every shift of its\nnucleus, CG included. How far the offsets lie from 0 on the training "
         "proteins, median and 90th\npercentile, ppm; and the share of them within the error that "
         "is given, which is to be 68 %:\n\n" +
         markdownTable({"nucleus", "program's estimate", "companions' estimate", "proteins",
                        "within the error"},
                       rows) +
         "An error added to CA, CB, CG and C', or to all of these but C', with all other nuclei "
         "assigned;\ntruth *both* and *shifts*. *as it is*: nothing is done. *program's estimate*: "
         "the offsets that the\nprogram records, taken off once. *corrected*: the companions' "
         "offsets, where larger than " +
         fixed(remedies()[chosen].fewestErrors, 1) + " times\ntheir errors.\n\n" +
         errorTable(result, chosen) +
         "What was chosen among: mean MCC over the errors above, CG given and hidden, when offsets "
         "are\ntaken off *from* so many errors on (0: always), and when CA/CB and C' have an "
         "offset "
         "each or share one:\n\n" +
         remedyTable(result) +
         "Estimating again after the correction changes nothing: an offset added to the shifts is "
         "added to\nthe estimate.\n\n";
}

} // namespace derive
