// SPDX-License-Identifier: MIT
#include "drawing/shading.h"

#include <cstdlib>
#include <new>

#include "appkit/NSGraphicsContext.h"
#include "drawing/color_rules.h"
#include "foundation/NSLog.h"

namespace ondex {

using namespace cocoa;

namespace {

/// One input, t, and four outputs: red, green, blue and alpha. The function owns `info` once it is made.
Function create_function(void* info, CGFunctionEvaluateCallback evaluate) {
  static constexpr CGFloat domain[] = {0, 1};
  static constexpr CGFloat range[] = {0, 1, 0, 1, 0, 1, 0, 1};
  const CGFunctionCallbacks callbacks = {0, evaluate, info ? release_two_color_info : nullptr};
  Function function(CGFunctionCreate(info, 1, domain, 4, range, &callbacks));
  if (!function)
    release_two_color_info(info);
  return function;
}

template <typename Record>
Function create_function_with(const Record& record, CGFunctionEvaluateCallback evaluate) {
  void* info = std::malloc(sizeof(Record));
  return info ? create_function(new (info) Record(record), evaluate) : nullptr;
}

/// `create` makes the shading of the function.
template <typename Create>
Shading create_shading(const Function& function, Create create) {
  if (!function) {
    NSLog("Error: couldn't create function for shading.");
    return nullptr;
  }
  Shading shading(create(function.get()));
  if (!shading)
    NSLog("Error: couldn't create shading.");
  return shading;
}

/// `clip` narrows the clip to what is to be filled.
template <typename Clip>
void fill(CGContextRef context, const Shading& shading, Clip clip) {
  if (!shading)
    return;
  CGContextSaveGState(context);
  clip();
  CGContextDrawShading(context, shading.get());
  CGContextRestoreGState(context);
}

void clip_to_ellipse(CGContextRef context, CGRect ellipse) {
  CGContextBeginPath(context);
  CGContextAddEllipseInRect(context, ellipse);
  CGContextClip(context);
}

}  // namespace

void release_two_color_info(void* info) {
  std::free(info);
}

CGColorSpaceRef device_RGB_color_space() {
  static auto* const space = CGColorSpaceCreateDeviceRGB();
  return space;
}

CGContextRef current_port() {
  const NSGraphicsContext* context = NSGraphicsContext::currentContext();
  return context ? context->graphicsPort() : nullptr;
}

Function create_shader_function(CGFunctionEvaluateCallback evaluate, const two_color_info* colors) {
  return colors ? create_function_with(*colors, evaluate) : create_function(nullptr, evaluate);
}

Function create_radial_shader_function(const CGFloat (&color_a)[3], const CGFloat (&color_b)[3]) {
  return create_function_with(
      two_color_rgb_info{color_a[0], color_a[1], color_a[2], color_b[0], color_b[1], color_b[2]},
      menu_rules::two_color_span_evaluate);
}

Shading create_axial_shading(const Function& function, CGPoint start, CGPoint end) {
  return create_shading(function, [&](CGFunctionRef of) {
    return CGShadingCreateAxial(device_RGB_color_space(), start, end, of, false, false);
  });
}

Shading create_radial_shading(const Function& function, Circle start, Circle end) {
  return create_shading(function, [&](CGFunctionRef of) {
    return CGShadingCreateRadial(device_RGB_color_space(), start.centre, start.radius, end.centre, end.radius,
                                 of, false, false);
  });
}

void fill_rect(CGContextRef context, CGRect rect, const Shading& shading) {
  fill(context, shading, [&] {
    // A capsule narrower than its caps has a middle of negative width. It is empty, not its own mirror image.
    CGContextClipToRect(context, NSIsEmptyRect(rect) ? CGRect{} : rect);
  });
}

void fill_ellipse(CGContextRef context, CGRect ellipse, const Shading& shading) {
  fill(context, shading, [&] { clip_to_ellipse(context, ellipse); });
}

void fill_rect_and_ellipse(CGContextRef context, CGRect rect, CGRect ellipse, const Shading& shading) {
  fill(context, shading, [&] {
    CGContextClipToRect(context, rect);
    clip_to_ellipse(context, ellipse);
  });
}

bool fill_band(CGContextRef context, const Function& function, CGPoint start, CGFloat width) {
  const Shading shading = create_axial_shading(function, start, {start.x + width, start.y});
  if (!shading)
    return false;
  CGContextDrawShading(context, shading.get());
  return true;
}

void fill_rect_upwards(CGContextRef context, CGRect rect, CGFunctionEvaluateCallback evaluate,
                       const two_color_info* colors) {
  const CGPoint top = {NSMinX(rect), NSMaxY(rect)};
  fill_rect(context, rect, create_axial_shading(create_shader_function(evaluate, colors), rect.origin, top));
}

}  // namespace ondex
