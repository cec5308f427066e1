#include <algorithm>
#include <cmath>

#include "quartz/context.h"

namespace cocoa {

namespace {

PathData::Point point(CGFloat x, CGFloat y) {
  return {static_cast<double>(x), static_cast<double>(y)};
}

/// At a scale that is not whole, sides go to the nearest pixel edges: where two half-covered sides meet,
/// such as those of a capsule's cap and body, what is below would show through as a seam. The tolerance keeps
/// sides together that were computed in different ways and fall midway between two edges. At a whole scale
/// sides go to edges that they miss by no more than what rounding did to them.
void add_clip_rect(CGContext& context, CGRect rect) {
  PathData& path = context.path;
  path.add_rect(context.state().ctm, rect);
  if (!path.is_box())
    return;
  const bool whole_scale = context.scale == std::floor(context.scale);
  const auto snapped = [whole_scale](double v) {
    constexpr double noise = 1.0 / 1024;
    const double nearest = std::floor(v + 0.5 + 1e-4);
    return static_cast<CGFloat>(whole_scale && std::abs(v - nearest) > noise ? v : nearest);
  };
  const DeviceBox box = path.bounds();
  const CGRect pixels = CGRectMake(snapped(box.x0), snapped(box.y0), snapped(box.x1) - snapped(box.x0),
                                   snapped(box.y1) - snapped(box.y0));
  if (NSIsEmptyRect(pixels))
    return;
  path.clear();
  path.add_rect(identity_matrix, pixels);
}

void clip_to_path(CGContextRef context, cairo_fill_rule_t rule) {
  if (context && !context->path.empty())
    context->clip(context->take_path(), rule);
}

}  // namespace

void CGContext::clip(const PathData& clip_path, cairo_fill_rule_t rule) {
  GraphicsState& s = state();
  if (s.clip_count == clips.size())
    clips.emplace_back();
  ClipPath& entry = clips[s.clip_count];
  entry.path = clip_path;
  entry.rule = rule;
  entry.antialias = s.antialias;
  const DeviceBox box = clip_path.bounds();
  entry.bounds = box.pixels();
  const auto whole = [](double v) { return v == std::floor(v); };
  entry.is_bounds = clip_path.is_box() && whole(box.x0) && whole(box.y0) && whole(box.x1) && whole(box.y1);
  s.clip_is_bounds = s.clip_is_bounds && entry.is_bounds;
  s.clip_bounds = intersection(s.clip_bounds, entry.bounds);
  if (target().cr)
    apply_clips(cr(), s.clip_count, s.clip_count + 1);
  ++s.clip_count;
}

void CGContext::apply_clips(cairo_t* on, size_t first, size_t last) const {
  for (size_t i = first; i < last; ++i) {
    const ClipPath& entry = clips[i];
    cairo_new_path(on);
    entry.path.append_to(on);
    cairo_set_fill_rule(on, entry.rule);
    cairo_set_antialias(on, entry.antialias ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
    cairo_clip(on);
  }
}

namespace {

bool same_shape(const ClipPath& a, const ClipPath& b) {
  return a.rule == b.rule && a.antialias == b.antialias && a.path == b.path;
}

Surface coverage_of(const ClipPath& shape) {
  const PixelBounds& b = shape.bounds;
  Surface coverage(cairo_image_surface_create(CAIRO_FORMAT_A8, b.width(), b.height()));
  cairo_surface_set_device_offset(coverage.get(), -b.x0, -b.y0);
  const Cairo cr(cairo_create(coverage.get()));
  shape.path.append_to(cr.get());
  cairo_set_fill_rule(cr.get(), shape.rule);
  cairo_set_antialias(cr.get(), shape.antialias ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
  cairo_fill(cr.get());
  cairo_surface_flush(coverage.get());
  return coverage;
}

}  // namespace

const ShapeMask* CGContext::mask_of_clips(size_t first) {
  // The editor has 21 capsule ends and circles.
  constexpr size_t most_masks = 32;
  // The knob at four pixels a point has half as many.
  constexpr int64_t most_pixels = 1 << 20;
  const ClipPath* shape = nullptr;
  for (size_t i = first; i < state().clip_count; ++i) {
    if (clips[i].is_bounds)
      continue;
    if (shape)
      return nullptr;
    shape = &clips[i];
  }
  if (!shape || shape->bounds.empty() ||
      int64_t{shape->bounds.width()} * shape->bounds.height() > most_pixels)
    return nullptr;
  auto known = std::find_if(masks_.begin(), masks_.end(),
                            [&](const ShapeMask& mask) { return same_shape(mask.shape, *shape); });
  if (known == masks_.end()) {
    if (masks_.size() == most_masks)
      masks_.pop_back();
    known = masks_.insert(masks_.end(), {*shape, coverage_of(*shape)});
  }
  std::rotate(masks_.begin(), known, known + 1);
  return &masks_.front();
}

PixelBounds CGContext::bounds_of_clips(size_t first, size_t last, PixelBounds within) const {
  for (size_t i = first; i < last; ++i)
    within = intersection(within, clips[i].bounds);
  return within;
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
void CGContextAddCurveToPoint(CGContextRef context, CGFloat cp1x, CGFloat cp1y, CGFloat cp2x, CGFloat cp2y,
                              CGFloat x, CGFloat y) {
  if (context)
    context->path.curve_to(context->state().ctm, {point(cp1x, cp1y), point(cp2x, cp2y), point(x, y)});
}
void CGContextAddArc(CGContextRef context, CGFloat x, CGFloat y, CGFloat radius, CGFloat startAngle,
                     CGFloat endAngle, int clockwise) {
  if (context) {
    context->path.add_arc(context->state().ctm, point(x, y), static_cast<double>(radius),
                          static_cast<double>(startAngle), static_cast<double>(endAngle), clockwise != 0);
  }
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
  cairo_matrix_t to_user = context->state().ctm;
  if (cairo_matrix_invert(&to_user) != CAIRO_STATUS_SUCCESS)
    return {};
  auto p = context->path.current_point();
  cairo_matrix_transform_point(&to_user, &p.x, &p.y);
  return {static_cast<CGFloat>(p.x), static_cast<CGFloat>(p.y)};
}

void CGContextClip(CGContextRef context) {
  clip_to_path(context, CAIRO_FILL_RULE_WINDING);
}
void CGContextEOClip(CGContextRef context) {
  clip_to_path(context, CAIRO_FILL_RULE_EVEN_ODD);
}
void CGContextClipToRect(CGContextRef context, CGRect rect) {
  if (!context)
    return;
  context->path.clear();
  // A rectangle without area, or with numbers that are none, becomes a path that encloses nothing.
  if (!NSIsEmptyRect(rect))
    add_clip_rect(*context, rect);
  context->clip(context->take_path(), CAIRO_FILL_RULE_WINDING);
}
CGRect CGContextGetClipBoundingBox(CGContextRef context) {
  if (!context || context->state().clip_bounds.empty())
    return {};
  cairo_matrix_t to_user = context->state().ctm;
  if (cairo_matrix_invert(&to_user) != CAIRO_STATUS_SUCCESS)
    return {};
  const PixelBounds& b = context->state().clip_bounds;
  DeviceBox box;
  for (const auto& [x, y] : {std::pair{b.x0, b.y0}, {b.x1, b.y0}, {b.x0, b.y1}, {b.x1, b.y1}}) {
    double ux = x;
    double uy = y;
    cairo_matrix_transform_point(&to_user, &ux, &uy);
    box.add(ux, uy);
  }
  return rect_from_box(box);
}

}  // namespace cocoa
