// SPDX-License-Identifier: MIT
#include "quartz/private/context.h"

namespace cocoa {

void CGContextDrawShading(CGContextRef context, CGShadingRef shading) {
  if (!context || !shading)
    return;
  // Also when it cannot be seen: see CGContext::draw().
  context->pixels();
  const PixelBounds area = context->visible_bounds();
  if (area.empty())
    return;
  const GraphicsState& state = context->state();
  ShadingSource source(*shading, state.ctm, state.alpha, area);
  context->draw(box_coverage(source.painted()), source);
}

}  // namespace cocoa
