// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

/// Outcomes that can be failures of which somebody is told.

namespace cocoa {

/// Why something could not be done, in words for the log or the user.
struct Failure {
  std::string cause;
};

/// What was asked for, or why there is none.
template <typename T>
class [[nodiscard]] Result {
 public:
  Result(T value) : outcome_(std::move(value)) {}  // NOLINT(google-explicit-constructor): is returned
  Result(Failure failure) : outcome_(std::move(failure)) {}  // NOLINT(google-explicit-constructor): likewise

  explicit operator bool() const { return std::holds_alternative<T>(outcome_); }
  /// Only after a success.
  T& operator*() { return *std::get_if<T>(&outcome_); }
  const T& operator*() const { return *std::get_if<T>(&outcome_); }
  T* operator->() { return std::get_if<T>(&outcome_); }
  const T* operator->() const { return std::get_if<T>(&outcome_); }
  /// Only after a failure.
  const Failure& failure() const { return *std::get_if<Failure>(&outcome_); }
  const std::string& cause() const { return failure().cause; }

 private:
  std::variant<T, Failure> outcome_;
};

/// Of what is done for its effect. A default-constructed one is a success.
template <>
class [[nodiscard]] Result<void> {
 public:
  Result() = default;
  Result(Failure failure)
      : failure_(std::move(failure)) {}  // NOLINT(google-explicit-constructor): is returned

  explicit operator bool() const { return !failure_; }
  /// Only after a failure.
  const Failure& failure() const { return *failure_; }
  const std::string& cause() const { return failure_->cause; }

 private:
  std::optional<Failure> failure_;
};

}  // namespace cocoa
