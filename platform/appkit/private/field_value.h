// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "foundation/NSNumberFormatter.h"

namespace cocoa {

/// A text field's value, as text and as a number, which the text may show rounded. Without a formatter, null,
/// numbers have every digit and any text is a value.
class FieldValue {
 public:
  const std::string& text() const { return text_; }
  double number() const { return number_; }

  /// The number is 0 when the text is none.
  void setText(std::string_view text, const NSNumberFormatter* formatter);
  void setNumber(double number, const NSNumberFormatter* formatter);
  void setNumber(float number, const NSNumberFormatter* formatter);
  /// Takes what was typed; false, and nothing changes, when the formatter makes no number of it.
  bool take(const std::string& typed, const NSNumberFormatter* formatter);

 private:
  std::string text_;
  double number_ = 0;
};

}  // namespace cocoa
