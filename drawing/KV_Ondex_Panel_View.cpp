// SPDX-License-Identifier: MIT
#include "drawing/KV_Ondex_Panel_View.h"

#include "drawing/color_rules.h"
#include "drawing/shading.h"

namespace ondex {

using namespace cocoa;

namespace {

constexpr CGFloat rim_width = 20;
/// The panel's blue; its rules read no second colour.
constexpr two_color_info panel_colors = {CGFloat(0.21), CGFloat(0.51), CGFloat(0.82), 1, 0, 0, 0, 1};

}  // namespace

const Class KV_Ondex_Panel_View::class_ = {
    .name = "KV_Ondex_Panel_View", .superclass = &NSView::class_, .initWithFrame = [](NSRect frame) {
      return Ref<NSObject>(make<KV_Ondex_Panel_View>(frame));
    }};

void KV_Ondex_Panel_View::awakeFromNib() {
  setNeedsDisplay(true);
}

void KV_Ondex_Panel_View::drawRect(NSRect) {
  do_2d_bg_area(current_port(), bounds());
}

void KV_Ondex_Panel_View::do_2d_bg_area(CGContextRef context, CGRect area) {
  const CGPoint origin = area.origin;
  if (!fill_band(context, create_shader_function(panel_rules::bg_panel_evaluate, &panel_colors), origin,
                 NSWidth(area))) {
    return;
  }
  const Function rim = create_shader_function(panel_rules::bg_sidebars_evaluate, &panel_colors);
  if (fill_band(context, rim, origin, rim_width))
    fill_band(context, rim, {NSMaxX(area) - rim_width, origin.y}, rim_width);
}

CGColorSpaceRef KV_Ondex_Panel_View::get_RGB_color_space() {
  return device_RGB_color_space();
}

CGColorSpaceRef KV_Ondex_Panel_View::get_grey_color_space() {
  static auto* const space = CGColorSpaceCreateDeviceGray();
  return space;
}

CGColorSpaceRef KV_Ondex_Panel_View::get_CMYK_color_space() {
  static auto* const space = CGColorSpaceCreateDeviceCMYK();
  return space;
}

}  // namespace ondex
