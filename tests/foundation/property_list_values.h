// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "foundation/private/property_list.h"

namespace cocoa {

/// A string as a property list has it.
inline PropertyListValue text(std::string_view value) {
  return std::string(value);
}

}  // namespace cocoa
