// SPDX-License-Identifier: MIT
#include "standalone/private/view_picture.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "appkit/NSGraphicsContext.h"
#include "quartz/CGBitmapContext.h"
#include "quartz/CGOwned.h"
#include "windows/pixel_geometry.h"

namespace ondex {

using namespace cocoa;

namespace {

/// Premultiplied pixels, the top row first.
struct Canvas {
  int width;
  int height;
  std::vector<uint32_t> pixels =
      std::vector<uint32_t>(static_cast<size_t>(width) * static_cast<size_t>(height));

  CGOwned<CGContext> make_context(double scale) {
    const auto columns = static_cast<size_t>(width);
    return CGOwned<CGContext>(CGBitmapContextCreateWithScale(
        pixels.data(), columns, static_cast<size_t>(height), columns * sizeof(uint32_t), scale));
  }
  uint32_t& at(int x, int y) {
    return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
  }
};

bool write(Canvas& canvas, const char* path) {
  return CGBitmapContextWritePNG(canvas.make_context(1).get(), path);
}

bool write_drawing(NSSize size, double scale, const std::function<void(CGContextRef)>& draw,
                   const char* path) {
  Canvas canvas{device_pixels(size.width, scale), device_pixels(size.height, scale)};
  draw(canvas.make_context(scale).get());
  return write(canvas, path);
}

uint32_t over(uint32_t above, uint32_t below) {
  const uint32_t through = 255 - (above >> 24);
  uint32_t sum = 0;
  for (uint32_t shift = 0; shift < 32; shift += 8) {
    const uint32_t channel = ((above >> shift) & 255) + (((below >> shift) & 255) * through + 127) / 255;
    sum |= std::min<uint32_t>(channel, 255) << shift;
  }
  return sum;
}

/// The left and the lower edge of a window in the screen, in device pixels.
struct Corner {
  int left;
  int bottom;
};

Corner corner_of(const PlatformWindow& window) {
  const NSPoint origin = window.screenFrame().origin;
  const auto pixel = [&window](CGFloat points) {
    return static_cast<int>(std::lround(static_cast<double>(points) * window.scale()));
  };
  return {pixel(origin.x), pixel(origin.y)};
}

/// Lays what the window shows, and its child windows, over a picture whose lower left corner is there.
void lay_over(Canvas& canvas, Corner canvas_corner, const NSWindow& window) {
  const PlatformWindow* shown = window.platformWindow();
  if (!shown || !window.isVisible())
    return;
  if (const Frame frame = shown->shownFrame()) {
    const Corner corner = corner_of(*shown);
    const int left = corner.left - canvas_corner.left;
    const int top = canvas.height - (corner.bottom - canvas_corner.bottom) - frame.height;
    const PixelRect part = clipped({left, top, frame.width, frame.height}, canvas.width, canvas.height);
    for (int y = part.y; y < part.y + part.height; ++y) {
      const uint32_t* row = frame.pixels + static_cast<ptrdiff_t>(y - top) * frame.width - left;
      for (int x = part.x; x < part.x + part.width; ++x)
        canvas.at(x, y) = over(row[x], canvas.at(x, y));
    }
  }
  for (const Ref<NSWindow>& child : window.childWindows())
    lay_over(canvas, canvas_corner, *child);
}

bool is_seen(const NSWindow& window) {
  return window.platformWindow() && window.platformWindow()->viewable();
}

}  // namespace

bool write_view_picture(NSView& view, double scale, const char* path) {
  const auto draw = [&](CGContextRef context) {
    const NSGraphicsContext::Scope scope(context);
    view.drawTree(view.bounds());
  };
  return write_drawing(view.bounds().size, scale, draw, path);
}

bool is_about_to_show(const NSWindow& window) {
  if (is_seen(window) && window.viewsNeedDisplay())
    return true;
  const auto& children = window.childWindows();
  return std::any_of(children.begin(), children.end(),
                     [](const Ref<NSWindow>& child) { return is_about_to_show(*child); });
}

bool write_window_picture(NSWindow& window, const char* path) {
  const PlatformWindow* shown = window.platformWindow();
  const Frame frame = shown ? shown->shownFrame() : Frame{};
  if (!is_seen(window) || !frame) {
    const auto draw = [&](CGContextRef context) { window.drawWithChildren(context); };
    return write_drawing(window.contentView()->bounds().size, window.backingScaleFactor(), draw, path);
  }
  Canvas canvas{frame.width, frame.height};
  lay_over(canvas, corner_of(*shown), window);
  return write(canvas, path);
}

}  // namespace ondex
