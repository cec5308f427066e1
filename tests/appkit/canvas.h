// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "appkit/NSGraphicsContext.h"
#include "appkit/NSView.h"
#include "quartz/CGBitmapContext.h"

namespace cocoa {

/// A small transparent picture to draw into, current while it lives.
class Canvas {
 public:
  Canvas(int width, int height)
      : width_(width),
        height_(height),
        pixels_(static_cast<size_t>(width * height)),
        context_(CGBitmapContextCreateWithScale(pixels_.data(), static_cast<size_t>(width),
                                                static_cast<size_t>(height), static_cast<size_t>(width) * 4,
                                                1)),
        scope_(context_) {}
  ~Canvas() { CGContextRelease(context_); }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  CGContextRef context() { return context_; }
  /// Premultiplied ARGB at a point, y upwards.
  uint32_t at(int x, int y) const {
    return pixels_[static_cast<size_t>(height_ - 1 - y) * static_cast<size_t>(width_) +
                   static_cast<size_t>(x)];
  }
  int count(uint32_t argb) const {
    int count = 0;
    for (const uint32_t pixel : pixels_)
      count += pixel == argb ? 1 : 0;
    return count;
  }

 private:
  int width_;
  int height_;
  std::vector<uint32_t> pixels_;
  CGContextRef context_;
  NSGraphicsContext::Scope scope_;
};

inline constexpr uint32_t red = 0xFFFF0000;
inline constexpr uint32_t green = 0xFF00FF00;
inline constexpr uint32_t blue = 0xFF0000FF;

/// A view of one colour that counts how often it is drawn.
class ColorView : public NSView {
 public:
  ColorView(NSRect frame, uint32_t argb, bool opaque = false) : NSView(frame), argb_(argb), opaque_(opaque) {}
  bool isOpaque() const override { return opaque_; }
  void drawRect(NSRect rect) override {
    ++drawn;
    dirty = rect;
    const auto channel = [this](int shift) { return static_cast<CGFloat>((argb_ >> shift) & 0xFF) / 255; };
    CGContextRef context = NSGraphicsContext::currentContext()->graphicsPort();
    CGContextSetRGBFillColor(context, channel(16), channel(8), channel(0), channel(24));
    CGContextFillRect(context, NSInsetRect(bounds(), -1000, -1000));
  }
  void viewDidMoveToWindow() override { windows.push_back(window()); }

  int drawn = 0;
  NSRect dirty;
  std::vector<NSWindow*> windows;

 private:
  uint32_t argb_;
  bool opaque_;
};

}  // namespace cocoa
