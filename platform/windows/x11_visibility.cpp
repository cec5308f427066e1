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
  X11WindowSystem& system = window_.system();
  X11Connection& connection = system.connection();
  const xcb_atom_t state = connection.atoms().wm_state;
  const unsigned int sequence =
      xcb_get_property(connection.get(), 0, window_.id(), state, state, 0, 1).sequence;
  connection.expect(sequence, [&system, id = window_.id()](const void* reply) {
    X11Window* window = system.find(id);
    if (window && reply)
      window->visibility().iconic_ = is_iconic(reply);
  });
}

void X11Visibility::askHost(double now) {
  if (!window_.isEmbedded() || !mapped_ || !host_question_.begin(now))
    return;
  X11WindowSystem& system = window_.system();
  X11Connection& connection = system.connection();
  const unsigned int sequence = xcb_get_window_attributes(connection.get(), window_.id()).sequence;
  connection.expect(sequence, [&system, id = window_.id()](const void* reply) {
    X11Window* window = system.find(id);
    if (!window)
      return;
    X11Visibility& visibility = window->visibility();
    visibility.host_question_.answered();
    if (reply)
      visibility.host_shows_ = is_viewable(reply);
  });
}

}  // namespace cocoa
