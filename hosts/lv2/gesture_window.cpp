// SPDX-License-Identifier: MIT
#include "lv2_ui/gesture_window.h"

#include <utility>

#include "appkit/NSEvent.h"

namespace ondex {

using namespace cocoa;

namespace {

std::optional<GestureKind> gesture_of(WindowEventType type) {
  switch (type) {
    case WindowEventType::mouse_down:
    case WindowEventType::mouse_dragged:
      return GestureKind::hold;
    case WindowEventType::scroll_wheel:
      return GestureKind::wheel;
    default:
      return std::nullopt;
  }
}

}  // namespace

GestureWindow::GestureWindow(NSRect content_rect, std::function<void()> released)
    : NSWindow(content_rect, NSTitledWindowMask | NSClosableWindowMask), released_(std::move(released)) {}

void GestureWindow::sendEvent(NSEvent* event) {
  const auto before = std::exchange(now_, gesture_of(event->type()));
  NSWindow::sendEvent(event);
  now_ = before;
  if (event->type() == WindowEventType::mouse_up && event->buttonNumber() == 0)
    released_();
}

}  // namespace ondex
