// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <vector>

#include "appkit/NSGraphicsContext.h"
#include "appkit/NSView.h"
#include "quartz/CGBitmapContext.h"

namespace ondex::test {

/// Red, green, blue, each multiplied by alpha, and alpha; 0 to 1.
struct Pixel {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 0;
  bool operator==(const Pixel&) const = default;
};

/// `top` drawn over an opaque colour, `top` not premultiplied.
inline Pixel over(const Pixel& top, const Pixel& below) {
  const auto mix = [&](double t, double b) { return t * top.alpha + b * (1 - top.alpha); };
  return {mix(top.red, below.red), mix(top.green, below.green), mix(top.blue, below.blue),
          mix(1, below.alpha)};
}

/// The largest difference of a component, in steps of 1/255.
inline double distance(const Pixel& a, const Pixel& b) {
  return 255 * std::max({std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue),
                         std::abs(a.alpha - b.alpha)});
}

inline std::ostream& operator<<(std::ostream& out, const Pixel& p) {
  return out << '(' << p.red << ' ' << p.green << ' ' << p.blue << ' ' << p.alpha << ')';
}

/// A view drawn on nothing, into a bitmap of its size at some device pixels a point.
class DrawnView {
 public:
  DrawnView(cocoa::NSView& view, double scale)
      : DrawnView(view.bounds().size, scale, [&view](cocoa::CGContextRef) { view.drawTree(view.bounds()); }) {
  }
  /// What `draw` draws, as if it were such a view.
  template <typename Draw>
  DrawnView(cocoa::NSSize size, double scale, Draw draw)
      : scale_(scale),
        width_(static_cast<size_t>(std::ceil(static_cast<double>(size.width) * scale))),
        height_(static_cast<size_t>(std::ceil(static_cast<double>(size.height) * scale))),
        pixels_(width_ * height_),
        context_(cocoa::CGBitmapContextCreateWithScale(pixels_.data(), width_, height_, 0, scale)) {
    const cocoa::NSGraphicsContext::Scope scope(context_);
    draw(context_);
  }
  ~DrawnView() { cocoa::CGContextRelease(context_); }
  DrawnView(const DrawnView&) = delete;
  DrawnView& operator=(const DrawnView&) = delete;

  int width() const { return static_cast<int>(width_); }
  int height() const { return static_cast<int>(height_); }
  /// A device pixel, counted from the lower left.
  Pixel pixel(int column, int row) const {
    const uint32_t argb =
        pixels_[(height_ - 1 - static_cast<size_t>(row)) * width_ + static_cast<size_t>(column)];
    const auto part = [argb](unsigned shift) { return static_cast<double>((argb >> shift) & 0xFF) / 255; };
    return {part(16), part(8), part(0), part(24)};
  }
  /// The pixel in which a point of the view lies.
  Pixel at(double x, double y) const {
    return pixel(static_cast<int>(std::floor(x * scale_)), static_cast<int>(std::floor(y * scale_)));
  }
  /// The centre of that pixel along one axis, in points.
  double centre(double position) const { return (std::floor(position * scale_) + 0.5) / scale_; }
  bool operator==(const DrawnView& other) const {
    return width_ == other.width_ && height_ == other.height_ && pixels_ == other.pixels_;
  }
  bool write(const char* path) const { return cocoa::CGBitmapContextWritePNG(context_, path); }

 private:
  double scale_;
  size_t width_;
  size_t height_;
  std::vector<uint32_t> pixels_;
  cocoa::CGContextRef context_;
};

}  // namespace ondex::test
