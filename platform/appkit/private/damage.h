// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "windows/window_system.h"

namespace cocoa {

/// What of a window must be drawn again: a few rectangles that do not overlap, in device pixels.
class Damage {
 public:
  /// Adds a rectangle; it is merged with what it meets, and with what is so near that the few pixels between
  /// them cost less than one more rectangle. Past a handful, those whose union wastes least are merged.
  void add(PixelRect rect);
  void clear() { rects_.clear(); }
  bool empty() const { return rects_.empty(); }
  std::span<const PixelRect> rects() const { return rects_; }

 private:
  std::vector<PixelRect> rects_;
};

/// The device pixels that a rectangle of the window touches, cut to its width × height pixels.
PixelRect device_pixels(NSRect rect, double scale, int width, int height);

}  // namespace cocoa
