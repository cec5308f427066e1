// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "quartz/CGFunction.h"
#include "quartz/CGShading.h"
#include "quartz/private/color_model.h"
#include "quartz/private/compositor.h"
#include "quartz/private/counted.h"

/// Private to this room: what functions and shadings consist of.

namespace cocoa {

struct CGFunction : Counted {
  ~CGFunction() {
    if (callbacks.releaseInfo)
      callbacks.releaseInfo(info);
  }
  /// `in` is clamped in place. Both have the function's dimensions.
  void evaluate(CGFloat* in, CGFloat* out) const;

  void* info = nullptr;
  size_t inputs = 0;
  size_t outputs = 0;
  std::vector<CGFloat> domain;  ///< pairs of bounds; empty clamps nothing
  std::vector<CGFloat> range;
  CGFunctionCallbacks callbacks{};
};

struct CGShading : Counted {
  CGShading(CGColorSpaceRef color_space, CGFunctionRef color_function)
      : space(CGColorSpaceRetain(color_space)), function(CGFunctionRetain(color_function)) {}
  ~CGShading() {
    CGFunctionRelease(function);
    CGColorSpaceRelease(space);
  }
  /// The colour at t, 0 to 1.
  Rgba color(double t) const;
  /// A number that no other has.
  const uint64_t serial = next_serial();

  CGColorSpaceRef space;
  CGFunctionRef function;
  bool radial = false;
  CGPoint start;
  CGPoint end;
  double start_radius = 0;
  double end_radius = 0;
  bool extend_start = false;
  bool extend_end = false;

  /// Colours that were found, by places of even distance, with an alpha on top: see ShadingSource.
  mutable std::vector<FineColor> table;
  mutable double table_alpha = 1;
};

}  // namespace cocoa
