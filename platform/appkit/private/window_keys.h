// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSView.h"

namespace cocoa {

/// A window's part in who has the keys, and who in the window gets them.
class WindowKeys {
 public:
  explicit WindowKeys(NSWindow& window) : window_(window) {}

  bool isKey() const { return stage_ == Stage::key; }
  bool isClaimed() const { return stage_ != Stage::without; }
  /// The window system is asked for them.
  void ask();
  // These tell the first responder, then the delegate, if there is anything to tell.
  void become();
  void resign();

  NSResponder* firstResponder() const { return first_responder_.get(); }
  bool makeFirstResponder(NSResponder* responder);
  void setInitialFirstResponder(NSView* view) { initial_first_responder_ = WeakRef<NSView>(view); }
  /// A view that leaves its window has no more claim on the keys.
  void viewLeft(const NSView* view);
  /// The next in drawing order, or the one before, round and round.
  void selectKeyView(bool forward);

 private:
  enum class Stage {
    without,  ///< next: asked, or key when others give them
    asked,    ///< the window system takes its time; next: key, or without
    key,      ///< next: without
  };

  NSWindow& window_;
  Stage stage_ = Stage::without;
  WeakRef<NSResponder> first_responder_;
  WeakRef<NSView> initial_first_responder_;
};

}  // namespace cocoa
