// SPDX-License-Identifier: MIT
#include "quartz/CGShading.h"

#include "quartz/private/shading.h"

namespace cocoa {

namespace {

CGShadingRef create(CGColorSpaceRef space, CGFunctionRef function) {
  if (!space || !function || function->inputs != 1 || function->outputs != component_count(space->model) + 1)
    return nullptr;
  return new CGShading(space, function);
}

}  // namespace

Rgba CGShading::color(double t) const {
  auto in = static_cast<CGFloat>(t);
  CGFloat out[max_components] = {};
  function->evaluate(&in, out);
  return rgba_from_components(space->model, out);
}

CGShadingRef CGShadingCreateAxial(CGColorSpaceRef space, CGPoint start, CGPoint end, CGFunctionRef function,
                                  bool extendStart, bool extendEnd) {
  CGShadingRef shading = create(space, function);
  if (!shading)
    return nullptr;
  shading->start = start;
  shading->end = end;
  shading->extend_start = extendStart;
  shading->extend_end = extendEnd;
  return shading;
}

CGShadingRef CGShadingCreateRadial(CGColorSpaceRef space, CGPoint start, CGFloat startRadius, CGPoint end,
                                   CGFloat endRadius, CGFunctionRef function, bool extendStart,
                                   bool extendEnd) {
  CGShadingRef shading = CGShadingCreateAxial(space, start, end, function, extendStart, extendEnd);
  if (!shading)
    return nullptr;
  shading->radial = true;
  shading->start_radius = static_cast<double>(startRadius);
  shading->end_radius = static_cast<double>(endRadius);
  return shading;
}

void CGShadingRelease(CGShadingRef shading) {
  release_counted(shading);
}

}  // namespace cocoa
