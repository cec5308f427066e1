// SPDX-License-Identifier: MIT
#include "windows/private/x11_visuals.h"

#include <bit>

namespace cocoa {

namespace {
bool has_our_byte_order(const xcb_setup_t* setup) {
  const auto ours =
      std::endian::native == std::endian::little ? XCB_IMAGE_ORDER_LSB_FIRST : XCB_IMAGE_ORDER_MSB_FIRST;
  return setup->image_byte_order == ours;
}

/// Whether an image of that depth has four bytes a pixel and no padding between its rows.
bool is_packed_in_words(const xcb_setup_t* setup, uint8_t depth) {
  for (auto format = xcb_setup_pixmap_formats_iterator(setup); format.rem; xcb_format_next(&format)) {
    if (format.data->depth == depth)
      return format.data->bits_per_pixel == 32 && format.data->scanline_pad <= 32;
  }
  return false;
}

bool has_our_channels(const xcb_visualtype_t& visual) {
  return visual._class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.red_mask == 0xff0000 &&
         visual.green_mask == 0x00ff00 && visual.blue_mask == 0x0000ff;
}
}  // namespace

X11Visual find_visual(const xcb_setup_t* setup, const xcb_screen_t* screen, uint8_t depth) {
  if (!has_our_byte_order(setup) || !is_packed_in_words(setup, depth))
    return {};
  X11Visual found;
  for (auto of = xcb_screen_allowed_depths_iterator(screen); of.rem; xcb_depth_next(&of)) {
    if (of.data->depth != depth)
      continue;
    for (auto visual = xcb_depth_visuals_iterator(of.data); visual.rem; xcb_visualtype_next(&visual)) {
      if (has_our_channels(*visual.data) && (!found || visual.data->visual_id == screen->root_visual))
        found = {visual.data->visual_id, depth, 0};
    }
  }
  return found;
}

}  // namespace cocoa
