// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "foundation/NSGeometry.h"
#include "windows/window_system.h"

namespace cocoa {

/// A window that is moved by a drag, by its manager if that can, else step by step.
class WindowMove {
 public:
  bool isUnderWay() const { return move_.has_value(); }
  /// A press may be its beginning.
  void begin(const PlatformWindow& window) { move_ = Move{.from = window.frame().origin}; }
  /// Only while it is under way. `right` and `up` are in the window system's points. Whether the window was
  /// moved by it.
  bool drag(PlatformWindow& window, double right, double up);
  void end() { move_.reset(); }

 private:
  struct Move {
    NSPoint from;
    double right = 0;
    double up = 0;
    bool begun = false;
    bool by_manager = false;
  };
  std::optional<Move> move_;
};

}  // namespace cocoa
