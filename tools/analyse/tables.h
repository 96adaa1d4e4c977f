#pragma once

#include <string_view>

/// The files of tab/, as the build embeds them.
namespace embedded {

extern const std::string_view shiftStatistics;       ///< Pro.cs.tab
extern const std::string_view neighbourStatistics;   ///< Pro.seq.tab
extern const std::string_view callRules;             ///< calls.tab
extern const std::string_view isotopeShifts;         ///< isoadj.tab
extern const std::string_view randomCoil;            ///< randcoil.tab
extern const std::string_view randomCoilAdjustments; ///< rcadj.tab
extern const std::string_view nextResidue;           ///< rcnext.tab
extern const std::string_view previousResidue;       ///< rcprev.tab
extern const std::string_view referencingModel;      ///< reref.tab
extern const std::string_view limits;                ///< sslimit.tab

} // namespace embedded
