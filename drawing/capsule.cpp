// SPDX-License-Identifier: MIT
#include "drawing/capsule.h"

#include "drawing/color_rules.h"

namespace ondex {

using namespace cocoa;

namespace {

void fill_cap(CGContextRef context, NSRect cap, NSRect ellipse, const two_color_info& colors, CGPoint inner,
              CGPoint tip) {
  const Function blend = create_shader_function(capsule_rules::bg_sidebars_evaluate, &colors);
  fill_rect_and_ellipse(context, cap, ellipse, create_axial_shading(blend, inner, tip));
}

}  // namespace

NSRect left_cap_rect(NSRect bounds, CGFloat width) {
  return NSMakeRect(NSMinX(bounds), NSMinY(bounds), width, NSHeight(bounds));
}

NSRect right_cap_rect(NSRect bounds, CGFloat width) {
  return NSMakeRect(NSMaxX(bounds) - width, NSMinY(bounds), width, NSHeight(bounds));
}

NSRect middle_rect(NSRect bounds, CGFloat width) {
  return NSMakeRect(NSMinX(bounds) + width, NSMinY(bounds), NSWidth(bounds) - width - width,
                    NSHeight(bounds));
}

void fill_left_cap(CGContextRef context, NSRect cap, const two_color_info& colors) {
  const NSRect ellipse = NSMakeRect(NSMinX(cap), NSMinY(cap), 2 * NSWidth(cap), NSHeight(cap));
  fill_cap(context, cap, ellipse, colors, {NSMaxX(cap), NSMinY(cap)}, {NSMinX(cap), NSMinY(cap)});
}

void fill_right_cap(CGContextRef context, NSRect cap, const two_color_info& colors) {
  const NSRect ellipse = NSMakeRect(NSMinX(cap) - NSWidth(cap), NSMinY(cap), 2 * NSWidth(cap), NSHeight(cap));
  fill_cap(context, cap, ellipse, colors, {NSMinX(cap), NSMinY(cap)}, {NSMaxX(cap), NSMinY(cap)});
}

}  // namespace ondex
