// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "foundation/NSObject.h"

namespace cocoa {

/// An immutable text in UTF-8.
class NSString : public NSObject {
 public:
  static const Class class_;
  explicit NSString(std::string_view text) : text_(text) {}
  const Class& isa() const override { return class_; }

  const char* UTF8String() const { return text_.c_str(); }
  std::string_view view() const { return text_; }
  bool isEqualToString(std::string_view other) const { return text_ == other; }
  Ref<NSString> description() const override { return make<NSString>(text_); }

 private:
  std::string text_;
};

/// `value` with four decimals, the C format "%1.4f" but with a '.' whatever locale the host runs in
/// (1234.5 is "1234.5000"). Not-a-number and infinities read "nan", "inf", "-inf".
std::string string_with_four_decimals(double value);

}  // namespace cocoa
