#pragma once

#include <cmath>
#include <numbers>

#include "drawn_view.h"

/// The colours of a capsule, worked out from the formulas. Positions are those of a pixel's centre.

namespace ondex::test {

inline double tri(double t) {
  return 1 - std::abs(1 - 2 * t);
}

/// The glass at height y of `height`; `strength` scales its alpha.
inline Pixel shine(double y, double height, double strength = 1) {
  const double t = y / height;
  const double u = (t - 0.35) * 3.333333 - 0.5;
  const double alpha = t >= 0.35 && t <= 0.65 ? 0.15 * (1 - u * u) * strength : 0;
  return {tri(t), tri(t), tri(t), alpha};
}

inline Pixel grey(double level) {
  return {level, level, level, 1};
}

inline Pixel body(double y, double height, double strength = 1) {
  return over(shine(y, height, strength), grey(0.1 * tri(y / height)));
}

/// `t` runs from the cap's inner edge to its tip.
inline Pixel cap(double t, double y, double height, double strength = 1) {
  const double v = std::cos(t * std::numbers::pi / 2);
  return over(shine(y, height, strength), grey(0.25 * (1 - v * v)));
}

/// `top` on nothing, multiplied by its alpha as bitmaps hold it.
inline Pixel premultiplied(const Pixel& top) {
  return over(top, Pixel{});
}

}  // namespace ondex::test
