// SPDX-License-Identifier: MIT
#include "quartz/private/polygon.h"

namespace cocoa {

bool Polygon::is_whole_pixels() const {
  constexpr size_t corners = 4;
  if (ends_.size() != 1 || points_.size() != corners)
    return false;
  const auto& p = points_;
  const bool sideways = p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x;
  const bool upright = p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y;
  return (sideways || upright) && std::all_of(p.begin(), p.end(), [](const GridPoint& corner) {
           return (corner.x | corner.y) % GridPoint::pixel == 0;
         });
}

PixelBounds Polygon::bounds() const {
  if (points_.empty())
    return {};
  PixelBounds steps{INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
  for (const GridPoint& p : points_)
    steps = {std::min(steps.x0, p.x), std::min(steps.y0, p.y), std::max(steps.x1, p.x),
             std::max(steps.y1, p.y)};
  const auto up = [](int v) { return (v + GridPoint::pixel - 1) >> GridPoint::bits; };
  return {steps.x0 >> GridPoint::bits, steps.y0 >> GridPoint::bits, up(steps.x1), up(steps.y1)};
}

}  // namespace cocoa
