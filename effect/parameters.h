// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>

namespace ondex {

/// The effect's parameters by their numbers, which are also the order of its control ports.
enum Parameter : size_t {
  left_tremolo_rate,        ///< Hz
  right_tremolo_rate,       ///< Hz
  tremolo_depth,            ///< 0 leaves the sound alone, 1 lets the gain fall to 0
  left_tremolo_mod_factor,  ///< the modulator's frequency as a multiple of the rate
  left_tremolo_mod_index,   ///< how far the modulator pushes the phase, radians
  right_tremolo_mod_factor,
  right_tremolo_mod_index,
  parameter_count
};

struct ParameterRange {
  float minimum;
  float maximum;
  float default_value;
};

inline constexpr std::array<ParameterRange, parameter_count> parameter_ranges = {{
    {0, 20, 0},
    {0, 20, 0},
    {0, 1, 0.5F},
    {0, 20, 0},
    {0, 20, 0},
    {0, 20, 0},
    {0, 20, 0},
}};

/// One value for each parameter.
using ParameterValues = std::array<float, parameter_count>;

/// The value, or the nearest end of the parameter's range. What is not a number becomes the minimum, as the
/// editor shows it.
constexpr float in_range(Parameter parameter, float value) {
  const ParameterRange& range = parameter_ranges[parameter];
  if (!(value >= range.minimum))
    return range.minimum;
  return value > range.maximum ? range.maximum : value;
}

}  // namespace ondex
