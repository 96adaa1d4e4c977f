#include <algorithm>
#include <cmath>

#include "tools/derive/accuracy_sections.h"
#include "tools/derive/markdown.h"

namespace derive {
namespace {

std::vector<std::string> nucleusRow(const CrossValidation& result, std::size_t nucleus) {
  std::vector<double> signedOffsets;
  std::vector<double> sizes;
  double recorded = 0;
  for (const OffsetTrial& trial : result.offsets) {
    if (trial.estimated[nucleus]) {
      signedOffsets.push_back(trial.offset[nucleus]);
      sizes.push_back(std::fabs(trial.offset[nucleus]));
      recorded += trial.recorded[nucleus] ? 1 : 0;
    }
  }
  const auto estimated = static_cast<double>(sizes.size());
  return {describe(static_cast<referencing::Nucleus>(nucleus)),
          std::to_string(sizes.size()),
          percent(recorded / estimated),
          percent(recorded / static_cast<double>(result.offsets.size())),
          fixed(quantile(signedOffsets, 0.5), 3),
          fixed(quantile(sizes, 0.5), 3),
          fixed(quantile(sizes, 0.9), 3)};
}

std::vector<std::string> injectedRow(const CrossValidation& result, std::size_t error) {
  std::vector<double> misses;
  double recorded = 0;
  for (const OffsetTrial& trial : result.offsets) {
    if (trial.estimated[0]) {
      misses.push_back(std::fabs(trial.found[error] - injectedErrors[error]));
      recorded += trial.found[error] != 0 ? 1 : 0;
    }
  }
  return {fixed(injectedErrors[error], 1), percent(recorded / static_cast<double>(misses.size())),
          fixed(quantile(misses, 0.5), 3), fixed(quantile(misses, 0.9), 3)};
}

} // namespace

std::string referencingSection(const CrossValidation& result) {
  std::string text = "## Referencing\n\n"
                     "The training proteins were re-referenced by RefDB: an offset that the "
                     "program records on them\n"
                     "is taken for a false one, though some of these entries do carry errors. "
                     "Adjustments come from\n"
                     "the other folds. *estimated*: proteins with more than ten points and a fit; "
                     "shares of these,\n"
                     "and of all " +
                     std::to_string(result.offsets.size()) + " proteins.\n\n";
  std::vector<std::vector<std::string>> rows;
  for (std::size_t nucleus = 0; nucleus < 3; ++nucleus) {
    rows.push_back(nucleusRow(result, nucleus));
  }
  text += markdownTable({"nucleus", "estimated", "recorded", "of all", "median offset, ppm",
                         "median size", "90th percentile"},
                        rows);
  text +=
      "An error added to all carbon shifts, and the CA/CB offset that the program records for it "
      "(0 when\nit records none): how far apart the two are, ppm.\n\n";
  rows.clear();
  for (std::size_t error = 0; error < injectedErrors.size(); ++error) {
    rows.push_back(injectedRow(result, error));
  }
  text += markdownTable({"added, ppm", "recorded", "median miss", "90th percentile"}, rows);
  return text + "The miss is the offset that the protein shows without the error: the spread of "
                "real proteins\nabout the constants of the estimate, which no table of "
                "adjustments removes.\n\n";
}

std::string experimentSection(const CrossValidation& result) {
  std::string text =
      "## Misreferenced and deuterated samples\n\n"
      "CG given, truth *both* and *shifts*. The error is added to CA, CB, C' and CG. A deuterated\n"
      "sample loses HA, and CA, CB and the prolines' CG move by the additive isotope shifts.\n\n";
  text += experimentTable(result, "sample",
                          {{"well referenced", cgGiven},
                           {"well referenced, -offset", offsetCorrected},
                           {"-2.7 ppm", error27Down},
                           {"-2.7 ppm, -offset", error27DownCorrected},
                           {"-1 ppm", error10Down},
                           {"-1 ppm, -offset", error10DownCorrected},
                           {"+1 ppm", error10Up},
                           {"+1 ppm, -offset", error10UpCorrected},
                           {"+2.7 ppm", error27Up},
                           {"+2.7 ppm, -offset", error27UpCorrected},
                           {"+2.7 ppm, CG taken out", error27UpNoCg},
                           {"+2.7 ppm, CG taken out, -offset", error27UpNoCgCorrected},
                           {"-2.7 ppm, CG taken out", error27DownNoCg},
                           {"-2.7 ppm, CG taken out, -offset", error27DownNoCgCorrected},
                           {"deuterated", deuterated},
                           {"deuterated, -iso", deuteratedCorrected}});
  return text +
         "`-offset` takes the offset off a proline's CG once for each of its shifts, CA, CB "
         "and C', and so\nmoves CG by two or three times the error: correct the table instead, "
         "as above. `-iso` leaves CG as\nit is.\n\n";
}

} // namespace derive
