// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace cocoa {

/// Turns of a wheel in notches: y positive away from the user, x positive to the left, as on the platform.
struct ScrollTurn {
  double x = 0;
  double y = 0;
  explicit operator bool() const { return x != 0 || y != 0; }
};

/// One of a pointing device's numbers that scrolls.
struct ScrollAxis {
  bool vertical = true;
  uint16_t number = 0;   ///< of the valuator
  double increment = 1;  ///< how much of the valuator is one notch; negative when the user turned it round
};

/// What an event tells of one valuator. Scrolling ones count on for ever; only differences mean something.
struct ValuatorValue {
  uint16_t number = 0;
  double value = 0;
};

/// Makes turns out of the ever-growing scroll positions of one device.
///
/// The position moves while the pointer is over other windows too, so what it was is forgotten whenever that
/// may have happened; the next value only says where it stands now.
class ScrollValuators {
 public:
  ScrollValuators() = default;
  explicit ScrollValuators(std::span<const ScrollAxis> axes) {
    for (const ScrollAxis& axis : axes) {
      if (axis.increment != 0)
        axes_.push_back({axis, false, 0});
    }
  }

  /// The pointer came in, or another device moved it.
  void forgetPositions() {
    for (Position& position : axes_)
      position.known = false;
  }

  /// -(value - last) / increment, along each axis that `values` mention.
  ScrollTurn moved(std::span<const ValuatorValue> values) {
    ScrollTurn turn;
    for (const ValuatorValue& value : values) {
      for (Position& position : axes_) {
        if (position.axis.number == value.number)
          (position.axis.vertical ? turn.y : turn.x) += position.moveTo(value.value);
      }
    }
    return turn;
  }

  bool scrolls() const { return !axes_.empty(); }

 private:
  struct Position {
    ScrollAxis axis;
    bool known;
    double last;

    double moveTo(double value) {
      const double before = std::exchange(last, value);
      return std::exchange(known, true) ? -(value - before) / axis.increment : 0;
    }
  };
  std::vector<Position> axes_;
};

/// The turn that a press of one of the buttons 4 to 7 stands for: up, down, left, right. None for others.
inline ScrollTurn turn_of_button(unsigned button) {
  switch (button) {
    case 4:
      return {0, 1};
    case 5:
      return {0, -1};
    case 6:
      return {1, 0};
    case 7:
      return {-1, 0};
    default:
      return {};
  }
}

}  // namespace cocoa
