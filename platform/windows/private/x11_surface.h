// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

#include "windows/window_system.h"

namespace cocoa {

class X11Connection;
class X11SharedMemory;

/// A window's pixels, kept from frame to frame on our side, and their way to the server: through shared
/// memory where both have it, else sent in requests no longer than the server takes.
class X11Surface {
 public:
  /// For a window of that depth. Neither creates nor destroys it.
  X11Surface(X11Connection& connection, xcb_window_t window, uint8_t depth, bool shares_memory);
  ~X11Surface();
  X11Surface(const X11Surface&) = delete;
  X11Surface& operator=(const X11Surface&) = delete;

  int width() const { return width_; }
  int height() const { return height_; }
  /// Whether the pixels were lost over it; the new ones are transparent black.
  bool resize(int width, int height);
  /// Where the pixels' upper left corner is in the window.
  void setOrigin(int x, int y);

  /// None while the server still reads what was uploaded last, and, after a line in the log, while there is
  /// no memory for them.
  Pixels pixels();
  /// What was uploaded; none before the first time.
  Frame shownFrame() const { return has_frame_ ? Frame{row(0), width_, height_} : Frame{}; }
  /// For translucent pixels where nobody blends windows: those of `below` show through, of which (x, y) is
  /// where our upper left corner is; null for none. It must live until the next upload has returned. Only for
  /// pixels that are sent.
  void setBackdrop(const X11Surface* below, int x, int y) { backdrop_ = {below, x, y}; }
  /// Puts the rectangles on the window. Does not flush.
  void upload(std::span<const PixelRect> rectangles);
  /// As upload, of what somebody else uncovered; nothing before there is a first frame.
  void restore(const PixelRect& rectangle);
  /// The same of a rectangle of the window.
  void restoreInWindow(const PixelRect& rectangle) {
    restore({rectangle.x - x_, rectangle.y - y_, rectangle.width, rectangle.height});
  }
  /// The same for what lies above a rectangle of the backdrop.
  void restoreAbove(const PixelRect& below) {
    restore({below.x - backdrop_.x, below.y - backdrop_.y, below.width, below.height});
  }

  /// The server says that it has read from `segment`.
  void wasRead(xcb_shm_seg_t segment);
  /// The server cannot read our memory after all: what it was to show is sent.
  void stopSharing();
  /// The window is gone: nothing is asked of it any more.
  void abandon();

 private:
  struct Free {
    void operator()(uint32_t* memory) const { std::free(memory); }
  };
  void allocate();
  uint32_t* data() const;
  const uint32_t* row(int y) const;
  size_t bytesPerRow() const { return static_cast<size_t>(width_) * sizeof(uint32_t); }
  void share(const PixelRect& rectangle, bool tell_when_read);
  void send(const PixelRect& rectangle);
  /// Puts a row of pixels, from (x, y) of ours on, over the backdrop.
  void blend(std::span<uint32_t> pixels, int x, int y) const;

  X11Connection& connection_;
  xcb_window_t window_;
  uint8_t depth_;
  bool shares_memory_;
  xcb_gcontext_t gc_;
  int x_ = 0;
  int y_ = 0;
  int width_ = 0;
  int height_ = 0;
  int reads_ = 0;  ///< uploads of which the server has not said that it has read them
  bool has_frame_ = false;
  bool abandoned_ = false;
  std::unique_ptr<X11SharedMemory> shared_;
  std::unique_ptr<uint32_t[], Free> own_;  ///< instead of shared_
  bool lacks_memory_ = false;
  std::vector<uint32_t> strip_;  ///< on its way to the server
  struct Backdrop {
    const X11Surface* below = nullptr;
    int x = 0;
    int y = 0;
  } backdrop_;
};

}  // namespace cocoa
