#pragma once

#include <optional>

#include "appkit/NSWindow.h"
#include "lv2_ui/gesture_tracker.h"

namespace ondex {

/// The window of an editor: knows what the user does in it while the editor writes.
class EditorWindow : public cocoa::NSWindow {
 public:
  /// `released` is called when the button that was held in it has come up.
  EditorWindow(cocoa::NSRect content_rect, std::function<void()> released);

  void sendEvent(cocoa::NSEvent* event) override;
  /// A write that no event of this window has caused comes from a window above it: a number was typed there.
  GestureKind gestureOfNow() const { return now_.value_or(GestureKind::entry); }

 private:
  std::function<void()> released_;
  std::optional<GestureKind> now_;
};

}  // namespace ondex
