// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSGeometry.h"

/// Makers of the geometry types under their Quartz names.

namespace cocoa {

constexpr CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  return {{x, y}, {width, height}};
}

}  // namespace cocoa
