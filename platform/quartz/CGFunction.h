// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "foundation/NSGeometry.h"

/// A function of numbers to numbers that a program supplies, such as the colour rule of a shading.

namespace cocoa {

struct CGFunction;
using CGFunctionRef = CGFunction*;

/// Reads as many inputs and writes as many outputs as the function was made with.
using CGFunctionEvaluateCallback = void (*)(void* info, const CGFloat* in, CGFloat* out);
using CGFunctionReleaseInfoCallback = void (*)(void* info);

struct CGFunctionCallbacks {
  unsigned int version;  ///< 0
  CGFunctionEvaluateCallback evaluate;
  CGFunctionReleaseInfoCallback releaseInfo;  ///< called once with `info` when the function goes; may be null
};

/// `domain` and `range` hold a lower and an upper bound for each input and output, to which they are
/// clamped (what is not a number becomes the lower bound); null clamps nothing. Everything but `info` is
/// copied. Null, and `info` left with the caller, without an evaluate callback, with another version or
/// with no input or output.
CGFunctionRef CGFunctionCreate(void* info, size_t domainDimension, const CGFloat* domain,
                               size_t rangeDimension, const CGFloat* range,
                               const CGFunctionCallbacks* callbacks);
CGFunctionRef CGFunctionRetain(CGFunctionRef function);
void CGFunctionRelease(CGFunctionRef function);

}  // namespace cocoa
