// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "windows/window_system.h"

namespace cocoa {

struct X11Options {
  /// Device pixels a point; 0 takes it from the desktop's Xft.dpi.
  double scale = 0;
  /// Off: what a remote display or an old server leaves us with.
  bool shared_memory = true;
  bool xinput = true;
};

/// Windows of an X11 server, over a connection of their own that goes with the result: one for each top-level
/// editor, opened with it and closed with it. All windows must have gone before it, and it must not go from
/// inside dispatch().
///
/// `display_name` as in $DISPLAY; null takes that. Null, after a line in the log, when there is no such
/// display or its pixels are of a kind that cannot be drawn for.
std::unique_ptr<WindowSystem> make_x11_window_system(const char* display_name, const X11Options& options);
std::unique_ptr<WindowSystem> make_x11_window_system(const char* display_name, double scale_override = 0);

}  // namespace cocoa
