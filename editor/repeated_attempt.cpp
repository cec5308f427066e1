// SPDX-License-Identifier: MIT
#include "editor/repeated_attempt.h"

#include <algorithm>
#include <utility>

namespace ondex {

using namespace cocoa;

RepeatedAttempt::RepeatedAttempt(std::function<bool()> attempt) : attempt_(std::move(attempt)) {}

void RepeatedAttempt::tryNow() {
  timer_.reset();
  if (attempt_()) {
    next_delay_ = first_delay;
    return;
  }
  schedule(CFRunLoopGetCurrent()->clock().now() + next_delay_);
  next_delay_ = std::min(2 * next_delay_, longest_delay);
}

void RepeatedAttempt::tryWithin(double seconds) {
  const double date = CFRunLoopGetCurrent()->clock().now() + seconds;
  if (!timer_ || date < date_)
    schedule(date);
}

void RepeatedAttempt::schedule(double date) {
  date_ = date;
  timer_ = CFRunLoopGetCurrent()->addTimer(date, [this] { tryNow(); });
}

}  // namespace ondex
