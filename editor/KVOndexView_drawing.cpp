// SPDX-License-Identifier: MIT
#include "drawing/color_rules.h"
#include "drawing/shading.h"
#include "editor/KVOndexView.h"

namespace ondex {

using namespace cocoa;

namespace {

constexpr CGFloat sidebar_width = 20;

void set_warm(CGFloat* out, CGFloat k) {
  out[0] = CGFloat(0.9) * k;
  out[1] = CGFloat(0.62) * k;
  out[2] = CGFloat(0.5) * k;
  out[3] = 1;
}

void bg_panel_evaluate(void*, const CGFloat* in, CGFloat* out) {
  set_warm(out, half_ramp(in[0]));
}
void bg_sidebars_evaluate(void*, const CGFloat* in, CGFloat* out) {
  set_warm(out, ridge(in[0]));
}

}  // namespace

void KVOndexView::drawRect(NSRect) {
  do_2d_bg_area(current_port(), bounds());
}

void KVOndexView::do_2d_bg_area(CGContextRef context, CGRect area) {
  const CGPoint origin = area.origin;
  if (!fill_band(context, create_shader_function(bg_panel_evaluate, nullptr), origin, NSWidth(area)))
    return;
  const Function sidebar = create_shader_function(bg_sidebars_evaluate, nullptr);
  if (fill_band(context, sidebar, origin, sidebar_width))
    fill_band(context, sidebar, {NSMaxX(area) - sidebar_width, origin.y}, sidebar_width);
}

CGColorSpaceRef KVOndexView::get_RGB_color_space() {
  return device_RGB_color_space();
}

}  // namespace ondex
