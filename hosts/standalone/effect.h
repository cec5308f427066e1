#pragma once

#include <string>
#include <string_view>

#include "audio_unit/effect_instance.h"

namespace ondex {

/// One host change: a parameter and its new value.
struct ParameterChange {
  unsigned id = 0;
  float value = 0;
};

/// The seven parameters of the effect with their ranges and defaults, as the host holds them.
std::vector<cocoa::EffectParameter> effect_parameters();

/// Reads a parameter number; an empty error means success.
std::string read_parameter_id(std::string_view text, unsigned& id);
/// Reads a number and a value in the parameter's range; an empty error means success.
std::string read_parameter_change(std::string_view id, std::string_view value, ParameterChange& change);

}  // namespace ondex
