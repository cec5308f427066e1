// SPDX-License-Identifier: MIT
#pragma once

namespace cocoa {

class NSEvent;
class NSView;

/// What takes a window's events in place of its views while something is open over it, as a menu does: the
/// platform's nested tracking loops, turned inside out.
class EventTracker {
 public:
  /// Whether the event is used up; if not, it goes its usual way as well.
  virtual bool trackEvent(NSEvent* event) = 0;
  /// The window moves, goes off the screen or loses the keys.
  virtual void trackingMustEnd() = 0;
  /// The window is in its destructor: nobody else must be called now.
  virtual void windowIsGoing() = 0;
  /// The view, perhaps halfway through its destructor, is no longer in the window.
  virtual void viewLeftWindow(NSView* view) = 0;

 protected:
  ~EventTracker() = default;
};

}  // namespace cocoa
