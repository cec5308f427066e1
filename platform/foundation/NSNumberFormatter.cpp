// SPDX-License-Identifier: MIT
#include "foundation/NSNumberFormatter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "foundation/InterfaceDecoder.h"
#include "foundation/decimal_text.h"

namespace cocoa {

const Class NSNumberFormatter::class_ = {
    .name = "NSNumberFormatter",
    .superclass = &NSObject::class_,
    .init = [] { return Ref<NSObject>(make<NSNumberFormatter>()); },
    .initWithInterface =
        [](InterfaceDecoder& decoder) { return Ref<NSObject>(make<NSNumberFormatter>(decoder)); }};

namespace {

constexpr int most_fraction_digits = 340;
constexpr std::string_view minus_sign = "\u2212";

template <typename Number>
std::string text_of(Number number, int minimum_digits, int maximum_digits) {
  if (!std::isfinite(number))
    return std::isnan(number) ? "nan" : number < 0 ? "-inf" : "inf";
  // Room for the digits of the largest double, a sign and a point.
  std::array<char, 800> room{};
  char* const end = room.data() + room.size();
  std::string text(room.data(), std::to_chars(room.data(), end, number, std::chars_format::fixed).ptr);
  const auto digits = [&text] {
    const size_t point = text.find('.');
    return point == std::string::npos ? 0 : static_cast<int>(text.size() - point - 1);
  };
  if (digits() > maximum_digits) {
    const auto written =
        std::to_chars(room.data(), end, number, std::chars_format::fixed, maximum_digits).ptr;
    text.assign(room.data(), written);
    while (digits() > minimum_digits && text.back() == '0')
      text.pop_back();
    if (text.back() == '.')
      text.pop_back();
  }
  if (digits() < minimum_digits) {
    if (digits() == 0)
      text += '.';
    text.append(static_cast<size_t>(minimum_digits - digits()), '0');
  }
  const bool is_zero = text.find_first_not_of("-0.") == std::string::npos;
  return is_zero && text.front() == '-' ? text.substr(1) : text;
}

/// Takes a sign off the front; whether it was a minus.
bool take_sign(std::string_view& text) {
  if (text.starts_with(minus_sign)) {
    text.remove_prefix(minus_sign.size());
    return true;
  }
  const bool minus = text.starts_with('-');
  if (minus || text.starts_with('+'))
    text.remove_prefix(1);
  return minus;
}

}  // namespace

NSNumberFormatter::NSNumberFormatter(InterfaceDecoder& decoder)
    : minimum_(decoder.real("minimum")),
      maximum_(decoder.real("maximum")),
      lenient_(decoder.boolean("lenient", false)) {
  const auto digits = [&decoder](const char* name) {
    return static_cast<int>(std::clamp<int64_t>(decoder.integer(name, 0), 0, most_fraction_digits));
  };
  minimum_fraction_digits_ = digits("minimumFractionDigits");
  maximum_fraction_digits_ = digits("maximumFractionDigits");
}

std::string NSNumberFormatter::stringFromNumber(float number) const {
  return text_of(number, minimum_fraction_digits_, maximum_fraction_digits_);
}

std::string NSNumberFormatter::stringFromNumber(double number) const {
  return text_of(number, minimum_fraction_digits_, maximum_fraction_digits_);
}

std::optional<double> NSNumberFormatter::numberFromString(std::string_view text) const {
  std::string_view unsigned_text = without_blanks(text);
  const bool negative = take_sign(unsigned_text);
  std::string digits(unsigned_text);
  std::replace(digits.begin(), digits.end(), ',', '.');
  // Another sign is no number.
  if (digits.starts_with('-'))
    return std::nullopt;
  const auto read = number_from_decimal<double>(digits);
  if (!read)
    return std::nullopt;
  double number = std::min(*read, std::numeric_limits<double>::max());
  if (negative)
    number = -number;
  const bool outside = (minimum_ && number < *minimum_) || (maximum_ && number > *maximum_);
  return outside && !lenient_ ? std::nullopt : std::optional(number);
}

}  // namespace cocoa
