// SPDX-License-Identifier: MIT
#include "appkit/private/damage.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace cocoa {

namespace {

constexpr size_t most_rects = 8;
/// How many pixels more are drawn sooner than one more rectangle: each has its views walked through, and
/// their clips and layers made.
constexpr int64_t worth_a_rect = 4096;

bool is_empty(const PixelRect& r) {
  return r.width <= 0 || r.height <= 0;
}

PixelRect united(const PixelRect& a, const PixelRect& b) {
  const int x = std::min(a.x, b.x);
  const int y = std::min(a.y, b.y);
  return {x, y, std::max(a.x + a.width, b.x + b.width) - x, std::max(a.y + a.height, b.y + b.height) - y};
}

int64_t area(const PixelRect& r) {
  return int64_t{r.width} * r.height;
}

/// The pixels that would be drawn in vain were both one.
int64_t waste(const PixelRect& a, const PixelRect& b) {
  return area(united(a, b)) - area(a) - area(b);
}

bool overlap(const PixelRect& a, const PixelRect& b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

}  // namespace

void Damage::add(PixelRect rect) {
  if (is_empty(rect))
    return;
  // A union may meet rectangles that neither part met.
  for (auto met = rects_.begin(); met != rects_.end();) {
    if (overlap(*met, rect) || waste(*met, rect) <= worth_a_rect) {
      rect = united(*met, rect);
      rects_.erase(met);
      met = rects_.begin();
    } else {
      ++met;
    }
  }
  if (rects_.size() < most_rects) {
    rects_.push_back(rect);
    return;
  }
  auto best = rects_.begin();
  int64_t least_waste = std::numeric_limits<int64_t>::max();
  for (auto each = rects_.begin(); each != rects_.end(); ++each) {
    const int64_t wasted = waste(*each, rect);
    if (wasted < least_waste) {
      least_waste = wasted;
      best = each;
    }
  }
  rect = united(*best, rect);
  rects_.erase(best);
  add(rect);
}

PixelRect device_pixels(NSRect rect, double scale, int width, int height) {
  const auto cut = [](double value, int limit) {
    return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(limit)));
  };
  const int x0 = cut(std::floor(static_cast<double>(NSMinX(rect)) * scale), width);
  const int x1 = cut(std::ceil(static_cast<double>(NSMaxX(rect)) * scale), width);
  // Points grow upwards from the bottom row.
  const int y0 = cut(height - std::ceil(static_cast<double>(NSMaxY(rect)) * scale), height);
  const int y1 = cut(height - std::floor(static_cast<double>(NSMinY(rect)) * scale), height);
  return {x0, y0, x1 - x0, y1 - y0};
}

}  // namespace cocoa
