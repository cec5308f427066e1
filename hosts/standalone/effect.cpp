#include "standalone/effect.h"

#include "editor/parameter_table.h"
#include "standalone/private/values.h"

namespace ondex {

std::string read_parameter_id(std::string_view text, unsigned& id) {
  const auto number = unsigned_from(text);
  if (!number || *number >= parameter_table.size()) {
    return "no parameter '" + std::string(text) + "': there are 0 to " +
           std::to_string(parameter_table.size() - 1);
  }
  id = *number;
  return {};
}

std::string read_parameter_change(std::string_view id, std::string_view value, ParameterChange& change) {
  if (std::string error = read_parameter_id(id, change.id); !error.empty())
    return error;
  const auto number = float_from(value);
  if (!number)
    return "'" + std::string(value) + "' is not a number";
  const ParameterDescription& row = parameter_table[change.id];
  const auto minimum = static_cast<float>(row.minimum);
  const auto maximum = static_cast<float>(row.maximum);
  if (*number < minimum || *number > maximum) {
    return text_of(*number) + " is outside the range of parameter " + std::to_string(change.id) + ", " +
           text_of(minimum) + " to " + text_of(maximum);
  }
  change.value = *number;
  return {};
}

}  // namespace ondex
