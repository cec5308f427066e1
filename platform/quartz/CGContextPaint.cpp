#include <algorithm>
#include <cmath>

#include "quartz/private/context.h"

namespace cocoa {

Coverage CGContext::outline_coverage(FillRule rule) {
  return coverage_.find(outline_, rule, state().antialias, visible_bounds());
}

Coverage CGContext::fill_coverage(const PathData& shape, FillRule rule) {
  shape.flatten(lines_);
  outline_.clear();
  fill_outline(lines_, outline_);
  return outline_coverage(rule);
}

Coverage CGContext::stroke_coverage(const PathData& shape) {
  // Most outlines go around what is drawn anew.
  const int reach =
      static_cast<int>(std::ceil(std::min(stroke_reach(state().pen, state().ctm), max_coordinate)));
  if (!shape.passes(visible_bounds().grown(reach)))
    return box_coverage({});
  shape.flatten(lines_);
  outline_.clear();
  stroke_outline(lines_, state().pen, state().ctm, outline_);
  return outline_coverage(FillRule::nonzero);
}

const PixelView& CGContext::pixels() {
  Target& layer = target();
  if (!layer.pixels.data)
    layer.allocate();
  return layer.pixels;
}

void CGContext::draw(std::span<const Part> parts) {
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
  const bool even_odd = mode == kCGPathEOFill || mode == kCGPathEOFillStroke;
  PlainSource fill(context->fine(context->state().fill));
  PlainSource stroke(context->fine(context->state().stroke));
  std::vector<Part> parts;
  if (mode != kCGPathStroke)
    parts.push_back({context->fill_coverage(path, even_odd ? FillRule::even_odd : FillRule::nonzero), fill});
  if (mode >= kCGPathStroke)
    parts.push_back({context->stroke_coverage(path), stroke});
  context->draw(parts);
}
void CGContextFillPath(CGContextRef context) {
  CGContextDrawPath(context, kCGPathFill);
}
void CGContextEOFillPath(CGContextRef context) {
  CGContextDrawPath(context, kCGPathEOFill);
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
void CGContextFillEllipseInRect(CGContextRef context, CGRect rect) {
  CGContextBeginPath(context);
  CGContextAddEllipseInRect(context, rect);
  CGContextFillPath(context);
}
void CGContextStrokeEllipseInRect(CGContextRef context, CGRect rect) {
  CGContextBeginPath(context);
  CGContextAddEllipseInRect(context, rect);
  CGContextStrokePath(context);
}
void CGContextClearRect(CGContextRef context, CGRect rect) {
  if (!context)
    return;
  CGContextBeginPath(context);
  CGContextAddRect(context, rect);
  const PathData& path = context->take_path();
  // A layer on which nothing has been drawn is clear.
  if (context->target().pixels.data)
    clear(context->pixels(), context->fill_coverage(path, FillRule::nonzero), context->state().clip);
}

}  // namespace cocoa
