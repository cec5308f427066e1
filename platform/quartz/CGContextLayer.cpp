// SPDX-License-Identifier: MIT
#include "quartz/private/context.h"

namespace cocoa {

void CGContextBeginTransparencyLayer(CGContextRef context, const void* /*auxiliaryInfo*/) {
  if (!context)
    return;
  PixelBounds bounds = context->visible_bounds();
  if (bounds.empty())
    bounds = {};
  GraphicsState inside = context->state();
  inside.alpha = 1;
  inside.has_shadow = false;
  inside.clip = box_coverage(bounds);
  const PixelView nothing_yet{nullptr, static_cast<size_t>(bounds.width()), bounds};
  context->targets.push_back({nullptr, nothing_yet, {}, context->states.size(), {}});
  context->states.push_back(std::move(inside));
}

void CGContextEndTransparencyLayer(CGContextRef context) {
  if (!context || context->targets.size() < 2)
    return;
  Target layer = std::move(context->targets.back());
  context->targets.pop_back();
  context->states.erase(context->states.begin() + static_cast<std::ptrdiff_t>(layer.first_state),
                        context->states.end());
  if (layer.only) {
    PlainSource source(faded(layer.only->color, context->state().alpha));
    context->draw(layer.only->shape, source);
  } else if (layer.pixels.data) {
    PictureSource source(layer.pixels, context->state().alpha);
    context->draw(box_coverage(layer.painted), source);
  }
}

}  // namespace cocoa
