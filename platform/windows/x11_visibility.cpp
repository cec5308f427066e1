// SPDX-License-Identifier: MIT
#include "windows/private/x11_visibility.h"

#include "windows/private/x11_system.h"

namespace cocoa {

void X11Visibility::show(bool mapped_at_once) {
  shown_ = true;
  mapped_ = mapped_ || mapped_at_once;
}

void X11Visibility::hide() {
  shown_ = false;
  // The server's word for it may come only after the window has been shown again.
  handleUnmap();
}

void X11Visibility::askManager() {
  X11Connection& connection = window_.system().connection();
  const xcb_atom_t state = connection.atoms().wm_state;
  const unsigned int sequence =
      xcb_get_property(connection.get(), 0, window_.id(), state, state, 0, 1).sequence;
  window_.system().expectFor(window_, sequence, [](X11Window& window, const void* reply, uint32_t) {
    if (reply)
      window.visibility().iconic_ = is_iconic(reply);
  });
}

void X11Visibility::askHost(double now) {
  if (!window_.isEmbedded() || !mapped_ || !host_question_.begin(now))
    return;
  xcb_connection_t* c = window_.system().connection().get();
  const unsigned int sequence = xcb_get_window_attributes(c, window_.id()).sequence;
  window_.system().expectFor(window_, sequence, [](X11Window& window, const void* reply, uint32_t) {
    X11Visibility& visibility = window.visibility();
    visibility.host_question_.answered();
    if (reply)
      visibility.host_shows_ = is_viewable(reply);
  });
}

}  // namespace cocoa
