// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSNumberFormatter.h"

namespace cocoa {

/// Colours as people write them down: red, green and blue in hexadecimal, "#0026CC". The number is
/// 65536 red + 256 green + blue, each 0 to 255.
class HexColorFormatter : public NSNumberFormatter {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }

  using NSNumberFormatter::stringFromNumber;
  std::string stringFromNumber(double number) const override;
  /// Six digits, or three that each stand for two; the "#" and the case do not matter.
  std::optional<double> numberFromString(std::string_view text) const override;
};

}  // namespace cocoa
