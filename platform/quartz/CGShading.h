// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSGeometry.h"
#include "quartz/CGColorSpace.h"
#include "quartz/CGFunction.h"

/// Smooth colour along an axis or between two circles, its colour at each point given by a function whose
/// input runs from 0 at the start to 1 at the end. Coordinates are those of the user space in which the
/// shading is drawn.

namespace cocoa {

struct CGShading;
using CGShadingRef = CGShading*;

/// Colour varies along the line from start to end and is constant across it, without limit. Beyond an end
/// that is extended the end's colour goes on; beyond the other nothing is painted.
/// The function must take one input and give the components of `space` and alpha, not premultiplied.
/// Retains space and function; null when they are null or do not fit together.
CGShadingRef CGShadingCreateAxial(CGColorSpaceRef space, CGPoint start, CGPoint end, CGFunctionRef function,
                                  bool extendStart, bool extendEnd);

/// Colour varies between two circles: those in between are painted in rising order of the input, later over
/// earlier, as far as their radii are not negative. Either circle may be the larger.
CGShadingRef CGShadingCreateRadial(CGColorSpaceRef space, CGPoint start, CGFloat startRadius, CGPoint end,
                                   CGFloat endRadius, CGFunctionRef function, bool extendStart,
                                   bool extendEnd);

void CGShadingRelease(CGShadingRef shading);

}  // namespace cocoa
