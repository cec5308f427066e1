// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "foundation/Result.h"
#include "hosting/audio_unit_host.h"

namespace ondex {

/// One host change: a parameter and its new value.
struct ParameterChange {
  unsigned id = 0;
  float value = 0;
};

/// Reads a parameter number.
cocoa::Result<unsigned> read_parameter_id(std::string_view text);
/// Reads a number and a value in the parameter's range.
cocoa::Result<ParameterChange> read_parameter_change(std::string_view id, std::string_view value);

}  // namespace ondex
