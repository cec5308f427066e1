// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/NSObject.h"

namespace cocoa {

/// Between numbers and the text in which a user reads and writes them. No locale: a decimal point is written,
/// and both '.' and ',' are read as one, since the user's habit and the host's locale often differ. A
/// subclass may write numbers in its own way.
class NSNumberFormatter : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  NSNumberFormatter() = default;
  /// Reads bounds, fraction digits and leniency.
  explicit NSNumberFormatter(InterfaceDecoder& decoder);

  /// None is no limit.
  void setMinimum(std::optional<double> minimum) { minimum_ = minimum; }
  void setMaximum(std::optional<double> maximum) { maximum_ = maximum; }
  std::optional<double> minimum() const { return minimum_; }
  std::optional<double> maximum() const { return maximum_; }
  /// A lenient one reads numbers outside the bounds too, for those who bring them inside themselves.
  void setLenient(bool lenient) { lenient_ = lenient; }
  bool isLenient() const { return lenient_; }
  /// At least and at most so many digits behind the point; 0 and 0 at first.
  void setMinimumFractionDigits(int digits) { minimum_fraction_digits_ = digits; }
  void setMaximumFractionDigits(int digits) { maximum_fraction_digits_ = digits; }

  /// The shortest digits that mean no other number of that precision, without an exponent, rounded to the
  /// fraction digits. Numbers outside the bounds are shown as they are.
  std::string stringFromNumber(float number) const;
  virtual std::string stringFromNumber(double number) const;
  /// The number that is the whole text but for blanks around it, those that do not break included: a sign,
  /// digits, however many, one decimal point or comma, an exponent. One too large for a double is its
  /// largest, one too small is 0. None for any other text, and, unless lenient, for numbers outside the
  /// bounds.
  virtual std::optional<double> numberFromString(std::string_view text) const;

 private:
  std::optional<double> minimum_;
  std::optional<double> maximum_;
  int minimum_fraction_digits_ = 0;
  int maximum_fraction_digits_ = 0;
  bool lenient_ = false;
};

}  // namespace cocoa
