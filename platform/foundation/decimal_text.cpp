// SPDX-License-Identifier: MIT
#include "foundation/decimal_text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

namespace cocoa {

namespace {

/// The points halfway between two doubles have at most 767 digits; behind these only whether anything
/// follows matters.
constexpr size_t most_digits = 800;
/// Beyond every exponent that matters, also against as many zeros as fit in memory.
constexpr int64_t largest_exponent = 100'000'000'000'000'000;

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

/// 0.d1d2d3… times ten to the exponent; d1 is not 0, and without digits the number is 0.
struct Decimal {
  std::string digits;
  int64_t exponent = 0;
};

void append(Decimal& decimal, char digit) {
  if (decimal.digits.size() < most_digits) {
    decimal.digits += digit;
  } else if (decimal.digits.size() == most_digits && digit != '0') {
    decimal.digits += '1';
  }
}

/// Takes digits with a point off the front; false when there is no digit.
bool take_digits(std::string_view& text, Decimal& decimal) {
  bool has_digit = false;
  bool has_point = false;
  for (; !text.empty() && (is_digit(text.front()) || (text.front() == '.' && !has_point));
       text.remove_prefix(1)) {
    if (text.front() == '.') {
      has_point = true;
      continue;
    }
    has_digit = true;
    const bool is_leading_zero = decimal.digits.empty() && text.front() == '0';
    if (!is_leading_zero) {
      append(decimal, text.front());
      decimal.exponent += has_point ? 0 : 1;
    } else if (has_point) {
      --decimal.exponent;
    }
  }
  return has_digit;
}

/// The exponent that is the whole text, sign included; none when it is not one.
std::optional<int64_t> exponent_from(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+'))
    text.remove_prefix(1);
  if (text.empty() || !std::ranges::all_of(text, is_digit))
    return std::nullopt;
  int64_t exponent = 0;
  for (const char c : text)
    exponent = std::min(largest_exponent, 10 * exponent + (c - '0'));
  return negative ? -exponent : exponent;
}

template <typename Number>
Number nearest(const Decimal& decimal) {
  if (decimal.digits.empty())
    return 0;
  // Where everything is out of range, whatever the digits are.
  constexpr int64_t beyond = 2000;
  const std::string text =
      "0." + decimal.digits + "e" + std::to_string(std::clamp(decimal.exponent, -beyond, beyond));
  Number number = 0;
  const auto error = std::from_chars(text.data(), text.data() + text.size(), number).ec;
  if (error == std::errc::result_out_of_range)
    return decimal.exponent > 0 ? std::numeric_limits<Number>::infinity() : 0;
  return number;
}

/// Of the blank at the front, or at the end, in bytes; 0 where there is none.
template <typename Matches>
size_t blank_length(Matches matches) {
  static constexpr std::string_view blanks[] = {
      " ",      "\t",     "\n",     "\v",     "\f",     "\r",     "\u0085", "\u00A0", "\u1680",
      "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
      "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};
  const auto* const found = std::ranges::find_if(blanks, matches);
  return found == std::ranges::end(blanks) ? 0 : found->size();
}

}  // namespace

template <typename Number>
std::optional<Number> number_from_decimal(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative)
    text.remove_prefix(1);
  Decimal decimal;
  if (!take_digits(text, decimal))
    return std::nullopt;
  if (!text.empty()) {
    const bool has_exponent = text.front() == 'e' || text.front() == 'E';
    const auto exponent = has_exponent ? exponent_from(text.substr(1)) : std::nullopt;
    if (!exponent)
      return std::nullopt;
    decimal.exponent += *exponent;
  }
  const auto number = nearest<Number>(decimal);
  return negative ? -number : number;
}

template std::optional<float> number_from_decimal(std::string_view);
template std::optional<double> number_from_decimal(std::string_view);

std::string_view without_blanks(std::string_view text) {
  while (const size_t length = blank_length([text](std::string_view each) { return text.starts_with(each); }))
    text.remove_prefix(length);
  while (const size_t length = blank_length([text](std::string_view each) { return text.ends_with(each); }))
    text.remove_suffix(length);
  return text;
}

}  // namespace cocoa
