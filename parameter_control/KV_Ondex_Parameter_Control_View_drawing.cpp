// SPDX-License-Identifier: MIT
#include "drawing/capsule.h"
#include "drawing/color_rules.h"
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"

namespace ondex {

using namespace cocoa;

namespace {

/// Green at the body, fading to black at the tips.
constexpr two_color_info selected_cap_colors = {CGFloat(0.15), 0.75, CGFloat(0.15), 1, 0, 0, 0, 1};

const two_color_info& cap_colors(bool selected) {
  return selected ? selected_cap_colors : plain_cap_colors;
}

}  // namespace

CGColorSpaceRef KV_Ondex_Parameter_Control_View::get_RGB_color_space() {
  return device_RGB_color_space();
}

void KV_Ondex_Parameter_Control_View::drawRect(NSRect) {
  CGContextRef context = current_port();
  do_body_panel(context);
  do_right_end_cap(context);
  do_left_end_cap(context);
  const auto number = make<NSString>(string_with_four_decimals(_value));
  drawInRect_withAttributes(number.get(), _readout_rect, _readout_string_attributes.get());
  drawInRect_withAttributes(_description.get(), _info_rect, _info_string_attributes.get());
  do_shine(context);
}

void KV_Ondex_Parameter_Control_View::do_body_panel(CGContextRef context) {
  fill_rect_upwards(context, _control_rect, capsule_rules::bg_panel_evaluate, &body_colors);
}

void KV_Ondex_Parameter_Control_View::do_right_end_cap(CGContextRef context) {
  fill_right_cap(context, _right_rect, cap_colors(_is_selected));
}

void KV_Ondex_Parameter_Control_View::do_left_end_cap(CGContextRef context) {
  fill_left_cap(context, _left_rect, cap_colors(_is_selected));
}

void KV_Ondex_Parameter_Control_View::do_shine(CGContextRef context) {
  fill_rect_upwards(context, _body_rect, capsule_rules::shine_overlay_evaluate, &shine_colors);
}

}  // namespace ondex
