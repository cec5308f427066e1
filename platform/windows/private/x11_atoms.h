// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

namespace cocoa {

/// The server's numbers for the names that window managers, hosts and we agree on.
struct X11Atoms {
  xcb_atom_t utf8_string = 0;
  xcb_atom_t utf8_text = 0;  ///< the same by its other name
  xcb_atom_t clipboard = 0;
  xcb_atom_t targets = 0;
  xcb_atom_t timestamp = 0;
  xcb_atom_t wm_protocols = 0;
  xcb_atom_t wm_delete_window = 0;
  xcb_atom_t wm_state = 0;
  xcb_atom_t net_active_window = 0;
  xcb_atom_t net_supported = 0;
  xcb_atom_t net_supporting_wm_check = 0;
  xcb_atom_t net_wm_moveresize = 0;
  xcb_atom_t net_wm_name = 0;
  xcb_atom_t net_wm_pid = 0;
  xcb_atom_t net_wm_ping = 0;
  xcb_atom_t net_wm_state = 0;
  xcb_atom_t net_wm_state_above = 0;
  xcb_atom_t net_wm_state_hidden = 0;
  xcb_atom_t net_wm_state_shaded = 0;
  xcb_atom_t net_wm_window_type = 0;
  xcb_atom_t net_wm_window_type_normal = 0;
  xcb_atom_t net_wm_window_type_dialog = 0;
  xcb_atom_t net_wm_window_type_popup_menu = 0;
  xcb_atom_t xembed_info = 0;
  xcb_atom_t compositor = 0;  ///< the selection that a compositor of our screen owns
};

/// Waits for the server once.
X11Atoms intern_atoms(xcb_connection_t* connection, int screen_number);

}  // namespace cocoa
