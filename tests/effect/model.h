// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>

namespace ondex::test {

/// One side at settings that do not change.
struct ModelSide {
  double rate;    ///< Hz
  double factor;  ///< of the rate
  double index;   ///< radians
};

/// The gain of frame `frame` after phase 0, straight from the formula. The phases are those of the frame's
/// time, not sums of steps: whole turns are taken off in extended precision, which is exact enough for days
/// of sound.
inline double model_gain(const ModelSide& side, double depth, double sample_rate, uint64_t frame) {
  const long double seconds = static_cast<long double>(frame) / static_cast<long double>(sample_rate);
  const auto angle = [seconds](double hertz) {
    return static_cast<double>(2 * std::numbers::pi_v<long double> * std::fmod(seconds * hertz, 1.0L));
  };
  const double w = std::sin(angle(side.rate) + side.index * std::sin(angle(side.rate * side.factor)));
  return 1 - depth * (1 - w) / 2;
}

}  // namespace ondex::test
