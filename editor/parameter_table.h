// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

#include "scale_type/scale_type.h"

namespace ondex {

/// What the editor knows of one parameter of the effect. All are in the global scope, element 0.
struct ParameterDescription {
  uint32_t number;  ///< the effect's parameter ID, equal to the row
  const char* name;
  double minimum;
  double maximum;
  double default_value;
  int32_t scale_type;
  double initial_value;  ///< shown until the effect's own value arrives
  bool initially_selected;
};

/// The only description of the effect's parameters; ranges are not asked of the effect.
inline constexpr std::array<ParameterDescription, 7> parameter_table = {{
    {0, "Left Tremolo Rate", 0.0, 20.0, 0.0, scale_type_linear, 0.0, false},
    {1, "Right Tremolo Rate", 0.0, 20.0, 0.0, scale_type_linear, 0.0, false},
    {2, "Tremolo Depth", 0.0, 1.0, 0.5, scale_type_linear, 0.5, true},
    {3, "Left Tremolo Mod Factor", 0.0, 20.0, 0.0, scale_type_square_root, 0.0, false},
    {4, "Left Tremolo Mod Index", 0.0, 20.0, 0.0, scale_type_square_root, 0.0, false},
    {5, "Right Tremolo Mod Factor", 0.0, 20.0, 0.0, scale_type_square_root, 0.0, false},
    {6, "Right Tremolo Mod Index", 0.0, 20.0, 0.0, scale_type_square_root, 0.0, false},
}};

}  // namespace ondex
