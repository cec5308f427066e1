// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "appkit/NSWindow.h"

namespace cocoa {

/// The windows that lie over a window and move with it, and the one that it lies over.
class ChildWindows {
 public:
  explicit ChildWindows(NSWindow& window) : window_(window) {}

  NSWindow* parent() const { return parent_; }
  const std::vector<Ref<NSWindow>>& all() const { return children_; }
  /// False for one that is there already or that the window lies over itself.
  bool add(NSWindow* child);
  void remove(NSWindow* child);

  /// The window has moved by that much.
  void move(CGFloat x, CGFloat y);
  /// The window is somewhere else, or draws its content in another size.
  void follow();
  /// They would stay on the screen alone.
  void orderOut();
  void leaveWindowSystem();
  /// Whether one of them, or one over them, claimed the keys; none does afterwards.
  bool takeKeys();
  void windowIsGoing();

 private:
  NSWindow& window_;
  NSWindow* parent_ = nullptr;
  std::vector<Ref<NSWindow>> children_;
};

}  // namespace cocoa
