// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <numbers>

#include "drawn_view.h"

/// The colours of a capsule, worked out from the formulas. Positions are those of a pixel's centre.

namespace ondex::test {

inline double tri(double t) {
  return 1 - std::abs(1 - 2 * t);
}

/// The glass's alpha at t of the height, from the bottom, where it lies.
inline double glass(double t) {
  const double u = (t - 0.35) * 3.333333 - 0.5;
  return 0.15 * (1 - u * u);
}

/// The glass at height y of `height`; `strength` scales its alpha.
inline Pixel shine(double y, double height, double strength = 1) {
  const double t = y / height;
  return {tri(t), tri(t), tri(t), t >= 0.35 && t <= 0.65 ? glass(t) * strength : 0};
}

inline Pixel grey(double level) {
  return {level, level, level, 1};
}

inline Pixel body(double y, double height, double strength = 1) {
  return over(shine(y, height, strength), grey(0.1 * tri(y / height)));
}

/// How much of a cap's colour at its inner edge there is at t, which runs from there to its tip.
inline double inner_share(double t) {
  const double v = std::cos(t * std::numbers::pi / 2);
  return v * v;
}

/// A plain cap.
inline Pixel cap(double t, double y, double height, double strength = 1) {
  return over(shine(y, height, strength), grey(0.25 * (1 - inner_share(t))));
}

/// `top` on nothing, multiplied by its alpha as bitmaps hold it.
inline Pixel premultiplied(const Pixel& top) {
  return over(top, Pixel{});
}

}  // namespace ondex::test
