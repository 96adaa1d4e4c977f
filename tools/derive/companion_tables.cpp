#include "tools/derive/companion_tables.h"

#include "tools/derive/call_limits.h"
#include "tools/derive/cross_validation.h"

namespace derive {

std::map<std::string, std::string> companionTables(const Derivation& derivation,
                                                   const Origin& origin, const Progress& progress) {
  const std::vector<CallStratum> strata =
      callStrata(crossValidate(derivation, Extent::shippedChoice, progress));
  return {{"calls.tab", callTable(strata, findCallLimits(strata), origin)}};
}

} // namespace derive
