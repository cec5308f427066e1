// SPDX-License-Identifier: MIT
#pragma once

namespace cocoa {

/// A question that is asked again and again, because nobody tells: not before the last answer has come, and
/// at most every `interval` seconds.
class RepeatedQuestion {
 public:
  explicit constexpr RepeatedQuestion(double interval) : interval_(interval) {}

  /// Whether it is to be asked at `now`, in seconds; from then on answered() is waited for.
  bool begin(double now) {
    if (waits_ || now - asked_at_ < interval_)
      return false;
    waits_ = true;
    asked_at_ = now;
    return true;
  }
  void answered() { waits_ = false; }

 private:
  double interval_;
  double asked_at_ = 0;
  bool waits_ = false;
};

}  // namespace cocoa
