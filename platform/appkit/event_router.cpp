// SPDX-License-Identifier: MIT
#include "appkit/private/event_router.h"

#include <utility>

#include "appkit/private/NSWindow_parts.h"

namespace cocoa {

void EventRouter::deliver(NSEvent* event) {
  NSEvent* const outer = std::exchange(current_event_, event);
  window_.sendEvent(event);
  current_event_ = outer;
}

void EventRouter::send(NSEvent* event) {
  const WindowEventType type = event->type();
  if (tracker_ && tracker_->trackEvent(event)) {
    if (type == WindowEventType::mouse_up && event->buttonNumber() == 0)
      pressed_view_ = WeakRef<NSView>();
    return;
  }
  if (type == WindowEventType::key_down || type == WindowEventType::key_up) {
    sendKey(event);
  } else {
    sendMouse(event);
  }
}

void EventRouter::setTracker(EventTracker* tracker) {
  endTracking();
  tracker_ = tracker;
}

void EventRouter::removeTracker(const EventTracker* tracker) {
  if (tracker_ == tracker)
    tracker_ = nullptr;
}

void EventRouter::endTracking() {
  if (tracker_)
    tracker_->trackingMustEnd();
}

void EventRouter::windowIsGoing() {
  if (tracker_)
    tracker_->windowIsGoing();
}

void EventRouter::viewLeft(NSView* view) {
  if (tracker_)
    tracker_->viewLeftWindow(view);
  if (pressed_view_.get() == view)
    pressed_view_ = WeakRef<NSView>();
}

void EventRouter::sendKey(NSEvent* event) {
  NSResponder* const first = window_.firstResponder();
  const Ref<NSResponder> receiver(first ? first : &window_);
  if (event->type() == WindowEventType::key_down) {
    receiver->keyDown(event);
  } else {
    receiver->keyUp(event);
  }
}

void EventRouter::sendMouse(NSEvent* event) {
  if (swallows(*event))
    return;
  const bool left = event->buttonNumber() == 0;
  const bool held =
      event->type() == WindowEventType::mouse_dragged || event->type() == WindowEventType::mouse_up;
  // What was pressed gets the drag and the release, wherever the pointer has gone.
  const Ref<NSView> view(held && left ? pressed_view_.get()
                                      : window_.contentView()->hitTest(event->locationInWindow()));
  if (!view) {
    // The room around the content for its shadow belongs to what is behind it.
    if (event->type() == WindowEventType::mouse_down && window_.castsShadow())
      window_.giveUpKey();
    return;
  }
  switch (event->type()) {
    case WindowEventType::mouse_down:
      return left ? press(view.get(), event) : view->rightMouseDown(event);
    case WindowEventType::mouse_dragged:
      if (left)
        drag(view.get(), event);
      return;
    case WindowEventType::mouse_up:
      if (!left)
        return view->rightMouseUp(event);
      pressed_view_ = WeakRef<NSView>();
      move_.end();
      return view->mouseUp(event);
    case WindowEventType::scroll_wheel:
      return view->scrollWheel(event);
    default:
      return;
  }
}

void EventRouter::press(NSView* view, NSEvent* event) {
  pressed_view_ = WeakRef<NSView>(view);
  if (isMovedBy(*view) && window_.platformWindow())
    move_.begin(*window_.platformWindow());
  if (view->acceptsFirstResponder())
    window_.makeFirstResponder(view);
  view->mouseDown(event);
}

/// Whether a press on the view may be the beginning of moving the window. Inside a host's window it never is.
bool EventRouter::isMovedBy(const NSView& view) const {
  return window_.isMovableByWindowBackground() && !window_.isEmbedded() && view.mouseDownCanMoveWindow();
}

void EventRouter::drag(NSView* view, NSEvent* event) {
  if (!move_.isUnderWay())
    return view->mouseDragged(event);
  PlatformWindow* const platform = window_.platformWindow();
  const double fit = window_.parts_->place.fit().factor();
  if (platform && move_.drag(*platform, static_cast<double>(event->deltaX()) * fit,
                             -(static_cast<double>(event->deltaY()) * fit)))
    window_.windowMoved();
}

/// Whether the event belongs to a click that does nothing but end what was typed in a child window. Nobody
/// else may notice it: a click in an embedded window moves no keys, and neither does one where no window
/// manager runs.
bool EventRouter::swallows(const NSEvent& event) {
  const int button = event.buttonNumber();
  switch (event.type()) {
    case WindowEventType::mouse_down:
      swallowed_.release(button);
      return swallowed_.press(button, event.timestamp(), window_.parts_->children.takeKeys());
    case WindowEventType::mouse_dragged:
      return swallowed_.isHeld(button);
    case WindowEventType::mouse_up:
      return swallowed_.release(button);
    default:
      return false;
  }
}

}  // namespace cocoa
