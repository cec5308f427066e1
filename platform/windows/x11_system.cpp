// SPDX-License-Identifier: MIT
#include "windows/private/x11_system.h"

#include <xcb/shm.h>

#include <algorithm>
#include <vector>

#include "foundation/Clock.h"
#include "foundation/NSLog.h"
#include "windows/private/x11_resources.h"
#include "windows/private/x11_shared_memory.h"

namespace cocoa {

std::unique_ptr<WindowSystem> make_x11_window_system(const char* display_name, const X11Options& options) {
  auto connection = X11Connection::open(display_name);
  if (!connection)
    return nullptr;
  return std::make_unique<X11WindowSystem>(std::move(connection), options);
}

std::unique_ptr<WindowSystem> make_x11_window_system(const char* display_name, double scale_override) {
  return make_x11_window_system(display_name, X11Options{.scale = scale_override});
}

X11WindowSystem::X11WindowSystem(std::unique_ptr<X11Connection> connection, const X11Options& options)
    : connection_(std::move(connection)),
      keyboard_(*connection_),
      devices_(*connection_, options.xinput),
      pasteboards_(*connection_),
      scale_(options.scale > 0 ? options.scale
                               : scale_of_resources(connection_->rootProperty(XCB_ATOM_RESOURCE_MANAGER))),
      screen_width_(connection_->screen().width_in_pixels),
      screen_height_(connection_->screen().height_in_pixels) {
  shares_memory_ = options.shared_memory && server_shares_memory(*connection_);
  if (shares_memory_) {
    const auto* extension = xcb_get_extension_data(connection_->get(), &xcb_shm_id);
    shm_opcode_ = extension->major_opcode;
    shm_first_event_ = extension->first_event;
  }
  constexpr uint32_t structure = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_->get(), connection_->root(), XCB_CW_EVENT_MASK, &structure);
  connection_->flush();
}

X11WindowSystem::~X11WindowSystem() = default;

std::unique_ptr<PlatformWindow> X11WindowSystem::makeWindow(const WindowOptions& options,
                                                            PlatformWindowDelegate& delegate) {
  return X11Window::make(*this, options, delegate);
}

void X11WindowSystem::offerText(Pasteboard pasteboard, std::string text) {
  if (connected_)
    pasteboards_.offer(pasteboard, std::move(text), last_time_);
}

void X11WindowSystem::requestText(Pasteboard pasteboard, UseText use) {
  pasteboards_.request(pasteboard, std::move(use), last_time_, Clock::system().now());
}

NSSize X11WindowSystem::screenSize() const {
  return {static_cast<CGFloat>(screen_width_ / scale_), static_cast<CGFloat>(screen_height_ / scale_)};
}

void X11WindowSystem::remove(const X11Window& window) {
  const auto found = windows_.find(window.id());
  if (found != windows_.end() && found->second == &window)
    windows_.erase(found);
}

X11Window* X11WindowSystem::find(xcb_window_t id) const {
  const auto found = windows_.find(id);
  return found == windows_.end() ? nullptr : found->second;
}

void X11WindowSystem::forEachWindow(const std::function<void(X11Window&)>& use) {
  std::vector<xcb_window_t> ids;
  for (const auto& [id, window] : windows_)
    ids.push_back(id);
  for (const xcb_window_t id : ids) {
    if (X11Window* window = find(id))
      use(*window);
  }
}

void X11WindowSystem::expectFor(const X11Window& window, unsigned int sequence, UseReply use) {
  connection_->expect(sequence, [this, id = window.id(), sequence, use](const void* reply) {
    if (X11Window* asker = find(id))
      use(*asker, reply, sequence);
  });
}

double X11WindowSystem::secondsOf(xcb_timestamp_t time) {
  // An event that somebody made up may have no time; then it is as late as the last one.
  if (time != XCB_CURRENT_TIME) {
    milliseconds_ += static_cast<int32_t>(time - last_time_);
    last_time_ = time;
  }
  return static_cast<double>(milliseconds_) / 1000;
}

bool X11WindowSystem::dispatch() {
  if (!connected_)
    return false;
  connection_->beginDispatch();
  // Before the events: an answer that comes too late must not be taken for a timely one.
  bool any = pasteboards_.tellUnanswered(Clock::system().now());
  any = connection_->collectReplies() || any;
  while (const auto event = connection_->nextEvent()) {
    any = true;
    handle(*event);
  }
  flushMotion();
  const double now = Clock::system().now();
  forEachWindow([](X11Window& window) { window.tellDeferred(); });
  forEachWindow([now](X11Window& window) { window.visibility().askHost(now); });
  forEachWindow([now](X11Window& window) { window.parentProbe().ask(now); });
  connection_->flush();
  if (connection_->lost()) {
    loseConnection();
    any = true;
  }
  return any;
}

void X11WindowSystem::loseConnection() {
  NSLog("The connection to the X display is lost; its windows are gone.");
  connected_ = false;
  connection_->ignoreFromNowOn();
  forEachWindow([](X11Window& window) { window.handleGone(); });
}

void X11WindowSystem::handle(const xcb_generic_event_t& event) {
  if (event.response_type == 0) {
    handleError(reinterpret_cast<const xcb_generic_error_t&>(event));
    return;
  }
  if (handlePointing(event))
    return;
  flushMotion();
  if (!handleExtension(event) && !handleStructure(event) && !pasteboards_.handle(event))
    handleOther(event);
}

void X11WindowSystem::handleError(const xcb_generic_error_t& error) {
  constexpr uint8_t bad_window = 3;
  constexpr uint8_t bad_match = 8;
  constexpr uint8_t bad_drawable = 9;
  if (error.major_code == XCB_SET_INPUT_FOCUS && error.full_sequence == key_given_.sequence &&
      key_given_.otherwise != XCB_WINDOW_NONE) {
    giveKeyTo(std::exchange(key_given_.otherwise, XCB_WINDOW_NONE), XCB_WINDOW_NONE, XCB_CURRENT_TIME);
  }
  // Windows are destroyed and hidden by others while our requests are on their way.
  const bool too_late = error.error_code == bad_window || error.error_code == bad_drawable ||
                        (error.error_code == bad_match && error.major_code == XCB_SET_INPUT_FOCUS);
  if (too_late)
    return;
  if (shares_memory_ && error.major_code == shm_opcode_) {
    shares_memory_ = false;
    forEachWindow([](X11Window& window) { window.surface().stopSharing(); });
  }
  if (logged_errors_.insert({error.major_code, error.error_code}).second) {
    NSLog("The X server refused a request %d.%d with error %d.", error.major_code, error.minor_code,
          error.error_code);
  }
}

bool X11WindowSystem::handleExtension(const xcb_generic_event_t& event) {
  if (shares_memory_ && (event.response_type & 0x7f) == shm_first_event_ + XCB_SHM_COMPLETION) {
    const auto& completion = reinterpret_cast<const xcb_shm_completion_event_t&>(event);
    if (X11Window* window = find(completion.drawable))
      window->surface().wasRead(completion.shmseg);
    return true;
  }
  return keyboard_.handle(event);
}

bool X11WindowSystem::handlePointing(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7f) {
    case XCB_MOTION_NOTIFY:
      handleMotion(pointer_of(reinterpret_cast<const xcb_motion_notify_event_t&>(event)));
      return true;
    case XCB_BUTTON_PRESS:
    case XCB_BUTTON_RELEASE: {
      const X11Pointer pointer = pointer_of(reinterpret_cast<const xcb_button_press_event_t&>(event));
      // With XInput 2 wheels turn through it alone.
      if (!devices_.usable() || !turn_of_button(pointer.button))
        handlePress(pointer, (event.response_type & 0x7f) == XCB_BUTTON_PRESS);
      return true;
    }
    case XCB_GE_GENERIC:
      if (devices_.sent(event))
        handleXInput(reinterpret_cast<const xcb_ge_generic_event_t&>(event));
      return true;
    default:
      return false;
  }
}

void X11WindowSystem::popupKeyChanged() {
  if (!devices_.usable())
    return;
  bool wanted = false;
  forEachWindow([&wanted](const X11Window& window) {
    wanted = wanted || (window.isPopup() && window.keyFocus().isClaimed());
  });
  if (std::exchange(watches_presses_, wanted) != wanted)
    devices_.watchAllPresses(wanted);
}

void X11WindowSystem::giveKeyTo(xcb_window_t window, xcb_window_t otherwise, xcb_timestamp_t time) {
  const auto cookie = xcb_set_input_focus(connection_->get(), XCB_INPUT_FOCUS_PARENT, window, time);
  key_given_ = {cookie.sequence, otherwise};
}

void X11WindowSystem::handlePressAnywhere(const xcb_input_raw_button_press_event_t& press) {
  if (turn_of_button(press.detail))
    return;
  const xcb_timestamp_t time = press.time;
  const double seconds = secondsOf(time);
  forEachWindow([seconds](X11Window& window) {
    if (window.isPopup())
      window.keyFocus().handlePressAnywhere(seconds);
  });
  // Raw events have no position.
  const unsigned int sequence = xcb_query_pointer(connection_->get(), connection_->root()).sequence;
  connection_->expect(sequence, [this, time](const void* reply) {
    const auto* pointer = static_cast<const xcb_query_pointer_reply_t*>(reply);
    if (!pointer)
      return;
    bool inside = false;
    forEachWindow([&](const X11Window& window) {
      inside = inside || (window.isPopup() && window.covers(pointer->root_x, pointer->root_y));
    });
    if (inside)
      return;
    forEachWindow([time](X11Window& window) {
      if (window.isPopup())
        window.keyFocus().handlePressOutside(time);
    });
  });
}

void X11WindowSystem::handleXInput(const xcb_ge_generic_event_t& event) {
  if (event.event_type == XCB_INPUT_RAW_BUTTON_PRESS) {
    handlePressAnywhere(reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event));
    return;
  }
  if (event.event_type == XCB_INPUT_DEVICE_CHANGED) {
    devices_.handleChange(reinterpret_cast<const xcb_input_device_changed_event_t&>(event));
    return;
  }
  const auto& pointing = reinterpret_cast<const xcb_input_button_press_event_t&>(event);
  const X11Pointer pointer = pointer_of(pointing);
  switch (event.event_type) {
    case XCB_INPUT_MOTION:
      if (const ScrollTurn turn = devices_.turnOf(pointing))
        handleTurn(pointer, turn);
      handleMotion(pointer);
      break;
    case XCB_INPUT_BUTTON_PRESS:
    case XCB_INPUT_BUTTON_RELEASE:
      // A wheel that tells its fractions has its notches made up by the server besides.
      if (!pointer.emulated || !turn_of_button(pointer.button))
        handlePress(pointer, event.event_type == XCB_INPUT_BUTTON_PRESS);
      break;
    default:
      break;
  }
}

void X11WindowSystem::handlePress(const X11Pointer& pointer, bool down) {
  if (const ScrollTurn turn = turn_of_button(pointer.button)) {
    if (down)
      handleTurn(pointer, turn);
    return;
  }
  flushMotion();
  constexpr unsigned int last_button = 3;
  X11Window* window = find(pointer.window);
  if (window && pointer.button >= 1 && pointer.button <= last_button)
    window->handleButton(pointer, down);
}

void X11WindowSystem::handleTurn(const X11Pointer& pointer, ScrollTurn turn) {
  flushMotion();
  if (X11Window* window = find(pointer.window))
    window->handleTurn(pointer, turn);
}

void X11WindowSystem::handleMotion(const X11Pointer& pointer) {
  // Of a row of motions only the last is told: drawing for each would fall ever further behind.
  if (motion_ && (motion_->window != pointer.window || motion_->state != pointer.state))
    flushMotion();
  motion_ = pointer;
}

void X11WindowSystem::flushMotion() {
  if (!motion_)
    return;
  const X11Pointer pointer = *motion_;
  motion_.reset();
  if (X11Window* window = find(pointer.window))
    window->handleMotion(pointer);
}

bool X11WindowSystem::handleStructure(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7f) {
    case XCB_CONFIGURE_NOTIFY:
      handleConfigure(event);
      return true;
    case XCB_REPARENT_NOTIFY: {
      const auto& reparent = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
      if (X11Window* window = find(reparent.window))
        window->placement().handleReparent(reparent);
      return true;
    }
    case XCB_MAP_NOTIFY:
      if (X11Window* window = find(reinterpret_cast<const xcb_map_notify_event_t&>(event).window))
        window->handleMap();
      return true;
    case XCB_UNMAP_NOTIFY:
      if (X11Window* window = find(reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window))
        window->handleUnmap();
      return true;
    case XCB_DESTROY_NOTIFY:
      if (X11Window* window = find(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window))
        window->handleGone();
      return true;
    default:
      return false;
  }
}

void X11WindowSystem::handleConfigure(const xcb_generic_event_t& event) {
  const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
  if (X11Window* window = find(configure.window)) {
    window->handleConfigure(configure, event.full_sequence);
    return;
  }
  const bool is_screen = configure.window == connection_->root();
  if (is_screen) {
    screen_width_ = configure.width;
    screen_height_ = configure.height;
  }
  forEachWindow([&](X11Window& window) {
    if (is_screen ? window.host() == XCB_WINDOW_NONE : window.host() == configure.window)
      window.parentHasHeight(configure.height);
  });
}

void X11WindowSystem::handleOther(const xcb_generic_event_t& event) {
  const uint8_t type = event.response_type & 0x7f;
  switch (type) {
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE: {
      const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
      if (X11Window* window = find(key.event))
        window->handleKey(key, type == XCB_KEY_PRESS);
      break;
    }
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY: {
      const auto& crossing = reinterpret_cast<const xcb_enter_notify_event_t&>(event);
      devices_.forgetPositions();
      X11Window* window = find(crossing.event);
      if (window && crossing.detail != XCB_NOTIFY_DETAIL_INFERIOR)
        window->handleCrossing(pointer_of(crossing), type == XCB_ENTER_NOTIFY);
      break;
    }
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT: {
      const auto& focus = reinterpret_cast<const xcb_focus_in_event_t&>(event);
      if (X11Window* window = find(focus.event))
        window->keyFocus().handleChange(focus, type == XCB_FOCUS_IN);
      break;
    }
    case XCB_EXPOSE: {
      const auto& expose = reinterpret_cast<const xcb_expose_event_t&>(event);
      if (X11Window* window = find(expose.window))
        window->handleExpose(expose);
      break;
    }
    case XCB_VISIBILITY_NOTIFY: {
      const auto& visibility = reinterpret_cast<const xcb_visibility_notify_event_t&>(event);
      if (X11Window* window = find(visibility.window))
        window->visibility().setObscured(visibility.state == XCB_VISIBILITY_FULLY_OBSCURED);
      break;
    }
    case XCB_PROPERTY_NOTIFY: {
      const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      X11Window* window = find(property.window);
      if (window && property.atom == connection_->atoms().wm_state)
        window->visibility().askManager();
      break;
    }
    case XCB_CLIENT_MESSAGE: {
      const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
      if (X11Window* window = find(message.window))
        window->handleMessage(message);
      break;
    }
    default:
      break;
  }
}

}  // namespace cocoa
