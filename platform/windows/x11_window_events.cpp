#include <utility>

#include "windows/private/x11_connection.h"
#include "windows/private/x11_properties.h"
#include "windows/private/x11_system.h"
#include "windows/private/x11_window.h"

namespace cocoa {

namespace {
/// Whether `sequence` numbers an earlier request than `other`; they wrap around.
bool is_before(uint32_t sequence, uint32_t other) {
  return static_cast<int32_t>(sequence - other) < 0;
}
}  // namespace

void X11Window::tell(const std::vector<WindowEvent>& events) {
  X11WindowSystem& system = system_;
  const xcb_window_t id = id_;
  for (const WindowEvent& event : events) {
    if (X11Window* window = system.find(id))
      window->delegate_.windowReceived(event);
  }
}

void X11Window::handleButton(const X11Pointer& pointer, bool down) {
  if (const auto event = pointer_.button(pointer, down))
    delegate_.windowReceived(*event);
}

void X11Window::handleMotion(const X11Pointer& pointer) {
  tell(pointer_.motion(pointer));
}

void X11Window::handleTurn(const X11Pointer& pointer, ScrollTurn turn) {
  delegate_.windowReceived(pointer_.scroll(pointer, turn));
}

void X11Window::handleCrossing(const X11Pointer& pointer, bool in) {
  if (const auto event = pointer_.crossing(pointer, in))
    delegate_.windowReceived(*event);
}

void X11Window::handleKey(const xcb_key_press_event_t& event, bool down) {
  if (down && isPopup() && !parentIsSeen())
    return tellParentHidden();
  X11Keyboard& keyboard = system_.keyboard();
  X11Keyboard::Key key =
      down ? keyboard.press(event.detail, event.state) : keyboard.release(event.detail, event.state);
  WindowEvent told;
  told.type = down ? WindowEventType::key_down : WindowEventType::key_up;
  told.location = place_.locationOf(event.event_x, event.event_y);
  told.modifiers = modifiers_of_state(event.state);
  told.timestamp = system_.secondsOf(event.time);
  told.keysym = key.keysym;
  told.characters = std::move(key.characters);
  told.is_repeat = key.is_repeat;
  delegate_.windowReceived(told);
}

void X11Window::handleExpose(const xcb_expose_event_t& event) {
  lieOverParent();
  surface_->restoreInWindow({event.x, event.y, event.width, event.height});
}

void X11Window::handleConfigure(const xcb_configure_notify_event_t& event, uint32_t sequence) {
  // What was on its way when we asked for something else no longer holds.
  if (is_before(sequence, configured_by_))
    return;
  if (event.width != place_.width() || event.height != place_.height()) {
    place_.setPixelSize(event.width, event.height);
    resizeSurface();
  }
  const bool by_manager = (event.response_type & 0x80) != 0;
  X11WindowSystem& system = system_;
  const xcb_window_t id = id_;
  if (by_manager || !reparented_) {
    setPosition(event.x, event.y);
  } else {
    askForPosition();
  }
  if (X11Window* window = system.find(id))
    window->tellDeferred();
}

void X11Window::handleReparent(const xcb_reparent_notify_event_t& event) {
  if (kind_ == WindowKind::embedded)
    return;
  reparented_ = event.parent != connection_.root();
  askForPosition();
}

void X11Window::askForPosition() {
  const unsigned int sequence =
      xcb_translate_coordinates(connection_.get(), id_, connection_.root(), 0, 0).sequence;
  connection_.expect(sequence, [&system = system_, id = id_, sequence](const void* reply) {
    X11Window* window = system.find(id);
    if (!window || !reply || is_before(sequence, window->configured_by_))
      return;
    const auto* origin = static_cast<const xcb_translate_coordinates_reply_t*>(reply);
    window->setPosition(origin->dst_x, origin->dst_y);
  });
}

void X11Window::setPosition(int x, int y) {
  if (place_.moveTo(x, y))
    delegate_.windowMoved();
}

void X11Window::parentHasHeight(int height) {
  if (place_.setParentHeight(height))
    delegate_.windowMoved();
}

void X11Window::handleMap() {
  mapped_ = true;
  focus_.windowIsMapped();
}

void X11Window::handleUnmap() {
  mapped_ = false;
  obscured_ = false;
  tell(pointer_.releaseAll());
}

void X11Window::handleVisibility(const xcb_visibility_notify_event_t& event) {
  obscured_ = event.state == XCB_VISIBILITY_FULLY_OBSCURED;
}

void X11Window::handleProperty(const xcb_property_notify_event_t& event) {
  if (event.atom != connection_.atoms().wm_state)
    return;
  const unsigned int sequence =
      xcb_get_property(connection_.get(), 0, id_, event.atom, event.atom, 0, 1).sequence;
  connection_.expect(sequence, [&system = system_, id = id_](const void* data) {
    X11Window* window = system.find(id);
    if (!window || !data)
      return;
    const auto* reply = static_cast<const xcb_get_property_reply_t*>(data);
    constexpr uint32_t iconic_state = 3;
    window->iconic_ = xcb_get_property_value_length(reply) >= 4 &&
                      *static_cast<const uint32_t*>(xcb_get_property_value(reply)) == iconic_state;
  });
}

void X11Window::handleMessage(const xcb_client_message_event_t& event) {
  const X11Atoms& atoms = connection_.atoms();
  if (event.type != atoms.wm_protocols || event.format != 32)
    return;
  if (event.data.data32[0] == atoms.net_wm_ping) {
    answer_ping(connection_, event);
  } else if (event.data.data32[0] == atoms.wm_delete_window) {
    delegate_.windowShouldClose();
  }
}

void X11Window::handleGone() {
  gone_ = true;
  releasePointer();
  surface_->abandon();
  X11WindowSystem& system = system_;
  const xcb_window_t id = id_;
  focus_.handleGone();
  if (X11Window* window = system.find(id)) {
    system.remove(*window);
    window->delegate_.windowGone();
  }
}

void X11Window::askWhetherHostShows(double now) {
  // A host that hides its window tells nobody inside; asking four times a second costs nothing.
  constexpr double interval = 0.25;
  if (kind_ != WindowKind::embedded || !mapped_ || asked_host_ || now - host_asked_at_ < interval)
    return;
  asked_host_ = true;
  host_asked_at_ = now;
  const unsigned int sequence = xcb_get_window_attributes(connection_.get(), id_).sequence;
  connection_.expect(sequence, [&system = system_, id = id_](const void* reply) {
    X11Window* window = system.find(id);
    if (!window)
      return;
    window->asked_host_ = false;
    if (reply) {
      window->host_shows_ =
          static_cast<const xcb_get_window_attributes_reply_t*>(reply)->map_state == XCB_MAP_STATE_VIEWABLE;
    }
  });
}

void X11Window::tellDeferred() {
  if (std::exchange(must_redraw_, false))
    delegate_.windowMustRedraw();
}

}  // namespace cocoa
