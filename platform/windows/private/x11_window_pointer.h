// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "windows/pointer_tracker.h"
#include "windows/private/x11_pointer.h"
#include "windows/window_system.h"

namespace cocoa {

class X11Window;

/// The platform's modifiers in a state of XCB_KEY_BUT_MASK_*.
uint32_t modifiers_of_state(uint16_t state);

/// What the pointer does over one window, in that window's events, which it leaves to the window to tell; and
/// how the window holds the pointer or moves along with it.
class X11WindowPointer {
 public:
  explicit X11WindowPointer(X11Window& window) : window_(window) {}

  std::optional<WindowEvent> button(const X11Pointer& pointer, bool down);
  /// Releases of buttons that another program has kept to itself come first.
  std::vector<WindowEvent> motion(const X11Pointer& pointer);
  WindowEvent scroll(const X11Pointer& pointer, ScrollTurn turn);
  std::optional<WindowEvent> crossing(const X11Pointer& pointer, bool in);
  /// The server has taken the pointer back from a window that no longer shows.
  std::vector<WindowEvent> releaseAll();

  // Whether that is anything new. Neither flushes.
  bool grab();
  bool release();

  /// Whether the window manager knows how to move windows.
  void setManagerMoves(bool moves) { manager_moves_ = moves; }
  /// False when it does not. Does not flush.
  bool letManagerMove();

 private:
  PointerSample sampleOf(const X11Pointer& pointer) const;

  X11Window& window_;
  PointerTracker tracker_;
  bool grabbed_ = false;
  bool manager_moves_ = false;
  bool moved_by_manager_ = false;
  int pressed_x_ = 0;  ///< on the screen, device pixels
  int pressed_y_ = 0;
};

}  // namespace cocoa
