// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/private/damage.h"
#include "foundation/NSGeometry.h"
#include "quartz/CGOwned.h"
#include "windows/window_system.h"

namespace cocoa {

class NSWindow;

/// Keeps what of a window is to be drawn, and draws it into the window system's pixels.
class WindowDisplay {
 public:
  /// Around a window that casts a shadow, in points.
  static constexpr CGFloat shadow_room = 11;

  explicit WindowDisplay(NSWindow& window) : window_(window) {}
  ~WindowDisplay() { forget(); }
  WindowDisplay(const WindowDisplay&) = delete;
  WindowDisplay& operator=(const WindowDisplay&) = delete;

  /// Whether something is marked for drawing.
  bool isNeeded() const { return !damage_.empty(); }
  // Nothing is marked without a window of the window system.
  void mark(NSRect content_rect);
  /// Everything, what lies around the content included.
  void markAll();
  /// Draws what is marked, if the window is seen.
  void displayIfNeeded();
  /// The content, with its shadow, into a context whose origin is the content's.
  void drawContent(CGContextRef context, NSRect damaged) const;
  /// The window system's window goes, and its pixels with it.
  void forget();

 private:
  struct PixelSize {
    int width;
    int height;
  };
  PixelSize pixelSize() const;
  /// Otherwise what is marked waits for a pass with memory, after a line in the log.
  bool hasMemoryToDraw();
  CGContextRef contextFor(const Pixels& pixels);
  void draw(CGContextRef context, const Pixels& pixels, const PixelRect& rect) const;

  NSWindow& window_;
  Damage damage_;
  CGOwned<CGContext> context_;
  Pixels context_pixels_;
  double context_scale_ = 0;
  bool lacks_memory_ = false;
};

}  // namespace cocoa
