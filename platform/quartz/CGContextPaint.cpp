// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "quartz/private/context.h"

namespace cocoa {

namespace {

/// Beyond this many pixels a shape is not kept: what is drawn often is smaller.
constexpr int64_t most_pixels = 1 << 20;

}  // namespace

Coverage CGContext::fill_coverage(const PathData& shape, FillRule rule) {
  if (shape.empty())
    return box_coverage({});
  if (shape.is_whole_pixels()) {
    const DeviceBox box = shape.bounds();
    const auto nearest = [](double v) { return static_cast<int>(std::round(v)); };
    return box_coverage({nearest(box.x0), nearest(box.y0), nearest(box.x1), nearest(box.y1)});
  }
  return shape_coverage(shape, rule, nullptr);
}

Coverage CGContext::stroke_coverage(const PathData& shape) {
  // Most outlines go around what is drawn anew.
  const int reach =
      static_cast<int>(std::ceil(std::min(stroke_reach(state().pen, state().ctm), max_coordinate)));
  if (!shape.passes(visible_bounds().grown(reach)))
    return box_coverage({});
  return shape_coverage(shape, FillRule::nonzero, &state().pen);
}

Coverage CGContext::shape_coverage(const PathData& shape, FillRule rule, const Pen* pen) {
  const DevicePoint origin = placed_.place(shape);
  const auto x = static_cast<int>(origin.x);
  const auto y = static_cast<int>(origin.y);
  const Matrix& m = state().ctm;
  // Below the tag of shadows.
  const int tag = (pen ? 4 : 0) + (rule == FillRule::even_odd ? 2 : 0) + (state().antialias ? 1 : 0);
  key_.assign(1, tag);
  if (pen) {
    key_.insert(key_.end(), {pen->width, pen->miter_limit, static_cast<double>(pen->cap),
                             static_cast<double>(pen->join), m.xx, m.yx, m.xy, m.yy});
  }
  placed_.add_to(key_);
  if (const Coverage* const known = coverage_.find(key_))
    return moved(*known, x, y);
  placed_.flatten(lines_);
  outline_.clear();
  if (pen) {
    stroke_outline(lines_, *pen, {m.xx, m.yx, m.xy, m.yy, 0, 0}, outline_);
  } else {
    fill_outline(lines_, outline_);
  }
  return moved(outline_coverage(rule, moved_by(visible_bounds(), -x, -y)), x, y);
}

Coverage CGContext::outline_coverage(FillRule rule, PixelBounds needed) {
  const PixelBounds bounds = outline_.bounds();
  const PixelBounds seen = intersection(bounds, needed);
  if (outline_.empty() || seen.empty())
    return box_coverage({});
  if (outline_.is_whole_pixels())
    return box_coverage(bounds);
  const bool is_kept = int64_t{bounds.width()} * bounds.height() <= most_pixels;
  const int x = bounds.x0;
  const int y = bounds.y0;
  outline_.move(-x, -y);
  const PixelBounds area = moved_by(is_kept ? bounds : seen, -x, -y);
  const auto width = static_cast<size_t>(area.width());
  const size_t count = width * static_cast<size_t>(area.height());
  const auto bytes = std::make_unique_for_overwrite<uint8_t[]>(count);
  rasterizer_.draw(outline_, rule, area, bytes.get(), width);
  if (!state().antialias) {
    for (size_t i = 0; i < count; ++i)
      bytes[i] = bytes[i] < 128 ? 0 : 255;
  }
  const Coverage coverage = moved(byte_coverage(area, bytes.get()), x, y);
  if (is_kept)
    coverage_.keep(key_, coverage);
  return coverage;
}

const PixelView& CGContext::pixels() {
  Target& layer = target();
  if (!layer.pixels.data && !layer.pixels.bounds.empty())
    layer.allocate();
  if (const auto only = std::exchange(layer.only, std::nullopt)) {
    PlainSource source(only->color);
    paint(layer.pixels, only->shape, box_coverage(only->shape.bounds), source);
    layer.painted = only->shape.bounds;
  }
  return layer.pixels;
}

void CGContext::draw(std::span<const Part> parts) {
  Target& layer = target();
  const FineColor* const color = parts.size() == 1 ? parts.front().source.one_color() : nullptr;
  if (!layer.pixels.data && !layer.only && color && !state().has_shadow) {
    const Coverage clip = intersection(state().clip, box_coverage(layer.pixels.bounds));
    layer.only = PlainShape{intersection(parts.front().shape, clip), *color};
    return;
  }
  // Also when nothing of it can be seen here: what a layer looks like does not depend on the part that is
  // seen.
  pixels();
  if (state().has_shadow)
    cast_shadow(parts);
  for (const Part& part : parts) {
    const PixelBounds area = intersection(part.shape.bounds, state().clip.bounds);
    if (area.empty())
      continue;
    paint(pixels(), part.shape, state().clip, part.source);
    target().painted = union_of(target().painted, area);
  }
}

void CGContextDrawPath(CGContextRef context, CGPathDrawingMode mode) {
  if (!context)
    return;
  const PathData& path = context->take_path();
  PlainSource fill(context->fine(context->state().fill));
  PlainSource stroke(context->fine(context->state().stroke));
  std::vector<Part> parts;
  if (mode != kCGPathStroke)
    parts.push_back({context->fill_coverage(path, FillRule::nonzero), fill});
  if (mode != kCGPathFill)
    parts.push_back({context->stroke_coverage(path), stroke});
  context->draw(parts);
}
void CGContextFillPath(CGContextRef context) {
  CGContextDrawPath(context, kCGPathFill);
}
void CGContextStrokePath(CGContextRef context) {
  CGContextDrawPath(context, kCGPathStroke);
}

void CGContextFillRect(CGContextRef context, CGRect rect) {
  CGContextBeginPath(context);
  CGContextAddRect(context, rect);
  CGContextFillPath(context);
}
void CGContextStrokeRect(CGContextRef context, CGRect rect) {
  CGContextBeginPath(context);
  CGContextAddRect(context, rect);
  CGContextStrokePath(context);
}
void CGContextStrokeRectWithWidth(CGContextRef context, CGRect rect, CGFloat width) {
  if (!context)
    return;
  const double line_width = context->state().pen.width;
  CGContextSetLineWidth(context, width);
  CGContextStrokeRect(context, rect);
  context->state().pen.width = line_width;
}
void CGContextClearRect(CGContextRef context, CGRect rect) {
  if (!context)
    return;
  CGContextBeginPath(context);
  CGContextAddRect(context, rect);
  const PathData& path = context->take_path();
  // A layer on which nothing has been drawn is clear.
  if (context->target().pixels.data || context->target().only)
    clear(context->pixels(), context->fill_coverage(path, FillRule::nonzero), context->state().clip);
}

}  // namespace cocoa
