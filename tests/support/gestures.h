// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSEvent.h"
#include "appkit/NSView.h"

/// Events made by hand, to be given to a view directly.

namespace ondex::test {

inline cocoa::WindowEvent event_of(cocoa::WindowEventType type, double x, double y) {
  cocoa::WindowEvent event;
  event.type = type;
  event.location = {static_cast<cocoa::CGFloat>(x), static_cast<cocoa::CGFloat>(y)};
  return event;
}

inline void press(cocoa::NSView& view, int clicks, double x = 0, double y = 0, uint32_t modifiers = 0) {
  cocoa::WindowEvent event = event_of(cocoa::WindowEventType::mouse_down, x, y);
  event.click_count = clicks;
  event.modifiers = modifiers;
  view.mouseDown(cocoa::make<cocoa::NSEvent>(event, nullptr).get());
}

inline void lift(cocoa::NSView& view) {
  view.mouseUp(cocoa::make<cocoa::NSEvent>(event_of(cocoa::WindowEventType::mouse_up, 0, 0), nullptr).get());
}

/// To a place in the window.
inline void drag_to(cocoa::NSView& view, double x, double y) {
  view.mouseDragged(
      cocoa::make<cocoa::NSEvent>(event_of(cocoa::WindowEventType::mouse_dragged, x, y), nullptr).get());
}

/// By a distance: x to the right, y downwards.
inline void drag_by(cocoa::NSView& view, double delta_x, double delta_y, uint32_t modifiers = 0) {
  cocoa::WindowEvent event = event_of(cocoa::WindowEventType::mouse_dragged, 0, 0);
  event.delta_x = static_cast<cocoa::CGFloat>(delta_x);
  event.delta_y = static_cast<cocoa::CGFloat>(delta_y);
  event.modifiers = modifiers;
  view.mouseDragged(cocoa::make<cocoa::NSEvent>(event, nullptr).get());
}

inline void turn_wheel(cocoa::NSView& view, double delta_x, double delta_y, uint32_t modifiers = 0) {
  cocoa::WindowEvent event = event_of(cocoa::WindowEventType::scroll_wheel, 0, 0);
  event.delta_x = static_cast<cocoa::CGFloat>(delta_x);
  event.delta_y = static_cast<cocoa::CGFloat>(delta_y);
  event.modifiers = modifiers;
  view.scrollWheel(cocoa::make<cocoa::NSEvent>(event, nullptr).get());
}

}  // namespace ondex::test
