// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <functional>
#include <utility>

#include "lv2_ui/ports.h"

namespace ondex {

/// What the user does while the editor writes.
enum class GestureKind {
  hold,   ///< a button is held: until it comes up
  wheel,  ///< until it has stood still for a while
  entry,  ///< a typed number: one write and no more
};

/// Tells the host when the user begins and ends to change a parameter. For each parameter begin and end take
/// turns, and every write lies between them. Times are in seconds of any one clock.
class GestureTracker {
 public:
  using Tell = std::function<void(unsigned parameter, bool begins)>;

  /// How long after the wheel's last turn its gesture ends.
  static constexpr double wheel_rest = 0.3;

  explicit GestureTracker(Tell tell) : tell_(std::move(tell)) {}

  /// Around each write of a parameter.
  void willWrite(unsigned parameter, GestureKind kind, double now);
  void didWrite(unsigned parameter);

  /// The button that was held has come up.
  void released();
  /// Time has passed.
  void tick(double now);
  /// The window is gone or about to go.
  void endAll();

  bool isOpen(unsigned parameter) const { return states_[parameter] != State::none; }

 private:
  enum class State { none, hold, wheel, entry };
  void end(unsigned parameter);

  Tell tell_;
  std::array<State, parameter_count> states_ = {};
  std::array<double, parameter_count> rests_at_ = {};  ///< when the wheel will have stood still
};

}  // namespace ondex
