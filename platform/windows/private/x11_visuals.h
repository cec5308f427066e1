// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdint>

namespace cocoa {

/// A way to lay out a window's pixels. Converts to false when there is none.
struct X11Visual {
  xcb_visualid_t id = 0;
  uint8_t depth = 0;
  xcb_colormap_t colormap = 0;  ///< every window of such a visual needs one
  explicit operator bool() const { return id != 0; }
};

/// The screen's visual for 32-bit pixels with red in bits 16 to 23 and blue in the lowest byte, in our own
/// byte order; of depth 24, where the highest byte means nothing, or 32, where it is alpha. The root's own is
/// preferred. The colormap is left to the caller.
X11Visual find_visual(const xcb_setup_t* setup, const xcb_screen_t* screen, uint8_t depth);

}  // namespace cocoa
