// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "foundation/NSObject.h"
#include "foundation/NSString.h"
#include "windows/window_system.h"

namespace cocoa {

class NSWindow;

enum NSEventModifierFlags : uint32_t {
  NSShiftKeyMask = modifier_shift,
  NSControlKeyMask = modifier_control,
  NSAlternateKeyMask = modifier_option,
  NSCommandKeyMask = modifier_command,
};

/// One event of a window. Lives for the time of its delivery.
class NSEvent : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  NSEvent(WindowEvent event, NSWindow* window) : event_(std::move(event)), window_(window) {}

  WindowEventType type() const { return event_.type; }
  /// Points from the lower left of the window's content.
  NSPoint locationInWindow() const { return event_.location; }
  NSWindow* window() const { return window_; }
  /// 1 for a first press, 2 for the second of a double click, and so on.
  int clickCount() const { return event_.click_count; }
  /// A drag's motion in points, y positive downwards; a wheel's turn in notches, y positive away from the
  /// user.
  CGFloat deltaX() const { return event_.delta_x; }
  CGFloat deltaY() const { return event_.delta_y; }
  int buttonNumber() const { return event_.button; }
  uint32_t modifierFlags() const { return event_.modifiers; }
  double timestamp() const { return event_.timestamp; }
  /// What the key types; empty when it types nothing.
  Ref<NSString> characters() const { return make<NSString>(event_.characters); }
  uint32_t keysym() const { return event_.keysym; }
  bool isARepeat() const { return event_.is_repeat; }

 private:
  WindowEvent event_;
  NSWindow* window_;
};

}  // namespace cocoa
