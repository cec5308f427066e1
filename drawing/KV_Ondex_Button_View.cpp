// SPDX-License-Identifier: MIT
#include "drawing/KV_Ondex_Button_View.h"

#include "drawing/color_rules.h"

namespace ondex {

using namespace cocoa;

namespace {

constexpr CGFloat button_title_size = 12;
constexpr two_color_info button_body_colors = greys(0.1, 1, 0.75, 0.5);
constexpr two_color_info button_shine_colors = greys(1, 0.99, 1, 1);

}  // namespace

const Class KV_Ondex_Button_View::class_ = {
    .name = "KV_Ondex_Button_View",
    .superclass = &KV_Ondex_Label_View::class_,
    .initWithFrame = [](NSRect frame) { return Ref<NSObject>(make<KV_Ondex_Button_View>(frame)); }};

KV_Ondex_Button_View::KV_Ondex_Button_View(NSRect frame)
    : KV_Ondex_Label_View(frame, NSFont::titleBarFontOfSize(button_title_size).get()) {}

void KV_Ondex_Button_View::set_callback_onObject(SEL selector, NSObject* host) {
  _callback.set(selector, host, *this);
}

void KV_Ondex_Button_View::mouseDown(NSEvent*) {
  _callback.send(this);
}

void KV_Ondex_Button_View::do_body_panel(CGContextRef context) {
  fill_rect_upwards(context, _info_rect, button_rules::bg_panel_evaluate, &button_body_colors);
}

void KV_Ondex_Button_View::do_shine(CGContextRef context) {
  fill_rect_upwards(context, _body_rect, button_rules::shine_overlay_evaluate, &button_shine_colors);
}

}  // namespace ondex
