// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <string_view>

#include "windows/window_system.h"

/// What a window says of itself to window managers and hosts.

namespace cocoa {

class X11Connection;

/// In UTF-8. Of a title that no title bar could show, only the beginning.
void set_title(X11Connection& connection, xcb_window_t window, std::string_view whole);
/// The editor has the size of its design: managers may move the window, not resize it.
void set_fixed_size(X11Connection& connection, xcb_window_t window, int width, int height, WindowKind kind);
/// The window may be resized, down to half the given size and best with its proportions.
void set_natural_size(X11Connection& connection, xcb_window_t window, int width, int height, WindowKind kind);
/// Everything but title and size. `transient_for` is the top-level window that a panel or popup belongs to,
/// or XCB_WINDOW_NONE.
void set_identity(X11Connection& connection, xcb_window_t window, WindowKind kind,
                  xcb_window_t transient_for);
/// That it stays above the window it belongs to; managers forget it whenever the window is withdrawn.
void set_above(X11Connection& connection, xcb_window_t window);

/// Answers a manager that asks whether we are alive.
void answer_ping(X11Connection& connection, const xcb_client_message_event_t& ping);
/// Tells the manager that a window that it may have reparented is hidden by its owner.
void announce_withdrawal(X11Connection& connection, xcb_window_t window);
/// Asks the manager to move the window along with the pointer, which was pressed at (x, y) on the screen, in
/// device pixels. The pointer must not be grabbed.
void ask_to_move(X11Connection& connection, xcb_window_t window, int x, int y);
/// The button has come up before the manager took the pointer.
void ask_to_stop_moving(X11Connection& connection, xcb_window_t window);
/// Asks the manager to give the window the keyboard.
void ask_to_activate(X11Connection& connection, xcb_window_t window);

}  // namespace cocoa
