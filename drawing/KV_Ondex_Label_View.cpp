// SPDX-License-Identifier: MIT
#include "drawing/KV_Ondex_Label_View.h"

#include "appkit/NSStringDrawing.h"
#include "drawing/capsule.h"
#include "drawing/color_rules.h"
#include "drawing/text_attributes.h"

namespace ondex {

using namespace cocoa;

namespace {
constexpr CGFloat caption_size = 9;
}

const Class KV_Ondex_Label_View::class_ = {
    .name = "KV_Ondex_Label_View", .superclass = &NSView::class_, .initWithFrame = [](NSRect frame) {
      return Ref<NSObject>(make<KV_Ondex_Label_View>(frame));
    }};

KV_Ondex_Label_View::KV_Ondex_Label_View(NSRect frame)
    : KV_Ondex_Label_View(frame, NSFont::systemFontOfSize(caption_size).get()) {}

KV_Ondex_Label_View::KV_Ondex_Label_View(NSRect frame, NSFont* font)
    : NSView(frame),
      _body_rect(bounds()),
      _left_rect(left_cap_rect(bounds())),
      _right_rect(right_cap_rect(bounds())),
      _info_rect(middle_rect(bounds())),
      _info_color(NSColor::blueColor()),
      _info_string_attributes(centred_text_attributes(font, _info_color.get())),
      _description(make<NSString>("---")) {
  setNeedsDisplay(true);
}

void KV_Ondex_Label_View::awakeFromNib() {
  setNeedsDisplay(true);
}

void KV_Ondex_Label_View::set_description(NSString* description) {
  if (!description)
    return;
  _description = description;
  setNeedsDisplay(true);
}

void KV_Ondex_Label_View::set_colors_for_info(NSColor* color) {
  if (color) {
    _info_color = color;
    _info_string_attributes->setObject_forKey(color, NSForegroundColorAttributeName);
  }
  setNeedsDisplay(true);
}

void KV_Ondex_Label_View::drawRect(NSRect) {
  CGContextRef context = current_port();
  do_body_panel(context);
  do_right_end_cap(context);
  do_left_end_cap(context);
  drawInRect_withAttributes(_description.get(), _info_rect, _info_string_attributes.get());
  // Last, so that the glass lies over the letters.
  do_shine(context);
}

void KV_Ondex_Label_View::do_body_panel(CGContextRef context) {
  fill_rect_upwards(context, _info_rect, capsule_rules::bg_panel_evaluate, &body_colors);
}

void KV_Ondex_Label_View::do_left_end_cap(CGContextRef context) {
  fill_left_cap(context, _left_rect, plain_cap_colors);
}

void KV_Ondex_Label_View::do_right_end_cap(CGContextRef context) {
  fill_right_cap(context, _right_rect, plain_cap_colors);
}

void KV_Ondex_Label_View::do_shine(CGContextRef context) {
  fill_rect_upwards(context, _body_rect, capsule_rules::shine_overlay_evaluate, &shine_colors);
}

}  // namespace ondex
