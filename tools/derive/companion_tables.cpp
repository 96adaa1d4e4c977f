#include "tools/derive/companion_tables.h"

#include "tools/derive/call_limits.h"
#include "tools/derive/cross_validation.h"
#include "tools/derive/remedy_choice.h"

namespace derive {

std::map<std::string, std::string> companionTables(const Derivation& derivation,
                                                   const Origin& origin, const Progress& progress) {
  const CrossValidation result = crossValidate(derivation, Extent::shippedChoice, progress);
  const std::size_t remedy = chooseRemedy(result);
  const std::vector<CallStratum> strata = callStrata(result, remedy);
  const std::vector<bool> all(derivation.training().proteins.size(), true);
  referencing::Model model = derivation.fitReferencingTo(all, derivation.derive(all, progress));
  model.fewestErrors = remedies()[remedy].fewestErrors;
  const CallLimits limits = findCallLimits(strata);
  return {{"calls.tab", callTable(strata, limits, origin)},
          {"reref.tab", referencingTable(model, origin)}};
}

} // namespace derive
