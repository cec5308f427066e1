// SPDX-License-Identifier: MIT
#include "standalone/effect.h"

#include "editor/parameter_table.h"
#include "standalone/private/values.h"

namespace ondex {

using cocoa::Failure;
using cocoa::Result;

Result<unsigned> read_parameter_id(std::string_view text) {
  const auto number = unsigned_from(text);
  if (!number || *number >= parameter_table.size()) {
    return Failure{"no parameter '" + std::string(text) + "': there are 0 to " +
                   std::to_string(parameter_table.size() - 1)};
  }
  return *number;
}

Result<ParameterChange> read_parameter_change(std::string_view id, std::string_view value) {
  const Result<unsigned> parameter = read_parameter_id(id);
  if (!parameter)
    return parameter.failure();
  const auto number = float_from(value);
  if (!number)
    return Failure{"'" + std::string(value) + "' is not a number"};
  const ParameterDescription& row = parameter_table[*parameter];
  const auto minimum = static_cast<float>(row.minimum);
  const auto maximum = static_cast<float>(row.maximum);
  if (*number < minimum || *number > maximum) {
    return Failure{text_of(*number) + " is outside the range of parameter " + std::to_string(*parameter) +
                   ", " + text_of(minimum) + " to " + text_of(maximum)};
  }
  return ParameterChange{*parameter, *number};
}

}  // namespace ondex
