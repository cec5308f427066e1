#include "quartz/private/context.h"

namespace cocoa {

void CGContextDrawShading(CGContextRef context, CGShadingRef shading) {
  if (!context || !shading)
    return;
  const PixelBounds area = context->visible_bounds();
  if (area.empty())
    return;
  const GraphicsState& state = context->state();
  ShadingSource source(*shading, state.ctm, state.alpha, area, context->shading_table);
  // The shadow asks for them first.
  if (state.has_shadow)
    source.keep_rows();
  context->draw(box_coverage(source.painted()), source);
}

}  // namespace cocoa
