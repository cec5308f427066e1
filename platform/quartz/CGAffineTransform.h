// SPDX-License-Identifier: MIT
#pragma once

#include "quartz/CGGeometry.h"

/// Affine maps of the plane: x' = a·x + c·y + tx, y' = b·x + d·y + ty.

namespace cocoa {

struct CGAffineTransform {
  CGFloat a = 1;
  CGFloat b = 0;
  CGFloat c = 0;
  CGFloat d = 1;
  CGFloat tx = 0;
  CGFloat ty = 0;
  bool operator==(const CGAffineTransform&) const = default;
};

inline constexpr CGAffineTransform CGAffineTransformIdentity{};

constexpr CGAffineTransform CGAffineTransformMakeTranslation(CGFloat tx, CGFloat ty) {
  return {1, 0, 0, 1, tx, ty};
}
constexpr CGAffineTransform CGAffineTransformMakeScale(CGFloat sx, CGFloat sy) {
  return {sx, 0, 0, sy, 0, 0};
}
/// `first`, then `second`.
constexpr CGAffineTransform CGAffineTransformConcat(CGAffineTransform first, CGAffineTransform second) {
  return {first.a * second.a + first.b * second.c,
          first.a * second.b + first.b * second.d,
          first.c * second.a + first.d * second.c,
          first.c * second.b + first.d * second.d,
          first.tx * second.a + first.ty * second.c + second.tx,
          first.tx * second.b + first.ty * second.d + second.ty};
}

constexpr CGPoint CGPointApplyAffineTransform(CGPoint p, CGAffineTransform t) {
  return {t.a * p.x + t.c * p.y + t.tx, t.b * p.x + t.d * p.y + t.ty};
}

}  // namespace cocoa
