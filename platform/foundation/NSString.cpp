// SPDX-License-Identifier: MIT
#include "foundation/NSString.h"

#include <charconv>

namespace cocoa {

const Class NSString::class_ = {.name = "NSString", .superclass = &NSObject::class_};

std::string string_with_four_decimals(double value) {
  // The longest double has 309 digits before the point.
  char text[330];
  const auto [end, error] = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 4);
  return error == std::errc() ? std::string(text, end) : std::string();
}

}  // namespace cocoa
