// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSView.h"
#include "drawing/shading.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSString.h"

namespace ondex {

/// A capsule that shows one short centred text. Until it is given one it shows "---" in blue.
///
/// Its rectangles are those of the frame it is made with: a later resize does not move what it draws.
class KV_Ondex_Label_View : public cocoa::NSView {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  explicit KV_Ondex_Label_View(cocoa::NSRect frame);
  void awakeFromNib() override;

  /// Null is ignored.
  void set_description(cocoa::NSString* description);
  /// The text shown.
  cocoa::Ref<cocoa::NSString> description() const override { return _description; }
  /// The text's colour; null leaves it as it is.
  void set_colors_for_info(cocoa::NSColor* color);

  void drawRect(cocoa::NSRect dirty) override;
  virtual void do_body_panel(cocoa::CGContextRef context);
  void do_left_end_cap(cocoa::CGContextRef context);
  void do_right_end_cap(cocoa::CGContextRef context);
  virtual void do_shine(cocoa::CGContextRef context);
  cocoa::CGColorSpaceRef get_RGB_color_space() { return device_RGB_color_space(); }
  /// A click never drags the window.
  bool mouseDownCanMoveWindow() const override { return false; }

 protected:
  KV_Ondex_Label_View(cocoa::NSRect frame, cocoa::NSFont* font);

  cocoa::NSRect _body_rect;  ///< the whole capsule
  cocoa::NSRect _left_rect;  ///< the caps
  cocoa::NSRect _right_rect;
  cocoa::NSRect _info_rect;  ///< between the caps: the text
  cocoa::Ref<cocoa::NSColor> _info_color;
  cocoa::Ref<cocoa::NSMutableDictionary> _info_string_attributes;
  cocoa::Ref<cocoa::NSString> _description;
};

}  // namespace ondex
