// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "foundation/NSGeometry.h"

namespace cocoa {

/// Counts clicks by time and distance, as window systems without double clicks of their own leave it to do.
///
/// A press counts on from the press before it when it is of the same button, at most 500 ms later and at most
/// 5 points away. Times are the events' own, in milliseconds modulo 2^32: what matters is when the user
/// clicked, not when anybody came to look, and a server's time wraps around every 50 days.
class ClickCounter {
 public:
  static constexpr uint32_t interval = 500;  ///< milliseconds
  static constexpr CGFloat distance = 5;     ///< points

  /// The count of this press: 1, 2, ...
  int press(NSPoint where, int button, uint32_t time) {
    const CGFloat dx = where.x - where_.x;
    const CGFloat dy = where.y - where_.y;
    const bool goes_on = count_ > 0 && button == button_ && time - time_ <= interval &&
                         dx * dx + dy * dy <= distance * distance;
    count_ = goes_on ? count_ + 1 : 1;
    where_ = where;
    button_ = button;
    time_ = time;
    counts_.at(slot(button)) = count_;
    return count_;
  }

  /// A release has the count of its press, however late it comes.
  int release(int button) const { return counts_.at(slot(button)); }

 private:
  static constexpr size_t buttons = 3;
  static size_t slot(int button) { return static_cast<size_t>(button) % buttons; }

  std::array<int, buttons> counts_{};  ///< of each button's last press
  NSPoint where_;                      ///< the last press of all, and the fields below
  uint32_t time_ = 0;
  int button_ = 0;
  int count_ = 0;
};

}  // namespace cocoa
