// SPDX-License-Identifier: MIT
#include "drawing/KV_Ondex_Box.h"

#include "drawing/shading.h"
#include "quartz/rounded_rect.h"

namespace ondex {

using namespace cocoa;

namespace {

constexpr CGSize shadow_offset = {CGFloat(-0.75), CGFloat(-1.5)};
constexpr CGFloat shadow_blur = CGFloat(1.5);
constexpr CGFloat edge_inset = CGFloat(4.5);
constexpr CGFloat edge_width = CGFloat(1.5);
constexpr float corner_oval = 20;

CGColorRef device_color(CGFloat grey, CGFloat alpha) {
  const CGFloat components[] = {grey, grey, grey, alpha};
  return CGColorCreate(device_RGB_color_space(), components);
}

}  // namespace

const Class KV_Ondex_Box::class_ = {
    .name = "KV_Ondex_Box",
    .superclass = &NSBox::class_,
    .initWithFrame = [](NSRect frame) { return Ref<NSObject>(make<KV_Ondex_Box>(frame)); },
    .initWithInterface =
        [](InterfaceDecoder& decoder) { return Ref<NSObject>(make<KV_Ondex_Box>(decoder)); }};

CGColorRef KV_Ondex_Box::get_edge_color() {
  static CGColorRef color = device_color(0, CGFloat(0.25));
  return color;
}

CGColorRef KV_Ondex_Box::get_shadow_color() {
  static CGColorRef color = device_color(1, 1);
  return color;
}

CGColorSpaceRef KV_Ondex_Box::get_RGB_color_space() {
  return device_RGB_color_space();
}

void KV_Ondex_Box::drawRect(NSRect) {
  CGContextRef context = current_port();
  CGContextSaveGState(context);
  CGContextSetShadowWithColor(context, shadow_offset, shadow_blur, get_shadow_color());
  // The layer makes the finished outline cast one shadow.
  CGContextBeginTransparencyLayer(context, nullptr);
  draw_edge_in_rect(context, NSInsetRect(borderRect(), edge_inset, edge_inset));
  CGContextEndTransparencyLayer(context);
  CGContextRestoreGState(context);
}

void KV_Ondex_Box::draw_edge_in_rect(CGContextRef context, CGRect rect) {
  CGContextSaveGState(context);
  CGContextBeginPath(context);
  add_rounded_rect_to_path_rect_oval_width_oval_height(context, rect, corner_oval, corner_oval);
  CGContextSetLineWidth(context, edge_width);
  CGContextSetStrokeColorWithColor(context, get_edge_color());
  CGContextStrokePath(context);
  CGContextRestoreGState(context);
}

void KV_Ondex_Box::add_rounded_rect_to_path_rect_oval_width_oval_height(CGContextRef context, CGRect rect,
                                                                        float oval_width, float oval_height) {
  add_rounded_rect(context, rect, static_cast<CGFloat>(oval_width), static_cast<CGFloat>(oval_height));
}

}  // namespace ondex
