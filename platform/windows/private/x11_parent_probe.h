// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include "windows/private/repeated_question.h"

namespace cocoa {

class X11Window;

/// The window that a popup lies over, or that a panel belongs to, by its number: an owner may well close it
/// first. Finds out where it is and whether it shows: the server tells nobody when a host moves or hides.
class X11ParentProbe {
 public:
  /// XCB_WINDOW_NONE for a window without a parent.
  X11ParentProbe(X11Window& window, xcb_window_t parent) : window_(window), parent_(parent) {}

  /// Waits for the server.
  void findLeader();
  /// The top-level window that the parent is or lies in.
  xcb_window_t leader() const { return leader_; }
  /// Null without one, or after it has gone.
  X11Window* parent() const;
  /// Whether the window is the parent or its leader.
  bool concerns(xcb_window_t window) const { return window == parent_ || window == leader_; }
  bool isParent(xcb_window_t window) const { return window == parent_; }

  /// Asks what is to be known of the parent of a popup that shows; the answers come with a later dispatch.
  void ask(double now);
  /// Whether the parent may be seen now, or has gone. Waits for the server.
  bool isSeen() const;
  /// The owner of the parent may well destroy this window.
  void tellHidden() const;

 private:
  void askWhetherSeen();
  void take(bool hidden, bool last);

  X11Window& window_;
  xcb_window_t parent_;
  xcb_window_t leader_ = XCB_WINDOW_NONE;
  RepeatedQuestion question_{0.1};
  bool hidden_ = false;  ///< by one of the answers so far
  bool was_seen_ = false;
};

}  // namespace cocoa
