// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/EventTracker.h"
#include "appkit/NSEvent.h"
#include "appkit/NSView.h"
#include "appkit/private/swallowed_clicks.h"
#include "appkit/private/window_move.h"

namespace cocoa {

/// Takes a window's events to the views that they are for, or to who tracks them.
class EventRouter {
 public:
  explicit EventRouter(NSWindow& window) : window_(window) {}

  /// The event that is being delivered; null at other times.
  NSEvent* currentEvent() const { return current_event_; }
  /// Has the window send the event. It may be destroyed by that, as soon as nobody holds it.
  void deliver(NSEvent* event);
  void send(NSEvent* event);

  void setTracker(EventTracker* tracker);
  void removeTracker(const EventTracker* tracker);
  void endTracking();
  void endMoving() { move_.end(); }
  void windowIsGoing();
  /// A view that leaves its window has no more claim on a drag.
  void viewLeft(NSView* view);
  SwallowedClicks& swallowedClicks() { return swallowed_; }

 private:
  void sendKey(NSEvent* event);
  void sendMouse(NSEvent* event);
  void press(NSView* view, NSEvent* event);
  void drag(NSView* view, NSEvent* event);
  bool swallows(const NSEvent& event);
  bool isMovedBy(const NSView& view) const;

  NSWindow& window_;
  WeakRef<NSView> pressed_view_;
  NSEvent* current_event_ = nullptr;
  EventTracker* tracker_ = nullptr;
  WindowMove move_;
  SwallowedClicks swallowed_;
};

}  // namespace cocoa
