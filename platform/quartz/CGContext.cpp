// SPDX-License-Identifier: MIT
#include "quartz/CGContext.h"

#include <algorithm>
#include <cmath>

#include "quartz/private/context.h"

namespace cocoa {

namespace {

/// Replaces the transform, unless that would leave numbers with which nothing can be drawn.
void set_ctm(CGContext& context, const Matrix& m) {
  if (finite(m))
    context.state().ctm = m;
}

void set_shadow(CGContext& context, CGSize offset, CGFloat blur, const Rgba& color) {
  auto& state = context.state();
  const double dx = static_cast<double>(offset.width) * context.scale;
  const double dy = -static_cast<double>(offset.height) * context.scale;
  const double radius = static_cast<double>(blur) * context.scale;
  constexpr double max_blur = 1000;
  state.has_shadow = color.alpha > 0 && std::abs(dx) < max_coordinate && std::abs(dy) < max_coordinate;
  state.shadow = {
      color, dx, dy, radius > 0 ? std::min(radius, max_blur) : 0, state.clip, box_coverage(everywhere)};
}

}  // namespace

CGContext::CGContext(const PixelView& bitmap, double device_pixels_a_point) : scale(device_pixels_a_point) {
  const PixelBounds& bounds = bitmap.bounds;
  base = {scale, 0, 0, -scale, 0, static_cast<double>(bounds.height())};
  Target target{{}, bitmap, {}, 0};
  if (!bitmap.data)
    target.allocate();
  targets.push_back(std::move(target));
  GraphicsState first;
  first.ctm = base;
  first.clip = box_coverage(bounds);
  states.push_back(first);
}

const PathData& CGContext::take_path() {
  std::swap(path, taken_);
  path.clear();
  return taken_;
}

void CGContextRelease(CGContextRef context) {
  release_counted(context);
}

void CGContextSaveGState(CGContextRef context) {
  if (context)
    context->states.emplace_back(context->state());
}
void CGContextRestoreGState(CGContextRef context) {
  if (context && context->states.size() > context->target().first_state + 1)
    context->states.pop_back();
}

void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty) {
  CGContextConcatCTM(context, CGAffineTransformMakeTranslation(tx, ty));
}
void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy) {
  CGContextConcatCTM(context, CGAffineTransformMakeScale(sx, sy));
}
void CGContextConcatCTM(CGContextRef context, CGAffineTransform transform) {
  if (context)
    set_ctm(*context, product(matrix_from(transform), context->state().ctm));
}
CGAffineTransform CGContextGetCTM(CGContextRef context) {
  if (!context)
    return CGAffineTransformIdentity;
  const auto to_base = inverse(context->base);
  return to_base ? transform_from(product(context->state().ctm, *to_base)) : CGAffineTransformIdentity;
}
CGAffineTransform CGContextGetUserSpaceToDeviceSpaceTransform(CGContextRef context) {
  if (!context)
    return CGAffineTransformIdentity;
  const auto scale = static_cast<CGFloat>(context->scale);
  return CGAffineTransformConcat(CGContextGetCTM(context), CGAffineTransformMakeScale(scale, scale));
}

void CGContextSetLineWidth(CGContextRef context, CGFloat width) {
  if (context && width >= 0 && std::isfinite(width))
    context->state().pen.width = static_cast<double>(width);
}
void CGContextSetLineCap(CGContextRef context, CGLineCap cap) {
  if (!context)
    return;
  context->state().pen.cap = cap == kCGLineCapRound    ? LineCap::round
                             : cap == kCGLineCapSquare ? LineCap::square
                                                       : LineCap::butt;
}
void CGContextSetLineJoin(CGContextRef context, CGLineJoin join) {
  if (!context)
    return;
  context->state().pen.join = join == kCGLineJoinRound   ? LineJoin::round
                              : join == kCGLineJoinBevel ? LineJoin::bevel
                                                         : LineJoin::miter;
}
void CGContextSetShouldAntialias(CGContextRef context, bool shouldAntialias) {
  if (context)
    context->state().antialias = shouldAntialias;
}
void CGContextSetAlpha(CGContextRef context, CGFloat alpha) {
  if (context && !std::isnan(alpha))
    context->state().alpha = unit_value(static_cast<double>(alpha));
}

void CGContextSetStrokeColorWithColor(CGContextRef context, CGColorRef color) {
  if (context && color)
    context->state().stroke = color->rgba();
}
void CGContextSetRGBFillColor(CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) {
  if (!context)
    return;
  const CGFloat components[] = {red, green, blue, alpha};
  context->state().fill = rgba_from_components(ColorModel::rgb, components);
}
void CGContextSetRGBStrokeColor(CGContextRef context, CGFloat red, CGFloat green, CGFloat blue,
                                CGFloat alpha) {
  if (!context)
    return;
  const CGFloat components[] = {red, green, blue, alpha};
  context->state().stroke = rgba_from_components(ColorModel::rgb, components);
}

void CGContextSetShadowWithColor(CGContextRef context, CGSize offset, CGFloat blur, CGColorRef color) {
  if (context)
    set_shadow(*context, offset, blur, color ? color->rgba() : Rgba{0, 0, 0, 0});
}

}  // namespace cocoa
