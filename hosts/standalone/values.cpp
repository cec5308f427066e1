// SPDX-License-Identifier: MIT
#include "standalone/private/values.h"

#include <charconv>
#include <cmath>

#include "foundation/decimal_text.h"

namespace ondex {

std::string text_of(float value) {
  char text[32];
  const auto [end, error] = std::to_chars(text, text + sizeof text, value);
  return error == std::errc() ? std::string(text, end) : std::string();
}

std::optional<float> float_from(std::string_view text) {
  const auto value = cocoa::number_from_decimal<float>(text);
  return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<unsigned> unsigned_from(std::string_view text) {
  unsigned value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size())
    return std::nullopt;
  return value;
}

}  // namespace ondex
