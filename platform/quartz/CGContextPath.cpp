// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "quartz/private/context.h"

namespace cocoa {

namespace {

DevicePoint point(CGFloat x, CGFloat y) {
  return {static_cast<double>(x), static_cast<double>(y)};
}

/// At a scale that is not whole, sides go to the nearest pixel edges: where two half-covered sides meet,
/// such as those of a capsule's cap and body, what is below would show through as a seam. The tolerance keeps
/// sides together that were computed in different ways and fall midway between two edges. At a whole scale
/// sides go to edges that they miss by no more than what rounding did to them.
double snapped(double v, double scale) {
  constexpr double noise = 1.0 / 1024;
  const double nearest = std::floor(v + 0.5 + 1e-4);
  return scale == std::floor(scale) && std::abs(v - nearest) > noise ? v : nearest;
}

/// Of an upright rectangle, whose sides go to pixel edges, those pixels; else none.
PixelBounds clip_pixels(const CGContext& context, CGRect rect) {
  const Matrix& m = context.state().ctm;
  const auto x = static_cast<double>(rect.origin.x);
  const auto y = static_cast<double>(rect.origin.y);
  const DevicePoint a = m.apply(x, y);
  const DevicePoint b =
      m.apply(x + static_cast<double>(rect.size.width), y + static_cast<double>(rect.size.height));
  if (m.xy != 0 || m.yx != 0)
    return {};
  PixelBounds pixels;
  const double sides[] = {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
  int* const edges[] = {&pixels.x0, &pixels.y0, &pixels.x1, &pixels.y1};
  for (int i = 0; i < 4; ++i) {
    const double side = snapped(sides[i], context.scale);
    // Also false of what is no number.
    if (!(std::abs(side) < max_coordinate && side == std::floor(side)))
      return {};
    *edges[i] = static_cast<int>(side);
  }
  return pixels;
}

void add_clip_rect(CGContext& context, CGRect rect) {
  PathData& path = context.path;
  path.add_rect(context.state().ctm, rect);
  if (!path.is_box())
    return;
  const auto edge = [&context](double v) { return static_cast<CGFloat>(snapped(v, context.scale)); };
  const DeviceBox box = path.bounds();
  const CGRect pixels =
      CGRectMake(edge(box.x0), edge(box.y0), edge(box.x1) - edge(box.x0), edge(box.y1) - edge(box.y0));
  if (NSIsEmptyRect(pixels))
    return;
  path.clear();
  path.add_rect(identity_matrix, pixels);
}

void clip_to_path(CGContextRef context, FillRule rule) {
  if (context && !context->path.empty())
    context->clip(context->fill_coverage(context->take_path(), rule));
}

}  // namespace

void CGContext::clip(const Coverage& coverage) {
  GraphicsState& s = state();
  s.clip = intersection(s.clip, coverage);
  if (s.has_shadow)
    s.shadow.casting = intersection(s.shadow.casting, coverage);
}

void CGContextBeginPath(CGContextRef context) {
  if (context)
    context->path.clear();
}
void CGContextMoveToPoint(CGContextRef context, CGFloat x, CGFloat y) {
  if (context)
    context->path.move_to(context->state().ctm, static_cast<double>(x), static_cast<double>(y));
}
void CGContextAddLineToPoint(CGContextRef context, CGFloat x, CGFloat y) {
  if (context)
    context->path.line_to(context->state().ctm, static_cast<double>(x), static_cast<double>(y));
}
void CGContextAddArcToPoint(CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2,
                            CGFloat radius) {
  if (context) {
    context->path.add_arc_to_point(context->state().ctm, point(x1, y1), point(x2, y2),
                                   static_cast<double>(radius));
  }
}
void CGContextAddEllipseInRect(CGContextRef context, CGRect rect) {
  if (context)
    context->path.add_ellipse(context->state().ctm, rect);
}
void CGContextAddRect(CGContextRef context, CGRect rect) {
  if (context)
    context->path.add_rect(context->state().ctm, rect);
}
void CGContextAddPath(CGContextRef context, CGPathRef path) {
  if (context && path)
    context->path.add_path(context->state().ctm, path_data_of(*path));
}
void CGContextClosePath(CGContextRef context) {
  if (context)
    context->path.close();
}
bool CGContextIsPathEmpty(CGContextRef context) {
  return !context || context->path.empty();
}
CGPoint CGContextGetPathCurrentPoint(CGContextRef context) {
  if (!context || !context->path.has_current_point())
    return {};
  const auto to_user = inverse(context->state().ctm);
  if (!to_user)
    return {};
  const DevicePoint at = context->path.current_point();
  const DevicePoint p = to_user->apply(at.x, at.y);
  return {static_cast<CGFloat>(p.x), static_cast<CGFloat>(p.y)};
}

void CGContextClip(CGContextRef context) {
  clip_to_path(context, FillRule::nonzero);
}
void CGContextEOClip(CGContextRef context) {
  clip_to_path(context, FillRule::even_odd);
}
void CGContextClipToRect(CGContextRef context, CGRect rect) {
  if (!context)
    return;
  context->path.clear();
  // A rectangle without area, or with numbers that are none, becomes a path that encloses nothing.
  const bool is_empty = NSIsEmptyRect(rect);
  if (const PixelBounds pixels = is_empty ? PixelBounds{} : clip_pixels(*context, rect); !pixels.empty()) {
    context->clip(box_coverage(pixels));
    return;
  }
  if (!is_empty)
    add_clip_rect(*context, rect);
  context->clip(context->fill_coverage(context->take_path(), FillRule::nonzero));
}
CGRect CGContextGetClipBoundingBox(CGContextRef context) {
  if (!context || context->state().clip.bounds.empty())
    return {};
  const auto to_user = inverse(context->state().ctm);
  if (!to_user)
    return {};
  const PixelBounds& b = context->state().clip.bounds;
  DeviceBox box;
  for (const auto& [x, y] : {std::pair{b.x0, b.y0}, {b.x1, b.y0}, {b.x0, b.y1}, {b.x1, b.y1}}) {
    const DevicePoint p = to_user->apply(x, y);
    box.add(p.x, p.y);
  }
  return rect_from_box(box);
}

}  // namespace cocoa
