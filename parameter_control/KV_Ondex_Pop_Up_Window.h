// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSWindow.h"

namespace ondex {

/// The borderless, translucent window that shows the numeric-entry panel over a readout, which is its
/// delegate while it is open.
class KV_Ondex_Pop_Up_Window : public cocoa::NSWindow {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  /// initWithContentRect:styleMask:. The rectangle is the content's, in the screen; the window is borderless
  /// whatever the style mask.
  KV_Ondex_Pop_Up_Window(cocoa::NSRect content_rect, unsigned style_mask);

  /// A borderless window refuses the keyboard by itself, and then nothing could be typed.
  bool canBecomeKeyWindow() const override { return true; }
  /// Escape cancels as a click elsewhere does: the window gives up the keys.
  void cancelOperation(cocoa::NSObject* sender) override;
  /// Closes the entry as the loss of the keys does, also when the window never had them.
  void cancel();
  /// Once its readout has let go of it, it takes nothing more until it goes.
  void sendEvent(cocoa::NSEvent* event) override;
};

}  // namespace ondex
