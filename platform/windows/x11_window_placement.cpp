// SPDX-License-Identifier: MIT
#include "windows/private/x11_window_placement.h"

#include "windows/private/x11_system.h"

namespace cocoa {

void X11WindowPlacement::request() {
  xcb_configure_window_value_list_t values{};
  values.x = place_.x();
  values.y = place_.y();
  values.width = static_cast<uint32_t>(place_.width());
  values.height = static_cast<uint32_t>(place_.height());
  constexpr uint16_t mask =
      XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
  xcb_connection_t* c = window_.system().connection().get();
  requested_by_ = xcb_configure_window_aux(c, window_.id(), mask, &values).sequence;
}

bool X11WindowPlacement::isOutdated(uint32_t sequence) const {
  // The numbers wrap around.
  return static_cast<int32_t>(sequence - requested_by_) < 0;
}

void X11WindowPlacement::handlePosition(const xcb_configure_notify_event_t& event) {
  const bool by_manager = (event.response_type & 0x80) != 0;
  if (by_manager || !reparented_) {
    setPosition(event.x, event.y);
  } else {
    askForOrigin();
  }
}

void X11WindowPlacement::handleReparent(const xcb_reparent_notify_event_t& event) {
  if (window_.isEmbedded())
    return;
  reparented_ = event.parent != window_.system().connection().root();
  askForOrigin();
}

void X11WindowPlacement::askForOrigin() {
  X11WindowSystem& system = window_.system();
  X11Connection& connection = system.connection();
  const unsigned int sequence =
      xcb_translate_coordinates(connection.get(), window_.id(), connection.root(), 0, 0).sequence;
  system.expectFor(window_, sequence, [](X11Window& window, const void* reply, uint32_t number) {
    X11WindowPlacement& placement = window.placement();
    placement.question_.answered();
    const auto* origin = static_cast<const xcb_translate_coordinates_reply_t*>(reply);
    if (origin && window.isEmbedded()) {
      placement.setScreenPlace(origin->dst_x, origin->dst_y);
    } else if (origin && !placement.isOutdated(number)) {
      placement.setPosition(origin->dst_x, origin->dst_y);
    }
  });
}

void X11WindowPlacement::setPosition(int x, int y) {
  if (place_.moveTo(x, y))
    window_.delegate().windowMoved();
}

NSRect X11WindowPlacement::screenFrame() const {
  X11WindowSystem& system = window_.system();
  on_screen_ = {place_.x(), place_.y()};
  if (!window_.isGone() && (window_.isEmbedded() || reparented_)) {
    if (const auto origin = system.connection().originOf(window_.id()))
      on_screen_ = *origin;
  }
  return place_.frameAt(on_screen_.x, on_screen_.y, system.screenHeight());
}

X11Connection::Place X11WindowPlacement::knownOrigin() const {
  return window_.isEmbedded() ? on_screen_ : X11Connection::Place{place_.x(), place_.y()};
}

void X11WindowPlacement::askForScreenPlace(double now) {
  if (question_.begin(now))
    askForOrigin();
}

void X11WindowPlacement::setScreenPlace(int x, int y) {
  if (x == on_screen_.x && y == on_screen_.y)
    return;
  on_screen_ = {x, y};
  window_.delegate().windowMoved();
}

}  // namespace cocoa
