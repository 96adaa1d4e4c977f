#include "tools/derive/accuracy.h"
#include "tools/derive/cross_validation.h"
#include "tools/derive/metrics.h"
#include <cmath>
#include <cstdio>
namespace derive {
std::map<std::string, std::string> accuracyDocuments(const Derivation& d,
                                                     const Progress& progress) {
  const CrossValidation cv = crossValidate(d, progress);
  for (std::size_t e = 0; e < experimentCount; ++e) {
    for (int clean = 1; clean >= 0; --clean) {
      std::vector<Call> calls;
      int nan = 0;
      for (const auto& p : cv.prolines)
        if (p.predicted[e] && (!clean || p.label.source != Source::structure)) {
          calls.push_back({p.probability[e], p.label.cis});
          nan += std::isnan(p.probability[e]);
        }
      if (calls.empty())
        continue;
      const Metrics m = measure(calls);
      std::printf("%2zu %s n %zu cis %zu auc %.4f sens %.3f prec %.3f mcc %.3f ll %.4f ece %.4f fp "
                  "%zu fn %zu nan %d\n",
                  e, clean ? "b+s" : "all", m.count, m.cis, m.areaUnderCurve, m.sensitivity,
                  m.precision, m.matthews, m.logLoss, m.calibrationError, m.falseCis, m.missedCis,
                  nan);
    }
  }
  for (std::size_t k = 0; k < 3; ++k) {
    std::vector<double> o;
    int rec = 0;
    for (const auto& t : cv.offsets)
      if (t.estimated[k]) {
        o.push_back(std::fabs(t.offset[k]));
        rec += t.recorded[k];
      }
    std::printf("nuc %zu n %zu rec %.2f%% med %.3f p90 %.3f\n", k, o.size(), 100. * rec / static_cast<double>(o.size()),
                quantile(o, .5), quantile(o, .9));
  }
  for (std::size_t i = 0; i < 4; ++i) {
    std::vector<double> o;
    for (const auto& t : cv.offsets)
      if (t.estimated[0])
        o.push_back(std::fabs(t.found[i] - injectedErrors[i]));
    std::printf("inj %.1f med %.3f p90 %.3f\n", injectedErrors[i], quantile(o, .5),
                quantile(o, .9));
  }
  return {};
}
} // namespace derive
