#include <algorithm>

#include "quartz/context.h"

namespace cocoa {

namespace {

/// Paints the ended layer as one object.
void paint_layer(CGContext& context, const Target& layer) {
  if (cairo_surface_status(layer.surface.get()) != CAIRO_STATUS_SUCCESS)
    return;
  const double alpha = context.state().alpha;
  const auto draw = [&](cairo_t* cr) {
    cairo_set_source_surface(cr, layer.surface.get(), 0, 0);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_BILINEAR);
    cairo_paint_with_alpha(cr, alpha);
  };
  cairo_surface_flush(layer.surface.get());
  if (context.state().has_shadow && !cast_shadow_of_picture(context, {layer.memory, layer.bounds, alpha}))
    cast_shadow(context, layer.bounds, draw);
  draw(context.cr());
  // Cairo must not hold on to memory that the next layer overwrites.
  cairo_set_source_rgb(context.cr(), 0, 0, 0);
}

}  // namespace

std::vector<uint32_t> CGContext::lend(PixelBounds bounds) {
  std::vector<uint32_t> memory;
  if (!spare_.empty()) {
    memory = std::move(spare_.back());
    spare_.pop_back();
  }
  memory.assign(static_cast<size_t>(bounds.width()) * static_cast<size_t>(bounds.height()), 0);
  return memory;
}

void CGContext::give_back(std::vector<uint32_t> memory) {
  // That of a picture of the whole window is not worth keeping: what is drawn often is smaller.
  constexpr size_t most_kept = 1 << 16;
  if (memory.capacity() <= most_kept)
    spare_.push_back(std::move(memory));
}

Surface surface_on(std::vector<uint32_t>& memory, PixelBounds bounds) {
  Surface surface(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(memory.data()),
                                                      CAIRO_FORMAT_ARGB32, bounds.width(), bounds.height(),
                                                      bounds.width() * static_cast<int>(sizeof(uint32_t))));
  cairo_surface_set_device_offset(surface.get(), -bounds.x0, -bounds.y0);
  return surface;
}

void CGContext::make_layer() {
  Target& layer = target();
  layer.memory = lend(layer.bounds);
  layer.surface = surface_on(layer.memory, layer.bounds);
  layer.cr.reset(cairo_create(layer.surface.get()));
  size_t clipped = layer.first_clip;
  for (size_t i = layer.first_state; i < states.size(); ++i) {
    if (i > layer.first_state)
      cairo_save(layer.cr.get());
    apply_clips(layer.cr.get(), clipped, states[i].clip_count);
    clipped = states[i].clip_count;
  }
}

void CGContextBeginTransparencyLayer(CGContextRef context, const void* /*auxiliaryInfo*/) {
  if (!context)
    return;
  PixelBounds bounds = picture_bounds(*context);
  if (bounds.empty())
    bounds = {};
  GraphicsState inside = context->state();
  inside.alpha = 1;
  inside.has_shadow = false;
  inside.clip_bounds = bounds;
  inside.clip_is_bounds = true;
  Target layer;
  layer.bounds = bounds;
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
  if (!layer.cr)
    return;
  paint_layer(*context, layer);
  layer.cr.reset();
  layer.surface.reset();
  context->give_back(std::move(layer.memory));
}

}  // namespace cocoa
