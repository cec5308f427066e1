#include <algorithm>

#include "quartz/context.h"

namespace cocoa {

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
  context->targets.push_back({{}, nothing_yet, {}, context->states.size()});
  context->states.push_back(std::move(inside));
}

void CGContextEndTransparencyLayer(CGContextRef context) {
  if (!context || context->targets.size() < 2)
    return;
  Target layer = std::move(context->targets.back());
  context->targets.pop_back();
  context->states.erase(context->states.begin() + static_cast<std::ptrdiff_t>(layer.first_state),
                        context->states.end());
  if (!layer.pixels.data)
    return;
  PictureSource source(layer.pixels, context->state().alpha);
  context->draw(box_coverage(layer.painted), source);
  context->give_back(std::move(layer.memory));
}

}  // namespace cocoa
