#include <algorithm>

#include "quartz/context.h"

namespace cocoa {

namespace {

/// A transparent surface that stands for these pixels, in memory that an earlier layer has left if possible.
Target make_layer(CGContext& context, PixelBounds bounds) {
  Target layer;
  layer.bounds = bounds;
  if (!context.spare_layers.empty()) {
    layer.memory = std::move(context.spare_layers.back());
    context.spare_layers.pop_back();
  }
  layer.memory.assign(static_cast<size_t>(bounds.width()) * static_cast<size_t>(bounds.height()), 0);
  layer.surface.reset(cairo_image_surface_create_for_data(
      reinterpret_cast<unsigned char*>(layer.memory.data()), CAIRO_FORMAT_ARGB32, bounds.width(),
      bounds.height(), bounds.width() * static_cast<int>(sizeof(uint32_t))));
  cairo_surface_set_device_offset(layer.surface.get(), -bounds.x0, -bounds.y0);
  layer.cr.reset(cairo_create(layer.surface.get()));
  return layer;
}

/// Paints the ended layer as one object.
void paint_layer(CGContext& context, const Target& layer) {
  if (layer.bounds.empty() || cairo_surface_status(layer.surface.get()) != CAIRO_STATUS_SUCCESS)
    return;
  const double alpha = context.state().alpha;
  paint_object(context, layer.bounds, [&](cairo_t* cr) {
    cairo_set_source_surface(cr, layer.surface.get(), 0, 0);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_BILINEAR);
    cairo_paint_with_alpha(cr, alpha);
  });
  // Cairo must not hold on to memory that the next layer overwrites.
  cairo_set_source_rgb(context.cr(), 0, 0, 0);
}

}  // namespace

void CGContextBeginTransparencyLayer(CGContextRef context, const void* /*auxiliaryInfo*/) {
  if (!context)
    return;
  PixelBounds bounds = picture_bounds(*context);
  if (bounds.empty())
    bounds = {};
  Target layer = make_layer(*context, bounds);
  GraphicsState inside = context->state();
  inside.alpha = 1;
  inside.has_shadow = false;
  inside.clip_bounds = bounds;
  inside.clip_is_bounds = true;
  layer.first_clip = inside.clip_count;
  layer.first_state = context->states.size();
  context->targets.push_back(std::move(layer));
  context->states.push_back(inside);
}

void CGContextEndTransparencyLayer(CGContextRef context) {
  if (!context || context->targets.size() < 2)
    return;
  Target layer = std::move(context->targets.back());
  context->targets.pop_back();
  context->states.erase(context->states.begin() + static_cast<std::ptrdiff_t>(layer.first_state),
                        context->states.end());
  paint_layer(*context, layer);
  layer.cr.reset();
  layer.surface.reset();
  context->spare_layers.push_back(std::move(layer.memory));
}

}  // namespace cocoa
