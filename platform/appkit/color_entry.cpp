// SPDX-License-Identifier: MIT
#include "appkit/private/color_entry.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "foundation/decimal_text.h"

namespace cocoa {

const Class HexColorFormatter::class_ = {.name = "HexColorFormatter",
                                         .superclass = &NSNumberFormatter::class_};

namespace {

constexpr double largest = 0xFFFFFF;

bool is_digit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

}  // namespace

std::string HexColorFormatter::stringFromNumber(double number) const {
  constexpr std::string_view digits = "0123456789ABCDEF";
  auto rest = static_cast<uint32_t>(std::clamp(std::nearbyint(number), 0.0, largest));
  std::string text = "#000000";
  for (size_t place = text.size() - 1; place > 0; --place, rest /= 16)
    text[place] = digits[rest % 16];
  return text;
}

std::optional<double> HexColorFormatter::numberFromString(std::string_view text) const {
  text = without_blanks(text);
  if (text.starts_with('#'))
    text.remove_prefix(1);
  if ((text.size() != 3 && text.size() != 6) || !std::ranges::all_of(text, is_digit))
    return std::nullopt;
  std::string digits;
  for (const char c : text)
    digits.append(text.size() == 3 ? 2 : 1, c);
  uint32_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
  return number;
}

}  // namespace cocoa
