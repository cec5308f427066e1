#include "quartz/private/polygon.h"

namespace cocoa {

bool Polygon::is_whole_pixels() const {
  constexpr size_t corners = 4;
  if (ends_.size() != 1 || points_.size() != corners)
    return false;
  const auto& p = points_;
  const bool sideways = p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x;
  const bool upright = p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y;
  return (sideways || upright) && std::all_of(p.begin(), p.end(), [](const DevicePoint& corner) {
           return corner.x == std::floor(corner.x) && corner.y == std::floor(corner.y);
         });
}

}  // namespace cocoa
