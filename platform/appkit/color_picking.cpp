// SPDX-License-Identifier: MIT
#include "appkit/private/color_picking.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "appkit/NSEvent.h"
#include "appkit/NSGraphicsContext.h"
#include "quartz/CGOwned.h"
#include "quartz/rounded_rect.h"

namespace cocoa {

namespace {

constexpr CGFloat corner = 4;
constexpr CGFloat ring_radius = 6;
constexpr CGFloat ring_margin = 8;
constexpr CGFloat bar_height = 8;

CGContextRef port() {
  return NSGraphicsContext::currentContext()->graphicsPort();
}

/// Paints the clip with colours along a line. `rule` is a shading function's callback; `info` must live on.
void paint(CGContextRef context, CGPoint start, CGPoint end, CGFunctionEvaluateCallback rule, void* info) {
  constexpr CGFloat domain[] = {0, 1};
  constexpr CGFloat range[] = {0, 1, 0, 1, 0, 1, 0, 1};
  const CGFunctionCallbacks callbacks = {0, rule, nullptr};
  const CGOwned<CGColorSpace> space(CGColorSpaceCreateDeviceRGB());
  const CGOwned<CGFunction> function(CGFunctionCreate(info, 1, domain, 4, range, &callbacks));
  const CGOwned<CGShading> shading(CGShadingCreateAxial(space.get(), start, end, function.get(), true, true));
  if (shading)
    CGContextDrawShading(context, shading.get());
}

void put(CGFloat* out, const NSColor& color) {
  out[0] = color.redComponent();
  out[1] = color.greenComponent();
  out[2] = color.blueComponent();
  out[3] = 1;
}

void saturation_evaluate(void* info, const CGFloat* in, CGFloat* out) {
  const auto* hsb = static_cast<const Hsb*>(info);
  put(out, *color_of({hsb->hue, static_cast<double>(*in), 1}));
}

void darkness_evaluate(void*, const CGFloat* in, CGFloat* out) {
  out[0] = out[1] = out[2] = 0;
  out[3] = 1 - *in;
}

void hue_evaluate(void*, const CGFloat* in, CGFloat* out) {
  put(out, *color_of({static_cast<double>(*in), 1, 1}));
}

void clip_to_rounded(CGContextRef context, NSRect rect, CGFloat radius) {
  CGContextBeginPath(context);
  add_rounded_rect(context, rect, 2 * radius, 2 * radius);
  CGContextClip(context);
}

/// A line just inside the rectangle that sets it off from what surrounds it.
void stroke_edge(CGContextRef context, NSRect rect) {
  CGContextBeginPath(context);
  add_rounded_rect(context, NSInsetRect(rect, CGFloat(0.5), CGFloat(0.5)), 2 * corner, 2 * corner);
  CGContextSetLineWidth(context, 1);
  CGContextSetRGBStrokeColor(context, 0, 0, 0, CGFloat(0.55));
  CGContextStrokePath(context);
}

/// White between two dark lines: seen on any colour.
void stroke_marker(CGContextRef context, NSRect rect, CGFloat radius) {
  constexpr struct {
    CGFloat width;
    CGFloat grey;
    CGFloat alpha;
  } lines[] = {{4, 0, CGFloat(0.6)}, {2, 1, 1}};
  for (const auto& line : lines) {
    CGContextBeginPath(context);
    add_rounded_rect(context, rect, 2 * radius, 2 * radius);
    CGContextSetLineWidth(context, line.width);
    CGContextSetRGBStrokeColor(context, line.grey, line.grey, line.grey, line.alpha);
    CGContextStrokePath(context);
  }
}

/// Where a point lies along an extent of so many points, 0 at the first and 1 at the last.
double along(CGFloat position, CGFloat extent) {
  const auto last = static_cast<double>(extent) - 1;
  return last > 0 ? std::clamp(static_cast<double>(position) / last, 0.0, 1.0) : 0;
}

/// The centre of the point that lies there.
CGFloat place(double fraction, CGFloat extent) {
  return CGFloat(0.5) + static_cast<CGFloat>(fraction) * std::max(CGFloat(0), extent - 1);
}

}  // namespace

void SaturationBrightnessView::show(const Hsb& hsb) {
  hsb_ = hsb;
  setNeedsDisplay(true);
}

NSRect SaturationBrightnessView::fieldRect() const {
  return NSInsetRect(bounds(), ring_margin, ring_margin);
}

void SaturationBrightnessView::pick(NSEvent* event) {
  const NSPoint where = convertPoint_fromView(event->locationInWindow(), nullptr);
  const NSRect field = fieldRect();
  if (picked) {
    picked({hsb_.hue, along(where.x - NSMinX(field), NSWidth(field)),
            along(where.y - NSMinY(field), NSHeight(field))});
  }
}

void SaturationBrightnessView::drawRect(NSRect) {
  CGContextRef context = port();
  const NSRect field = fieldRect();
  CGContextSaveGState(context);
  clip_to_rounded(context, field, corner);
  drawField(context);
  CGContextRestoreGState(context);
  stroke_edge(context, field);
  const CGFloat x = NSMinX(field) + place(hsb_.saturation, NSWidth(field)) - ring_radius;
  const CGFloat y = NSMinY(field) + place(hsb_.brightness, NSHeight(field)) - ring_radius;
  stroke_marker(context, NSMakeRect(x, y, 2 * ring_radius, 2 * ring_radius), ring_radius);
}

/// White to the hue, under a veil of black: exactly the colour that a point stands for.
void SaturationBrightnessView::drawField(CGContextRef context) const {
  const NSRect centres = NSInsetRect(fieldRect(), CGFloat(0.5), CGFloat(0.5));
  const CGPoint origin = centres.origin;
  Hsb hue = hsb_;
  paint(context, origin, {NSMaxX(centres), origin.y}, saturation_evaluate, &hue);
  paint(context, origin, {origin.x, NSMaxY(centres)}, darkness_evaluate, nullptr);
}

void HueView::show(const Hsb& hsb) {
  hsb_ = hsb;
  setNeedsDisplay(true);
}

void HueView::pick(NSEvent* event) {
  const NSPoint where = convertPoint_fromView(event->locationInWindow(), nullptr);
  if (picked)
    picked({along(where.y, NSHeight(bounds())), hsb_.saturation, hsb_.brightness});
}

void HueView::drawRect(NSRect) {
  CGContextRef context = port();
  const auto half = CGFloat(0.5);
  CGContextSaveGState(context);
  clip_to_rounded(context, bounds(), corner);
  paint(context, {half, half}, {half, NSHeight(bounds()) - half}, hue_evaluate, nullptr);
  CGContextRestoreGState(context);
  stroke_edge(context, bounds());
  const CGFloat lowest = bar_height / 2 + 2;
  const CGFloat y = std::clamp(place(hsb_.hue, NSHeight(bounds())), lowest, NSHeight(bounds()) - lowest);
  stroke_marker(context, NSMakeRect(2, y - bar_height / 2, NSWidth(bounds()) - 4, bar_height), 2);
}

void ColorComparisonView::show(NSColor* current, NSColor* previous) {
  current_ = current;
  previous_ = previous;
  setNeedsDisplay(true);
}

NSRect ColorComparisonView::half(bool right) const {
  const CGFloat middle = std::round(NSWidth(bounds()) / 2);
  return right ? NSMakeRect(middle, 0, NSWidth(bounds()) - middle, NSHeight(bounds()))
               : NSMakeRect(0, 0, middle, NSHeight(bounds()));
}

void ColorComparisonView::mouseDown(NSEvent* event) {
  const NSPoint where = convertPoint_fromView(event->locationInWindow(), nullptr);
  if (restored && NSPointInRect(where, half(true)))
    restored();
}

void ColorComparisonView::drawRect(NSRect) {
  CGContextRef context = port();
  CGContextSaveGState(context);
  clip_to_rounded(context, bounds(), corner);
  for (const bool right : {false, true}) {
    if (const Ref<NSColor>& color = right ? previous_ : current_) {
      color->set();
      CGContextFillRect(context, half(right));
    }
  }
  CGContextRestoreGState(context);
  stroke_edge(context, bounds());
}

}  // namespace cocoa
