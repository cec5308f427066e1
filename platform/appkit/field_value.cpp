// SPDX-License-Identifier: MIT
#include "appkit/private/field_value.h"

#include <limits>

namespace cocoa {

namespace {
const NSNumberFormatter& or_plain(const NSNumberFormatter* formatter) {
  static const Ref<NSNumberFormatter> plain = [] {
    auto made = make<NSNumberFormatter>();
    made->setMaximumFractionDigits(std::numeric_limits<int>::max());
    return made;
  }();
  return formatter ? *formatter : *plain;
}
}  // namespace

void FieldValue::setText(std::string_view text, const NSNumberFormatter* formatter) {
  number_ = or_plain(formatter).numberFromString(text).value_or(0);
  text_ = text;
}

void FieldValue::setNumber(double number, const NSNumberFormatter* formatter) {
  text_ = or_plain(formatter).stringFromNumber(number);
  number_ = number;
}

void FieldValue::setNumber(float number, const NSNumberFormatter* formatter) {
  text_ = or_plain(formatter).stringFromNumber(number);
  number_ = static_cast<double>(number);
}

bool FieldValue::take(const std::string& typed, const NSNumberFormatter* formatter) {
  const auto number = or_plain(formatter).numberFromString(typed);
  if (formatter && !number)
    return false;
  number_ = number.value_or(0);
  text_ = typed;
  return true;
}

}  // namespace cocoa
