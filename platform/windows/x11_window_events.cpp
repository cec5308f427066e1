#include <algorithm>
#include <cmath>
#include <utility>

#include "windows/pixel_geometry.h"
#include "windows/private/x11_connection.h"
#include "windows/private/x11_properties.h"
#include "windows/private/x11_system.h"
#include "windows/private/x11_window.h"

namespace cocoa {

namespace {
/// The bit of a button that is held, by the platform's numbers: left, right, middle.
uint16_t bit_of_button(int button) {
  switch (button) {
    case 0:
      return XCB_KEY_BUT_MASK_BUTTON_1;
    case 1:
      return XCB_KEY_BUT_MASK_BUTTON_3;
    default:
      return XCB_KEY_BUT_MASK_BUTTON_2;
  }
}

int button_of(unsigned int x11_button) {
  switch (x11_button) {
    case 1:
      return 0;
    case 3:
      return 1;
    default:
      return 2;
  }
}

uint32_t modifiers_of(uint16_t state) {
  uint32_t modifiers = 0;
  if (state & XCB_KEY_BUT_MASK_SHIFT)
    modifiers |= modifier_shift;
  if (state & XCB_KEY_BUT_MASK_CONTROL)
    modifiers |= modifier_control;
  if (state & XCB_KEY_BUT_MASK_MOD_1)
    modifiers |= modifier_option;
  if (state & XCB_KEY_BUT_MASK_MOD_4)
    modifiers |= modifier_command;
  return modifiers;
}

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

PointerSample X11Window::sampleOf(const X11Pointer& pointer) const {
  PointerSample sample;
  sample.location = place_.locationOf(pointer.x, pointer.y);
  sample.screen_x = pointer.root_x / scale();
  sample.screen_y = pointer.root_y / scale();
  sample.modifiers = modifiers_of(pointer.state);
  sample.time = pointer.time;
  sample.timestamp = system_.secondsOf(pointer.time);
  return sample;
}

void X11Window::handleButton(const X11Pointer& pointer, bool down) {
  const PointerSample sample = sampleOf(pointer);
  const int button = button_of(pointer.button);
  if (std::exchange(moved_by_manager_, false) && !down)
    ask_to_stop_moving(connection_, id_);
  if (down && button == 0) {
    pressed_x_ = static_cast<int>(std::floor(pointer.root_x));
    pressed_y_ = static_cast<int>(std::floor(pointer.root_y));
  }
  if (down) {
    tell({pointer_.press(sample, button)});
  } else if (const auto event = pointer_.release(sample, button)) {
    tell({*event});
  }
}

void X11Window::handleMotion(const X11Pointer& pointer) {
  const PointerSample sample = sampleOf(pointer);
  std::vector<WindowEvent> events;
  // The release of a button is lost to us when another program grabs the pointer meanwhile.
  const std::vector<int> held = pointer_.held();
  for (const int button : held) {
    if ((pointer.state & bit_of_button(button)) == 0)
      events.push_back(*pointer_.release(sample, button));
  }
  if (!pointer_.isAt(sample))
    events.push_back(pointer_.move(sample));
  tell(events);
}

void X11Window::handleTurn(const X11Pointer& pointer, ScrollTurn turn) {
  tell({pointer_.scroll(sampleOf(pointer), turn)});
}

void X11Window::handleCrossing(const X11Pointer& pointer, bool in) {
  const PointerSample sample = sampleOf(pointer);
  if (const auto event = in ? pointer_.enter(sample) : pointer_.leave(sample))
    tell({*event});
}

void X11Window::releaseHeldButtons() {
  const std::vector<int> held = pointer_.held();
  std::vector<WindowEvent> events;
  events.reserve(held.size());
  for (const int button : held)
    events.push_back(*pointer_.release(pointer_.last(), button));
  tell(events);
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
  told.modifiers = modifiers_of(event.state);
  told.timestamp = system_.secondsOf(event.time);
  told.keysym = key.keysym;
  told.characters = std::move(key.characters);
  told.is_repeat = key.is_repeat;
  tell({told});
}

void X11Window::handleFocus(const xcb_focus_in_event_t& event, bool has_it) {
  // Grabs borrow the focus for a moment; and the pointer's being here does not make us key.
  const bool grabs = event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB;
  const bool ours = event.detail == XCB_NOTIFY_DETAIL_ANCESTOR || event.detail == XCB_NOTIFY_DETAIL_VIRTUAL ||
                    event.detail == XCB_NOTIFY_DETAIL_NONLINEAR ||
                    event.detail == XCB_NOTIFY_DETAIL_NONLINEAR_VIRTUAL;
  if (grabs || !ours || is_key_ == has_it)
    return;
  if (!has_it) {
    // Of a popup that is told of presses anywhere, these end it and not the pointer's way to its parent.
    if (isPopup() && shown_ && !gave_key_back_ && system_.watchesPresses())
      return askWhoHasKeys();
    return loseKey();
  }
  is_key_ = true;
  asked_for_key_ = false;
  if (isPopup())
    system_.popupKeyChanged();
  delegate_.windowBecameKey();
}

void X11Window::handlePressAnywhere(double time) {
  if (isPopupWithKey())
    press_seen_at_ = time;
}

void X11Window::loseKey() {
  is_key_ = gave_key_back_ = false;
  asked_for_key_ = false;
  key_before_ = XCB_WINDOW_NONE;
  selectKeys(false);
  system_.keyboard().forgetHeldKeys();
  if (isPopup())
    system_.popupKeyChanged();
  delegate_.windowResignedKey();
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
  if (std::exchange(wants_key_, false))
    takeKey();
}

void X11Window::handleUnmap() {
  mapped_ = false;
  obscured_ = false;
  // The server has taken it back from what no longer shows.
  has_pointer_ = false;
  releaseHeldButtons();
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
  if (std::exchange(is_key_, false))
    delegate_.windowResignedKey();
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
