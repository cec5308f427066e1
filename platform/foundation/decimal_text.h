// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

/// Numbers as people and files spell them. No locale.

namespace cocoa {

/// The number nearest to the one that is the whole text, ties going to the even one, however many digits
/// there are: an optional '-', digits with at most one point among or around them, and an optional exponent.
/// One too large for the type is infinite, one too small is 0. None for any other text, "inf" and "nan"
/// among them.
template <typename Number>
std::optional<Number> number_from_decimal(std::string_view text);
extern template std::optional<float> number_from_decimal(std::string_view);
extern template std::optional<double> number_from_decimal(std::string_view);

/// Without the blanks around it: spaces of every width, those that do not break included, tabs and line ends.
std::string_view without_blanks(std::string_view text);

}  // namespace cocoa
