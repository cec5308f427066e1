// SPDX-License-Identifier: MIT
#include "appkit/NSWindow.h"
#include "drawing/shading.h"
#include "knob/KV_Ondex_Big_Knob_View.h"
#include "knob/private/knob_colors.h"
#include "quartz/CGOwned.h"

namespace ondex {

using namespace cocoa;

namespace {

constexpr two_color_info rim_colors = greys(0.25, 1, 0.99, 1);
constexpr two_color_info face_colors = greys(0.25, 1, 0.95, 1);
constexpr two_color_info glint_colors = greys(0.99, 0, 0.99, 0.3333);
constexpr two_color_info released_panel_colors = {CGFloat(0.2235), CGFloat(0.11775), CGFloat(0.23525), 1,
                                                  CGFloat(0.894),  CGFloat(0.471),   CGFloat(0.941),   1};
constexpr two_color_info pressed_panel_colors = {0.25, CGFloat(0.2125), 0, 1, 1, CGFloat(0.85), 0, 1};

constexpr CGFloat rim_width = 4;
constexpr CGFloat dot_radius = 5;
constexpr CGFloat dot_line_width = CGFloat(1.5);
constexpr CGSize shadow_offset = {-2, -2};
constexpr CGFloat shadow_blur = 2;

void set_shadow(CGContextRef context) {
  constexpr CGFloat components[] = {0, 0, 0, CGFloat(0.666)};
  const CGOwned<CGColor> color(CGColorCreate(device_RGB_color_space(), components));
  CGContextSetShadowWithColor(context, shadow_offset, shadow_blur, color.get());
}

/// The pointer. Two of its colours are single-precision constants.
void draw_dot(CGContextRef context, double x, double y) {
  const NSRect dot = NSMakeRect(static_cast<CGFloat>(x) - dot_radius, static_cast<CGFloat>(y) - dot_radius,
                                2 * dot_radius, 2 * dot_radius);
  CGContextBeginPath(context);
  CGContextAddEllipseInRect(context, dot);
  CGContextSetLineWidth(context, dot_line_width);
  CGContextSetRGBStrokeColor(context, 0.05F, 0.05F, 0.25, 1);
  CGContextSetRGBFillColor(context, 0.25, 0.25, 0.95F, 1);
  CGContextDrawPath(context, kCGPathFillStroke);
}

/// Fills the ellipse along the diagonal of its rectangle, from the lower left to the upper right.
void fill_diagonally(CGContextRef context, NSRect ellipse, CGFunctionEvaluateCallback evaluate,
                     const two_color_info& colors, Shading& shading) {
  const CGPoint upper_right = {NSMaxX(ellipse), NSMaxY(ellipse)};
  if (!shading)
    shading = create_axial_shading(create_shader_function(evaluate, &colors), ellipse.origin, upper_right);
  fill_ellipse(context, ellipse, shading);
}

/// Draws the rim rings, from a circle through the rectangle's sides to its centre. False when there is a
/// function but no shading of it.
bool draw_rings(CGContextRef context, NSRect r, Shading& shading) {
  const CGPoint centre = {NSMinX(r) + NSWidth(r) / 2, NSMinY(r) + NSHeight(r) / 2};
  bool has_function = true;
  if (!shading) {
    const Function rings = create_shader_function(two_color_span_evaluate, &rim_colors);
    has_function = rings != nullptr;
    shading = create_radial_shading(rings, {centre, NSWidth(r) / 2}, {centre, 0});
  }
  fill_rect_and_ellipse(context, r, r, shading);
  return shading || !has_function;
}

/// All that a pointer at that place covers, with its line and its shadow.
NSRect dot_area(NSPoint centre, double scale) {
  constexpr CGFloat reach = dot_radius + dot_line_width / 2 - shadow_offset.width + shadow_blur;
  // The shape, the shadow's offset and its blur each go to whole pixels.
  const auto rounding = static_cast<CGFloat>(3 / scale);
  return NSInsetRect({centre, {}}, -reach - rounding, -reach - rounding);
}

}  // namespace

void KV_Ondex_Big_Knob_View::redraw_pointer() {
  const NSPoint pointer = {static_cast<CGFloat>(_x), static_cast<CGFloat>(_y)};
  const double scale = window() ? window()->backingScaleFactor() : 1;
  setNeedsDisplayInRect(dot_area(_marked_pointer, scale));
  setNeedsDisplayInRect(dot_area(pointer, scale));
  _marked_pointer = pointer;
}

CGColorSpaceRef KV_Ondex_Big_Knob_View::get_RGB_color_space() {
  return device_RGB_color_space();
}

void KV_Ondex_Big_Knob_View::drawRect(NSRect) {
  CGContextRef context = current_port();
  CGContextBeginTransparencyLayer(context, nullptr);
  CGContextSaveGState(context);
  set_shadow(context);
  do_knob(context);
  draw_dot(context, _x, _y);
  CGContextRestoreGState(context);
  do_shine(context);
  CGContextEndTransparencyLayer(context);
}

void KV_Ondex_Big_Knob_View::do_knob(CGContextRef context) {
  if (!draw_rings(context, _knob_rect, _rings))
    return;
  const NSRect face = NSInsetRect(_knob_rect, rim_width, rim_width);
  fill_diagonally(context, face, body_panel_evaluate, face_colors, _face);
}

void KV_Ondex_Big_Knob_View::do_shine(CGContextRef context) {
  const NSRect r = _knob_rect;
  // Lower than the face: the glint reaches over the rim at the bottom.
  const NSRect glass =
      NSMakeRect(NSMinX(r) + rim_width, NSMinY(r), NSWidth(r) - 2 * rim_width, NSHeight(r) - rim_width);
  fill_diagonally(context, glass, knob_shine_evaluate, glint_colors, _glint);
}

void KV_Ondex_Big_Knob_View::do_body_panel(CGContextRef context) {
  const two_color_info& colors = _mouse_is_down ? pressed_panel_colors : released_panel_colors;
  fill_rect_upwards(context, _control_rect, body_panel_evaluate, &colors);
}

}  // namespace ondex
