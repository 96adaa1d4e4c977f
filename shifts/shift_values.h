#pragma once

/// Chemical shifts in ppm that stand for "no value", and the limits by which readers know them.
namespace shift {
/// A shift of this size or more is no shift. All readers but the likelihood test against it.
constexpr double missingFrom = 999.0;
/// Written for a missing secondary shift, a missing CG and an unknown random-coil value.
constexpr float missing = 9999.0F;
/// The likelihood skips secondary shifts above this one.
constexpr float largestPredicted = 99.0F;
} // namespace shift
