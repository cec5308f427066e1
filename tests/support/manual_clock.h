// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

#include "foundation/Clock.h"

namespace ondex::test {

/// A clock that stands still until the test moves it, which any thread may do.
class ManualClock final : public cocoa::Clock {
 public:
  explicit ManualClock(double seconds = 0) : now_(seconds) {}
  double now() const override { return now_; }
  void set(double seconds) { now_ = seconds; }
  void advance(double seconds) { now_ = now_ + seconds; }

 private:
  std::atomic<double> now_;
};

}  // namespace ondex::test
