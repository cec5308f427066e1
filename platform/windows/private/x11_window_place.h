// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSGeometry.h"
#include "windows/pixel_geometry.h"
#include "windows/window_system.h"

namespace cocoa {

/// Where a window is, how large, and which part of it is drawn, in points and in device pixels. Asks nobody.
class X11WindowPlace {
 public:
  /// `parent_height`, in device pixels, is that of the screen or of the host's window, if it is in one.
  X11WindowPlace(double scale, int parent_height, bool in_host)
      : scale_(scale), in_host_(in_host), parent_height_(parent_height) {}

  double scale() const { return scale_; }
  /// Of what is drawn, in points; more exact than the device pixels are.
  NSSize size() const { return size_; }
  /// Device pixels, from the top left of the screen or host.
  int x() const { return x_; }
  int y() const { return y_; }
  int width() const { return width_; }
  int height() const { return height_; }
  /// In the window, from its upper left.
  const PixelRect& drawn() const { return drawn_; }
  /// Whether there is something around what is drawn.
  bool hasMargin() const { return drawn_ != PixelRect{0, 0, width_, height_}; }

  /// Takes over the place and size of `frame` as far as device pixels can.
  void put(NSRect frame);
  void setPixelSize(int width, int height);
  /// Whether it was somewhere else.
  bool moveTo(int x, int y);
  /// Whether it had another one.
  bool setParentHeight(int height);

  NSRect frame() const { return frameAt(x_, y_, parent_height_); }
  /// The frame of a window of this size in a screen of that height, from the pixel of its upper left corner.
  NSRect frameAt(int x, int y, int screen_height) const;
  /// The lower left corner of a pixel of the window, as events tell it.
  NSPoint locationOf(double x, double y) const;
  bool covers(int x, int y) const { return x >= x_ && y >= y_ && x < x_ + width_ && y < y_ + height_; }

 private:
  double scale_;
  bool in_host_;
  int parent_height_;
  NSSize size_;
  int x_ = 0;
  int y_ = 0;
  int width_ = 1;  ///< the server has no windows without any
  int height_ = 1;
  PixelRect drawn_;
};

}  // namespace cocoa
