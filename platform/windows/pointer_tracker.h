// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "windows/click_counter.h"
#include "windows/scroll_valuators.h"
#include "windows/window_system.h"

namespace cocoa {

/// Where the pointer is and when, as a window system tells it.
struct PointerSample {
  NSPoint location;  ///< in the window, in points
  /// On the screen, y downwards, in points: the same from a window that moves.
  double screen_x = 0;
  double screen_y = 0;
  uint32_t modifiers = 0;
  uint32_t time = 0;     ///< milliseconds modulo 2^32, for clicks
  double timestamp = 0;  ///< seconds
};

/// Makes one window's events out of what the pointer does over it. Holds no window and calls nobody.
class PointerTracker {
 public:
  WindowEvent press(const PointerSample& sample, int button);
  /// None for a button that did not go down in this window.
  std::optional<WindowEvent> release(const PointerSample& sample, int button);
  /// A drag while a button is held, of the one held longest.
  WindowEvent move(const PointerSample& sample);
  WindowEvent scroll(const PointerSample& sample, ScrollTurn turn);
  /// None when it is known already.
  std::optional<WindowEvent> enter(const PointerSample& sample);
  std::optional<WindowEvent> leave(const PointerSample& sample);

  /// The buttons that went down in this window and have not come up, in the order of their presses.
  const std::vector<int>& held() const { return held_; }
  bool inside() const { return inside_; }
  /// Whether it was last seen just there, so that there is no motion to tell.
  bool isAt(const PointerSample& sample) const {
    return seen_ && sample.screen_x == last_.screen_x && sample.screen_y == last_.screen_y;
  }
  /// The pointer as it was last seen.
  const PointerSample& last() const { return last_; }

 private:
  void seeAt(const PointerSample& sample);

  ClickCounter clicks_;
  std::vector<int> held_;
  PointerSample last_;
  bool seen_ = false;
  bool inside_ = false;
};

}  // namespace cocoa
