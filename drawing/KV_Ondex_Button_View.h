// SPDX-License-Identifier: MIT
#pragma once

#include "drawing/Callback.h"
#include "drawing/KV_Ondex_Label_View.h"

namespace ondex {

/// A label with a title's font that reports a press.
class KV_Ondex_Button_View : public KV_Ondex_Label_View {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  explicit KV_Ondex_Button_View(cocoa::NSRect frame);

  /// Ignored unless both are non-null.
  void set_callback_onObject(cocoa::SEL selector, cocoa::NSObject* host);
  /// Sends the action at once; where the mouse is released does not matter.
  void mouseDown(cocoa::NSEvent* event) override;

  void do_body_panel(cocoa::CGContextRef context) override;
  void do_shine(cocoa::CGContextRef context) override;

 private:
  Callback _callback;
};

}  // namespace ondex
