#include "quartz/context.h"
#include "quartz/shading_painter.h"

namespace cocoa {

namespace {

/// Straight into the target's memory.
void paint_directly(CGContext& context, ShadingPainter& painter) {
  const Target& target = context.target();
  const PixelBounds area = context.state().clip_bounds;
  if (area.empty())
    return;
  cairo_surface_t* surface = target.surface.get();
  cairo_surface_flush(surface);
  auto* pixels = reinterpret_cast<uint32_t*>(cairo_image_surface_get_data(surface));
  const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(surface)) / sizeof(uint32_t);
  if (!pixels)
    return;
  const PixelView all{pixels, stride, target.bounds};
  painter.paint_over({all.row(area.y0) + (area.x0 - target.bounds.x0), stride, area});
  cairo_surface_mark_dirty(surface);
}

/// Through a picture of the shading, for Cairo to clip.
void paint_through_clip(CGContext& context, ShadingPainter& painter) {
  const PixelBounds area = picture_bounds(context);
  if (area.empty())
    return;
  const auto width = static_cast<size_t>(area.width());
  context.scratch.resize(std::max(context.scratch.size(), width * static_cast<size_t>(area.height())));
  painter.fill({context.scratch.data(), width, area});
  const Surface picture(cairo_image_surface_create_for_data(
      reinterpret_cast<unsigned char*>(context.scratch.data()), CAIRO_FORMAT_ARGB32, area.width(),
      area.height(), area.width() * static_cast<int>(sizeof(uint32_t))));
  paint_object(context, area, [&](cairo_t* cr) {
    cairo_set_source_surface(cr, picture.get(), area.x0, area.y0);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_BILINEAR);
    cairo_paint(cr);
  });
  // Cairo must not hold on to memory that the next shading overwrites.
  cairo_set_source_rgb(context.cr(), 0, 0, 0);
}

}  // namespace

void CGContextDrawShading(CGContextRef context, CGShadingRef shading) {
  if (!context || !shading)
    return;
  const GraphicsState& state = context->state();
  ShadingPainter painter(*shading, state.ctm, state.alpha, context->color_table);
  if (state.clip_is_bounds && !state.has_shadow) {
    paint_directly(*context, painter);
  } else {
    paint_through_clip(*context, painter);
  }
}

}  // namespace cocoa
