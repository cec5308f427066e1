#pragma once

#include <string>
#include <string_view>

#include "hosting/audio_unit_host.h"

namespace ondex {

/// One host change: a parameter and its new value.
struct ParameterChange {
  unsigned id = 0;
  float value = 0;
};

/// Reads a parameter number; an empty error means success.
std::string read_parameter_id(std::string_view text, unsigned& id);
/// Reads a number and a value in the parameter's range; an empty error means success.
std::string read_parameter_change(std::string_view id, std::string_view value, ParameterChange& change);

}  // namespace ondex
