#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "quartz/blur.h"
#include "quartz/context.h"

namespace cocoa {

namespace {

/// Where the shadow of an object may land.
PixelBounds landing_bounds(const CGContext& context) {
  const Target& target = context.target();
  return context.bounds_of_clips(target.first_clip, context.state().shadow.clip_count, target.bounds);
}

/// The object's extents as far as the clips that shape the shadow leave them.
PixelBounds shape_bounds(const CGContext& context, PixelBounds extents) {
  const GraphicsState& state = context.state();
  return context.bounds_of_clips(state.shadow.clip_count, state.clip_count, extents);
}

int reach_of(const ShadowState& shadow) {
  return static_cast<int>(std::ceil(shadow.blur));
}

Mask pixels_of(const Surface& surface, PixelBounds area) {
  return {cairo_image_surface_get_data(surface.get()), area.width(), area.height(),
          cairo_image_surface_get_stride(surface.get())};
}

void copy_alpha(const std::vector<uint32_t>& pixels, const Mask& to) {
  if (!to.data)
    return;
  for (int y = 0; y < to.height; ++y) {
    const uint32_t* from = pixels.data() + static_cast<ptrdiff_t>(y) * to.width;
    std::transform(from, from + to.width, to.row(y),
                   [](uint32_t pixel) { return static_cast<uint8_t>(pixel >> 24); });
  }
}

/// The coverage of the object, moved by dx and dy, in the pixels of `area`.
Surface shape_mask(CGContext& context, PixelBounds area, double dx, double dy, Ink ink,
                   const DrawObject& draw) {
  const GraphicsState& state = context.state();
  Surface mask(cairo_image_surface_create(CAIRO_FORMAT_A8, area.width(), area.height()));
  cairo_surface_set_device_offset(mask.get(), -area.x0, -area.y0);
  const auto draw_on = [&](const Surface& surface) {
    const Cairo cr(cairo_create(surface.get()));
    cairo_translate(cr.get(), dx, dy);
    if (ink != Ink::clipped_picture)
      context.apply_clips(cr.get(), state.shadow.clip_count, state.clip_count);
    draw(cr.get());
    cairo_surface_flush(surface.get());
  };
  if (ink == Ink::color) {
    draw_on(mask);
  } else {
    std::vector<uint32_t> memory = context.lend(area);
    draw_on(surface_on(memory, area));
    copy_alpha(memory, pixels_of(mask, area));
    context.give_back(std::move(memory));
    cairo_surface_mark_dirty(mask.get());
  }
  cairo_surface_set_device_offset(mask.get(), 0, 0);
  return mask;
}

/// The shape's mask at the shadow's place, blurred. Where there is a blur it makes up for the fraction of the
/// offset, since Cairo is slow to move a picture by parts of a pixel.
Surface shadow_mask(CGContext& context, PixelBounds area, Ink ink, const DrawObject& draw) {
  const ShadowState& shadow = context.state().shadow;
  if (!(shadow.blur > 0))
    return shape_mask(context, area, shadow.dx, shadow.dy, ink, draw);
  const double dx = std::floor(shadow.dx);
  const double dy = std::floor(shadow.dy);
  const Surface sharp = shape_mask(context, area, dx, dy, ink, draw);
  Surface soft(cairo_image_surface_create(CAIRO_FORMAT_A8, area.width(), area.height()));
  const Mask from = pixels_of(sharp, area);
  const Mask to = pixels_of(soft, area);
  if (from.data && to.data)
    blur_mask(from, to, {shadow.blur, shadow.dx - dx, shadow.dy - dy});
  cairo_surface_mark_dirty(soft.get());
  return soft;
}

}  // namespace

PixelBounds picture_bounds(const CGContext& context) {
  const GraphicsState& state = context.state();
  if (!state.has_shadow)
    return state.clip_bounds;
  const PixelBounds landing = landing_bounds(context).grown(reach_of(state.shadow));
  const PixelBounds casting =
      intersection(shape_bounds(context, everywhere), moved(landing, -state.shadow.dx, -state.shadow.dy));
  const PixelBounds both = union_of(state.clip_bounds, casting);
  // Where the shadow comes from far outside, the picture of both would be mostly void: the shadow goes.
  constexpr int max_extent = 8192;
  return both.width() <= max_extent && both.height() <= max_extent ? both : state.clip_bounds;
}

void cast_shadow(CGContext& context, PixelBounds extents, Ink ink, const DrawObject& draw) {
  const ShadowState& shadow = context.state().shadow;
  const int reach = reach_of(shadow);
  const PixelBounds shape = shape_bounds(context, extents);
  if (shape.empty())
    return;
  const PixelBounds cast = moved(shape, shadow.dx, shadow.dy).grown(reach);
  const PixelBounds visible = intersection(cast, landing_bounds(context));
  if (visible.empty())
    return;
  // What lies further from the visible part than blur and rounding reach cannot be seen in it.
  const PixelBounds area = intersection(cast, visible.grown(reach + 1));
  const Surface mask = shadow_mask(context, area, ink, draw);
  if (cairo_surface_status(mask.get()) != CAIRO_STATUS_SUCCESS)
    return;

  cairo_t* cr = context.cr();
  cairo_save(cr);
  if (shadow.clip_count != context.state().clip_count) {
    cairo_reset_clip(cr);
    context.apply_clips(cr, context.target().first_clip, shadow.clip_count);
  }
  set_source(cr, shadow.color, 1);
  cairo_mask_surface(cr, mask.get(), area.x0, area.y0);
  cairo_restore(cr);
}

}  // namespace cocoa
