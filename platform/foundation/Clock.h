// SPDX-License-Identifier: MIT
#pragma once

namespace cocoa {

/// The one way in which time enters: run-loop timers and the coalescing of events read it, tests drive it.
class Clock {
 public:
  virtual ~Clock() = default;
  /// Seconds. Never goes back; only differences mean something. Any thread.
  virtual double now() const = 0;

  /// The machine's monotonic clock.
  static const Clock& system();
};

}  // namespace cocoa
