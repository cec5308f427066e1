// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

namespace cocoa {

/// The clicks that do nothing in a window but end what was typed in a child window of it. Buttons have the
/// window system's numbers, times are its timestamps.
class SwallowedClicks {
 public:
  /// A child has lost the keys; `pressed_at` is when the last press came meanwhile, anywhere on the screen.
  void childEnded(std::optional<double> pressed_at) { child_ended_at_ = pressed_at; }

  /// Whether a press at that time is one. A window manager may have taken the keys from the child before the
  /// press arrives here; `ends_child` says that the press itself took them.
  bool press(int button, double time, bool ends_child);
  /// Whether the button was pressed in such a click.
  bool isHeld(int button) const;
  /// The same; from now on it is not.
  bool release(int button) { return std::erase(held_, button) != 0; }

 private:
  std::optional<double> child_ended_at_;
  std::vector<int> held_;
};

}  // namespace cocoa
