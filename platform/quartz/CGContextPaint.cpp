#include <algorithm>
#include <cmath>

#include "quartz/context.h"

namespace cocoa {

namespace {

struct PathPaint {
  bool fill = false;
  bool stroke = false;
  cairo_fill_rule_t rule = CAIRO_FILL_RULE_WINDING;
};

/// How far a stroke reaches from its path at most, in device pixels.
double stroke_reach(const GraphicsState& state) {
  const cairo_matrix_t& m = state.ctm;
  const double stretch = std::hypot(std::hypot(m.xx, m.yx), std::hypot(m.xy, m.yy));
  const double corner = state.join == CAIRO_LINE_JOIN_MITER ? std::max(state.miter_limit, 1.5) : 1.5;
  return std::min(state.line_width / 2 * stretch * corner, max_coordinate);
}

/// The outline of an ellipse has five segments; more than these has a curve that goes from point to point.
constexpr size_t many_segments = 32;

cairo_antialias_t smoothing(const GraphicsState& state) {
  return state.antialias ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE;
}

/// With the source that is set.
void fill_on(cairo_t* cr, const GraphicsState& state, const PathData& path, cairo_fill_rule_t rule) {
  cairo_set_antialias(cr, smoothing(state));
  cairo_new_path(cr);
  path.append_to(cr);
  cairo_set_fill_rule(cr, rule);
  cairo_fill(cr);
}

void stroke_on(cairo_t* cr, const GraphicsState& state, const PathData& path) {
  if (!invertible(state.ctm) || state.line_width <= 0)
    return;
  cairo_set_antialias(cr, smoothing(state));
  cairo_new_path(cr);
  path.append_to(cr);
  cairo_set_line_width(cr, state.line_width);
  cairo_set_line_cap(cr, state.cap);
  cairo_set_line_join(cr, state.join);
  cairo_set_miter_limit(cr, state.miter_limit);
  // The pen is round in user space; the path is in device pixels already. Relative to the matrix that is
  // there, which for a shadow moves everything.
  cairo_matrix_t before;
  cairo_get_matrix(cr, &before);
  cairo_transform(cr, &state.ctm);
  cairo_stroke(cr);
  cairo_set_matrix(cr, &before);
}

/// Makes a mask of what `draw` draws and blends the colour through it at once: Cairo blends what it
/// rasterises row by row, which for a large shape takes longer than the shape itself. It also rounds the
/// edges of a shape otherwise when it draws but a part of it, so the mask is of all of the shape.
template <typename Draw>
void paint_through_mask(CGContext& context, PixelBounds extents, const Rgba& color, const Draw& draw) {
  const PixelBounds seen = intersection(extents, context.state().clip_bounds);
  if (seen.empty())
    return;
  PixelBounds area = intersection(extents, context.targets.front().bounds);
  constexpr int64_t most_pixels = 1 << 22;
  if (int64_t{area.width()} * area.height() > most_pixels)
    area = seen;
  const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_A8, area.width());
  context.scratch.assign(static_cast<size_t>(stride) / sizeof(uint32_t) * static_cast<size_t>(area.height()),
                         0);
  const Surface mask(
      cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(context.scratch.data()),
                                          CAIRO_FORMAT_A8, area.width(), area.height(), stride));
  cairo_surface_set_device_offset(mask.get(), -area.x0, -area.y0);
  draw(Cairo(cairo_create(mask.get())).get());
  cairo_t* cr = context.cr();
  set_source(cr, color, context.state().alpha);
  cairo_mask_surface(cr, mask.get(), 0, 0);
}

void paint_path(CGContext& context, const PathPaint& paint) {
  const PathData& path = context.take_path();
  if (path.empty())
    return;
  const GraphicsState& state = context.state();
  const int reach = paint.stroke ? static_cast<int>(std::ceil(stroke_reach(state))) : 0;
  if (!paint.fill && !path.passes(picture_bounds(context).grown(reach)))
    return;
  const PixelBounds extents = path.bounds().pixels().grown(reach);
  const Rgba& color = paint.fill ? state.fill : state.stroke;
  const bool is_one_colour = paint.fill != paint.stroke;
  if (is_one_colour && color.alpha * state.alpha < 1 && !state.has_shadow &&
      path.segments() > many_segments) {
    paint_through_mask(context, extents, color, [&](cairo_t* cr) {
      paint.fill ? fill_on(cr, state, path, paint.rule) : stroke_on(cr, state, path);
    });
    return;
  }
  paint_object(context, extents, [&](cairo_t* cr) {
    if (paint.fill) {
      set_source(cr, state.fill, state.alpha);
      fill_on(cr, state, path, paint.rule);
    }
    if (paint.stroke) {
      set_source(cr, state.stroke, state.alpha);
      stroke_on(cr, state, path);
    }
  });
}

}  // namespace

void CGContextDrawPath(CGContextRef context, CGPathDrawingMode mode) {
  if (!context)
    return;
  const bool even_odd = mode == kCGPathEOFill || mode == kCGPathEOFillStroke;
  paint_path(*context, {.fill = mode != kCGPathStroke,
                        .stroke = mode >= kCGPathStroke,
                        .rule = even_odd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING});
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
  const double line_width = context->state().line_width;
  CGContextSetLineWidth(context, width);
  CGContextStrokeRect(context, rect);
  context->state().line_width = line_width;
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
  // A layer on which nothing has been drawn is clear.
  if (!context->target().cr)
    return;
  CGContextAddRect(context, rect);
  cairo_t* cr = context->cr();
  cairo_new_path(cr);
  context->take_path().append_to(cr);
  cairo_set_antialias(cr, context->state().antialias ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
  cairo_set_operator(cr, CAIRO_OPERATOR_CLEAR);
  cairo_fill(cr);
  cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
}

}  // namespace cocoa
