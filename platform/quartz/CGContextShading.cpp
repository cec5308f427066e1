#include "quartz/context.h"
#include "quartz/shading_painter.h"

namespace cocoa {

namespace {

/// Straight into the target's memory.
void paint_directly(CGContext& context, ShadingPainter& painter) {
  const PixelBounds area = context.state().clip_bounds;
  if (area.empty())
    return;
  cairo_surface_flush(cairo_get_target(context.cr()));
  const Target& target = context.target();
  cairo_surface_t* surface = target.surface.get();
  auto* pixels = reinterpret_cast<uint32_t*>(cairo_image_surface_get_data(surface));
  const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(surface)) / sizeof(uint32_t);
  if (!pixels)
    return;
  const PixelView all{pixels, stride, target.bounds};
  painter.paint_over({all.row(area.y0) + (area.x0 - target.bounds.x0), stride, area});
  cairo_surface_mark_dirty(surface);
}

void set_picture(cairo_t* cr, const Surface& picture) {
  cairo_set_source_surface(cr, picture.get(), 0, 0);
  cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_BILINEAR);
}

/// Cairo would paint a picture through the shape row by row, and a part of it not quite as it paints the
/// whole.
void draw_through(CGContext& context, const Surface& picture, const ShapeMask& mask) {
  const PixelBounds bounds = context.state().clip_bounds;
  if (bounds.empty())
    return;
  cairo_t* cr = context.cr();
  cairo_save(cr);
  cairo_reset_clip(cr);
  cairo_rectangle(cr, bounds.x0, bounds.y0, bounds.width(), bounds.height());
  cairo_clip(cr);
  set_picture(cr, picture);
  cairo_mask_surface(cr, mask.coverage.get(), 0, 0);
  cairo_restore(cr);
}

/// Through a picture of the shading.
void paint_through_clip(CGContext& context, ShadingPainter& painter) {
  const PixelBounds area = picture_bounds(context);
  if (area.empty())
    return;
  std::vector<uint32_t>& pixels = context.scratch;
  const auto width = static_cast<size_t>(area.width());
  pixels.resize(std::max(pixels.size(), width * static_cast<size_t>(area.height())));
  painter.fill({pixels.data(), width, area});
  const Surface picture = surface_on(pixels, area);
  const auto draw = [&picture](cairo_t* cr) {
    set_picture(cr, picture);
    cairo_paint(cr);
    // Cairo must not hold on to memory that the next shading overwrites.
    cairo_set_source_rgb(cr, 0, 0, 0);
  };
  const ShapeMask* mask = context.mask_of_clips(context.target().first_clip);
  if (context.state().has_shadow && !cast_shadow_of_picture(context, {pixels, area, 1, mask}))
    cast_shadow(context, area, draw);
  if (mask) {
    draw_through(context, picture, *mask);
  } else {
    draw(context.cr());
  }
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
