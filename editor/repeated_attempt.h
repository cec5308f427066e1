// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "foundation/CFRunLoop.h"

namespace ondex {

/// Something that may not succeed at the moment, such as writing a file that another process has locked: it
/// is tried again on the current run loop until it does, first after 0.2 s, then more and more rarely, down
/// to every 10 s. Nothing is tried any more once this has gone.
class RepeatedAttempt {
 public:
  /// `attempt` answers whether it has succeeded.
  explicit RepeatedAttempt(std::function<bool()> attempt);

  void tryNow();
  /// The first try comes so many seconds from now, unless one is to come earlier anyway.
  void tryWithin(double seconds);
  bool isWaiting() const { return timer_ != nullptr; }

 private:
  void schedule(double date);

  static constexpr double first_delay = 0.2;
  static constexpr double longest_delay = 10;

  const std::function<bool()> attempt_;
  cocoa::CFRunLoop::AttachmentRef timer_;
  double date_ = 0;
  double next_delay_ = first_delay;
};

}  // namespace ondex
