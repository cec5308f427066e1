// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include "appkit/NSWindow.h"
#include "lv2_ui/gesture_tracker.h"

namespace ondex {

/// An editor's window that knows by which gesture the editor writes.
class GestureWindow : public cocoa::NSWindow {
 public:
  /// `released` is called when the button that was held in it has come up.
  GestureWindow(cocoa::NSRect content_rect, std::function<void()> released);

  void sendEvent(cocoa::NSEvent* event) override;
  /// A write that no event of this window has caused comes from a window above it: a number was typed there.
  GestureKind gestureOfNow() const { return now_.value_or(GestureKind::entry); }

 private:
  std::function<void()> released_;
  std::optional<GestureKind> now_;
};

}  // namespace ondex
