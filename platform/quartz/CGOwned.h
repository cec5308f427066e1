// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "quartz/CGColor.h"
#include "quartz/CGColorSpace.h"
#include "quartz/CGContext.h"
#include "quartz/CGFunction.h"
#include "quartz/CGPath.h"
#include "quartz/CGShading.h"

namespace cocoa {

struct CGRelease {
  void operator()(CGColorRef color) const { CGColorRelease(color); }
  void operator()(CGColorSpaceRef space) const { CGColorSpaceRelease(space); }
  void operator()(CGContextRef context) const { CGContextRelease(context); }
  void operator()(CGFunctionRef function) const { CGFunctionRelease(function); }
  void operator()(CGPathRef path) const { CGPathRelease(path); }
  void operator()(CGShadingRef shading) const { CGShadingRelease(shading); }
};

/// Owns a reference to a Quartz object, such as one that a Create function has answered, and releases it when
/// it goes: CGOwned<CGColor>. Null owns nothing.
template <typename Object>
using CGOwned = std::unique_ptr<Object, CGRelease>;

}  // namespace cocoa
