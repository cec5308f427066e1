// SPDX-License-Identifier: MIT
#include "foundation/Clock.h"

#include <chrono>

namespace cocoa {

namespace {

class SystemClock final : public Clock {
 public:
  double now() const override {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
  }
};

}  // namespace

const Clock& Clock::system() {
  static const SystemClock clock;
  return clock;
}

}  // namespace cocoa
