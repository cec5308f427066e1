// SPDX-License-Identifier: MIT
#include "windows/private/x11_window_place.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace cocoa {

void X11WindowPlace::put(NSRect frame) {
  const auto pixel = [this](CGFloat points) {
    const double exact = static_cast<double>(points) * scale_;
    return static_cast<int>(
        std::lround(std::clamp<double>(exact, -largest_pixel_extent, largest_pixel_extent)));
  };
  setPixelSize(std::max(1, device_pixels(frame.size.width, scale_)),
               std::max(1, device_pixels(frame.size.height, scale_)));
  if (!hasMargin())
    size_ = frame.size;
  x_ = pixel(frame.origin.x);
  y_ = parent_height_ - pixel(frame.origin.y) - height_;
  if (in_host_) {
    // A host often gives its window the right size only later; its upper left corner stays.
    x_ = std::max(0, x_);
    y_ = std::max(0, y_);
  }
}

void X11WindowPlace::setPixelSize(int width, int height) {
  width_ = width;
  height_ = height;
  drawn_ = drawn_part(width, height);
  size_ = {static_cast<CGFloat>(drawn_.width / scale_), static_cast<CGFloat>(drawn_.height / scale_)};
}

bool X11WindowPlace::moveTo(int x, int y) {
  if (x == x_ && y == y_)
    return false;
  x_ = x;
  y_ = y;
  return true;
}

bool X11WindowPlace::setParentHeight(int height) {
  return std::exchange(parent_height_, height) != height;
}

NSRect X11WindowPlace::frameAt(int x, int y, int screen_height) const {
  const int below = screen_height - y - drawn_.y - drawn_.height;
  return {{static_cast<CGFloat>((x + drawn_.x) / scale_), static_cast<CGFloat>(below / scale_)}, size_};
}

NSPoint X11WindowPlace::locationOf(double x, double y) const {
  const double right = std::floor(x) - drawn_.x;
  const double up = drawn_.y + drawn_.height - 1 - std::floor(y);
  return {static_cast<CGFloat>(right / scale_), static_cast<CGFloat>(up / scale_)};
}

}  // namespace cocoa
