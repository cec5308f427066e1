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

/// A shading's pixels, ready to be drawn.
class ShadingPicture {
 public:
  ShadingPicture(CGContext& context, ShadingPainter& painter, PixelBounds area) {
    const auto width = static_cast<size_t>(area.width());
    context.scratch.resize(std::max(context.scratch.size(), width * static_cast<size_t>(area.height())));
    painter.fill({context.scratch.data(), width, area});
    surface_ = surface_on(context.scratch, area);
  }

  void draw(cairo_t* cr) const {
    set_source(cr);
    cairo_paint(cr);
    // Cairo must not hold on to memory that the next shading overwrites.
    cairo_set_source_rgb(cr, 0, 0, 0);
  }
  void draw_through(cairo_t* cr, const ShapeMask& mask, PixelBounds bounds) const {
    cairo_save(cr);
    cairo_rectangle(cr, bounds.x0, bounds.y0, bounds.width(), bounds.height());
    cairo_clip(cr);
    set_source(cr);
    cairo_mask_surface(cr, mask.coverage.get(), 0, 0);
    cairo_restore(cr);
  }

 private:
  void set_source(cairo_t* cr) const {
    cairo_set_source_surface(cr, surface_.get(), 0, 0);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_BILINEAR);
  }

  Surface surface_;
};

/// Cairo would paint a picture through the shape row by row, and a part of it not quite as it paints the
/// whole.
void draw_through_shape(CGContext& context, const ShadingPicture& picture, const ShapeMask& mask) {
  const GraphicsState& state = context.state();
  if (state.has_shadow) {
    const PixelBounds casting =
        context.bounds_of_clips(state.shadow.clip_count, state.clip_count, everywhere);
    cast_shadow(context, casting, Ink::clipped_picture,
                [&](cairo_t* cr) { picture.draw_through(cr, mask, casting); });
  }
  if (state.clip_bounds.empty())
    return;
  cairo_t* cr = context.cr();
  cairo_save(cr);
  cairo_reset_clip(cr);
  picture.draw_through(cr, mask, state.clip_bounds);
  cairo_restore(cr);
}

void paint_through_clip(CGContext& context, ShadingPainter& painter) {
  const PixelBounds area = picture_bounds(context);
  if (area.empty())
    return;
  const ShadingPicture picture(context, painter, area);
  const GraphicsState& state = context.state();
  const size_t first = context.target().first_clip;
  // A shape that was clipped to before the shadow was set does not shape the shadow.
  const bool is_whole_shape = !state.has_shadow || state.shadow.clip_count == first;
  if (const ShapeMask* mask = is_whole_shape ? context.mask_of_clips(first) : nullptr) {
    draw_through_shape(context, picture, *mask);
  } else {
    paint_object(context, area, Ink::picture, [&](cairo_t* cr) { picture.draw(cr); });
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
