// SPDX-License-Identifier: MIT
#include "windows/private/x11_surface.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

#include "foundation/NSLog.h"
#include "windows/pixel_geometry.h"
#include "windows/private/x11_connection.h"
#include "windows/private/x11_resources.h"
#include "windows/private/x11_shared_memory.h"

namespace cocoa {

namespace {
/// One premultiplied pixel over another.
uint32_t over(uint32_t above, uint32_t below) {
  const uint32_t through = 255 - (above >> 24U);
  uint32_t sum = 0;
  for (uint32_t shift = 0; shift < 32; shift += 8) {
    const uint32_t channel = ((above >> shift) & 255U) + (((below >> shift) & 255U) * through + 127) / 255;
    sum |= std::min(channel, 255U) << shift;
  }
  return sum;
}
}  // namespace

X11Surface::X11Surface(X11Connection& connection, xcb_window_t window, uint8_t depth, bool shares_memory)
    : connection_(connection),
      window_(window),
      depth_(depth),
      shares_memory_(shares_memory),
      gc_(xcb_generate_id(connection.get())) {
  xcb_create_gc(connection.get(), gc_, window, 0, nullptr);
}

X11Surface::~X11Surface() {
  xcb_free_gc(connection_.get(), gc_);
}

bool X11Surface::resize(int width, int height) {
  if (width == width_ && height == height_)
    return false;
  width_ = width;
  height_ = height;
  reads_ = 0;
  has_frame_ = false;
  shared_.reset();
  own_.reset();
  lacks_memory_ = false;
  allocate();
  return true;
}

void X11Surface::setOrigin(int x, int y) {
  x_ = x;
  y_ = y;
}

/// Memory of zeros. A host's size decides how much: that there is none left is no reason to end the host.
void X11Surface::allocate() {
  if (width_ <= 0 || height_ <= 0)
    return;
  const auto rows = static_cast<size_t>(height_);
  if (shares_memory_)
    shared_ = X11SharedMemory::make(connection_, bytesPerRow() * rows);
  if (!shared_)
    own_.reset(static_cast<uint32_t*>(std::calloc(rows, bytesPerRow())));
  const bool lacked_memory = std::exchange(lacks_memory_, !data());
  if (lacks_memory_ && !lacked_memory)
    NSLog("There is no memory for a window of %d x %d pixels.", width_, height_);
}

uint32_t* X11Surface::data() const {
  return shared_ ? static_cast<uint32_t*>(shared_->data()) : own_.get();
}

const uint32_t* X11Surface::row(int y) const {
  return data() + static_cast<ptrdiff_t>(y) * width_;
}

Pixels X11Surface::pixels() {
  if (reads_ > 0 || abandoned_)
    return {};
  // There may be some by now.
  if (!data())
    allocate();
  if (!data())
    return {};
  return {reinterpret_cast<uint8_t*>(data()), width_, height_, bytesPerRow()};
}

void X11Surface::upload(std::span<const PixelRect> rectangles) {
  if (abandoned_ || !data())
    return;
  std::vector<PixelRect> parts;
  for (const PixelRect& rectangle : rectangles) {
    if (const PixelRect part = clipped(rectangle, width_, height_); has_area(part))
      parts.push_back(part);
  }
  has_frame_ = has_frame_ || !parts.empty();
  for (const PixelRect& part : parts) {
    // The server reads in order, so the last one tells of all.
    if (shared_) {
      share(part, &part == &parts.back());
    } else {
      send(part);
    }
  }
}

void X11Surface::restore(const PixelRect& rectangle) {
  if (has_frame_)
    upload({&rectangle, 1});
}

void X11Surface::share(const PixelRect& rectangle, bool tell_when_read) {
  const auto x = static_cast<uint16_t>(rectangle.x);
  const auto y = static_cast<uint16_t>(rectangle.y);
  xcb_shm_put_image(connection_.get(), window_, gc_, static_cast<uint16_t>(width_),
                    static_cast<uint16_t>(height_), x, y, static_cast<uint16_t>(rectangle.width),
                    static_cast<uint16_t>(rectangle.height), static_cast<int16_t>(x_ + rectangle.x),
                    static_cast<int16_t>(y_ + rectangle.y), depth_, XCB_IMAGE_FORMAT_Z_PIXMAP,
                    tell_when_read ? 1 : 0, shared_->segment(), 0);
  if (tell_when_read)
    ++reads_;
}

void X11Surface::send(const PixelRect& rectangle) {
  const auto width = static_cast<size_t>(rectangle.width);
  const int most_rows = rows_a_request(rectangle.width, connection_.longestRequest());
  for (int top = 0; top < rectangle.height; top += most_rows) {
    const int rows = std::min(most_rows, rectangle.height - top);
    strip_.resize(width * static_cast<size_t>(rows));
    for (int i = 0; i < rows; ++i) {
      const int y = rectangle.y + top + i;
      const std::span pixels(strip_.data() + width * static_cast<size_t>(i), width);
      std::copy_n(row(y) + rectangle.x, width, pixels.begin());
      blend(pixels, rectangle.x, y);
    }
    xcb_put_image(connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, window_, gc_,
                  static_cast<uint16_t>(rectangle.width), static_cast<uint16_t>(rows),
                  static_cast<int16_t>(x_ + rectangle.x), static_cast<int16_t>(y_ + rectangle.y + top), 0,
                  depth_, static_cast<uint32_t>(strip_.size() * sizeof(uint32_t)),
                  reinterpret_cast<const uint8_t*>(strip_.data()));
  }
}

void X11Surface::blend(std::span<uint32_t> pixels, int x, int y) const {
  const X11Surface* below = backdrop_.below;
  const int below_y = backdrop_.y + y;
  if (!below || !below->data() || below_y < 0 || below_y >= below->height_)
    return;
  const uint32_t* backdrop = below->row(below_y);
  for (size_t i = 0; i < pixels.size(); ++i) {
    const int below_x = backdrop_.x + x + static_cast<int>(i);
    if (below_x >= 0 && below_x < below->width_)
      pixels[i] = over(pixels[i], backdrop[below_x]);
  }
}

void X11Surface::wasRead(xcb_shm_seg_t segment) {
  if (shared_ && segment == shared_->segment() && reads_ > 0)
    --reads_;
}

void X11Surface::stopSharing() {
  shares_memory_ = false;
  if (!shared_)
    return;
  const std::unique_ptr<X11SharedMemory> shared = std::move(shared_);
  reads_ = 0;
  allocate();
  if (own_)
    std::memcpy(own_.get(), shared->data(), bytesPerRow() * static_cast<size_t>(height_));
  restore({0, 0, width_, height_});
}

void X11Surface::abandon() {
  abandoned_ = true;
}

}  // namespace cocoa
