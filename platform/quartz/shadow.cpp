#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

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

/// Makes the coverage of the object, moved by dx and dy, in the pixels of `area`.
using MakeShape = std::function<Surface(PixelBounds area, double dx, double dy)>;

Surface empty_mask(PixelBounds area) {
  return Surface(cairo_image_surface_create(CAIRO_FORMAT_A8, area.width(), area.height()));
}

Surface drawn_shape(const CGContext& context, PixelBounds area, double dx, double dy,
                    const DrawObject& draw) {
  const GraphicsState& state = context.state();
  Surface mask = empty_mask(area);
  const Cairo cr(cairo_create(mask.get()));
  cairo_translate(cr.get(), dx - area.x0, dy - area.y0);
  context.apply_clips(cr.get(), state.shadow.clip_count, state.clip_count);
  draw(cr.get());
  cairo_surface_flush(mask.get());
  return mask;
}

/// `part` of the picture's alpha, moved by whole pixels.
Surface picture_shape(const Picture& picture, PixelBounds part, PixelBounds area, int dx, int dy) {
  Surface shape = empty_mask(area);
  const Mask to = pixels_of(shape, area);
  if (!to.data)
    return shape;
  if (picture.mask)
    part = intersection(part, picture.mask->shape.bounds);
  part = intersection(intersection(part, picture.bounds),
                      {area.x0 - dx, area.y0 - dy, area.x1 - dx, area.y1 - dy});
  const auto alpha = static_cast<uint32_t>(std::lround(picture.alpha * 255));
  for (int y = part.y0; y < part.y1; ++y) {
    const uint32_t* from =
        picture.pixels.data() + static_cast<ptrdiff_t>(y - picture.bounds.y0) * picture.bounds.width();
    uint8_t* row = to.row(y + dy - area.y0);
    const uint8_t* coverage = picture.mask ? picture.mask->row(y) : nullptr;
    for (int x = part.x0; x < part.x1; ++x) {
      const uint32_t above = coverage ? coverage[x - picture.mask->shape.bounds.x0] * alpha / 255 : alpha;
      row[x + dx - area.x0] = static_cast<uint8_t>(((from[x - picture.bounds.x0] >> 24) * above + 127) / 255);
    }
  }
  cairo_surface_mark_dirty(shape.get());
  return shape;
}

/// The shape's mask at the shadow's place, blurred. Where there is a blur it makes up for the fraction of the
/// offset, since Cairo is slow to move a picture by parts of a pixel.
Surface shadow_mask(const ShadowState& shadow, PixelBounds area, const MakeShape& make_shape) {
  if (!(shadow.blur > 0))
    return make_shape(area, shadow.dx, shadow.dy);
  const double dx = std::floor(shadow.dx);
  const double dy = std::floor(shadow.dy);
  const Surface sharp = make_shape(area, dx, dy);
  Surface soft = empty_mask(area);
  const Mask from = pixels_of(sharp, area);
  const Mask to = pixels_of(soft, area);
  if (from.data && to.data)
    blur_mask(from, to, {shadow.blur, shadow.dx - dx, shadow.dy - dy});
  cairo_surface_mark_dirty(soft.get());
  return soft;
}

void cast(CGContext& context, PixelBounds extents, const MakeShape& make_shape) {
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
  const Surface mask = shadow_mask(shadow, area, make_shape);
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

void cast_shadow(CGContext& context, PixelBounds extents, const DrawObject& draw) {
  cast(context, extents,
       [&](PixelBounds area, double dx, double dy) { return drawn_shape(context, area, dx, dy, draw); });
}

bool cast_shadow_of_picture(CGContext& context, const Picture& picture) {
  const GraphicsState& state = context.state();
  const ShadowState& shadow = state.shadow;
  const bool by_whole_pixels = shadow.dx == std::floor(shadow.dx) && shadow.dy == std::floor(shadow.dy);
  if (!(shadow.blur > 0) && !by_whole_pixels)
    return false;
  const auto clips =
      std::span(context.clips).subspan(shadow.clip_count, state.clip_count - shadow.clip_count);
  const auto shapes =
      std::count_if(clips.begin(), clips.end(), [](const ClipPath& clip) { return !clip.is_bounds; });
  if (shapes > (picture.mask ? 1 : 0))
    return false;
  Picture casting = picture;
  // A shape that was clipped to before the shadow was set does not shape the shadow.
  if (shapes == 0)
    casting.mask = nullptr;
  const PixelBounds part = shape_bounds(context, picture.bounds);
  cast(context, picture.bounds, [&](PixelBounds area, double dx, double dy) {
    return picture_shape(casting, part, area, static_cast<int>(dx), static_cast<int>(dy));
  });
  return true;
}

}  // namespace cocoa
