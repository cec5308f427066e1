// SPDX-License-Identifier: MIT
#include "windows/private/x11_pointer.h"

#include <vector>

#include "windows/private/x11_connection.h"

namespace cocoa {

namespace {
double number_of(xcb_input_fp1616_t fixed) {
  return static_cast<double>(fixed) / 65536.0;
}

double number_of(xcb_input_fp3232_t fixed) {
  return static_cast<double>(fixed.integral) + static_cast<double>(fixed.frac) / 4294967296.0;
}

/// Core pointer events all begin alike.
template <typename Event>
X11Pointer pointer_of_core(const Event& event) {
  X11Pointer pointer;
  pointer.window = event.event;
  pointer.x = event.event_x;
  pointer.y = event.event_y;
  pointer.root_x = event.root_x;
  pointer.root_y = event.root_y;
  pointer.state = event.state;
  pointer.time = event.time;
  return pointer;
}

std::vector<ScrollAxis> axes_of(xcb_input_device_class_iterator_t classes) {
  std::vector<ScrollAxis> axes;
  for (; classes.rem; xcb_input_device_class_next(&classes)) {
    if (classes.data->type != XCB_INPUT_DEVICE_CLASS_TYPE_SCROLL)
      continue;
    const auto* scroll = reinterpret_cast<const xcb_input_scroll_class_t*>(classes.data);
    axes.push_back({scroll->scroll_type == XCB_INPUT_SCROLL_TYPE_VERTICAL, scroll->number,
                    number_of(scroll->increment)});
  }
  return axes;
}

bool has_bit(const uint32_t* words, int length, unsigned int bit) {
  return bit / 32 < static_cast<unsigned int>(length) && (words[bit / 32] >> (bit % 32) & 1U) != 0;
}
}  // namespace

X11Pointer pointer_of(const xcb_button_press_event_t& event) {
  X11Pointer pointer = pointer_of_core(event);
  pointer.button = event.detail;
  return pointer;
}

X11Pointer pointer_of(const xcb_motion_notify_event_t& event) {
  return pointer_of_core(event);
}

X11Pointer pointer_of(const xcb_enter_notify_event_t& event) {
  return pointer_of_core(event);
}

X11Pointer pointer_of(const xcb_input_button_press_event_t& event) {
  X11Pointer pointer;
  pointer.window = event.event;
  pointer.x = number_of(event.event_x);
  pointer.y = number_of(event.event_y);
  pointer.root_x = number_of(event.root_x);
  pointer.root_y = number_of(event.root_y);
  pointer.time = event.time;
  pointer.button = event.detail;
  pointer.emulated = (event.flags & XCB_INPUT_POINTER_EVENT_FLAGS_POINTER_EMULATED) != 0;
  pointer.state = static_cast<uint16_t>(event.mods.effective & 0xffU);
  const uint32_t* held = xcb_input_button_press_button_mask(&event);
  for (const unsigned int button : {1U, 2U, 3U}) {
    if (has_bit(held, xcb_input_button_press_button_mask_length(&event), button))
      pointer.state = static_cast<uint16_t>(pointer.state | XCB_KEY_BUT_MASK_BUTTON_1 << (button - 1));
  }
  return pointer;
}

X11PointingDevices::X11PointingDevices(X11Connection& connection, bool wanted) : connection_(connection) {
  xcb_connection_t* c = connection.get();
  const xcb_query_extension_reply_t* extension = xcb_get_extension_data(c, &xcb_input_id);
  if (!wanted || !extension || !extension->present)
    return;
  const XcbPtr<xcb_input_xi_query_version_reply_t> version(
      xcb_input_xi_query_version_reply(c, xcb_input_xi_query_version(c, 2, 2), nullptr));
  const bool scrolls =
      version && (version->major_version > 2 || (version->major_version == 2 && version->minor_version >= 1));
  if (!scrolls)
    return;
  opcode_ = extension->major_opcode;
  readDevices();
}

void X11PointingDevices::readDevices() {
  xcb_connection_t* c = connection_.get();
  // Selected before they are read, so that no change goes unnoticed in between.
  watchAllPresses(false);
  const XcbPtr<xcb_input_xi_query_device_reply_t> reply(
      xcb_input_xi_query_device_reply(c, xcb_input_xi_query_device(c, XCB_INPUT_DEVICE_ALL), nullptr));
  if (!reply)
    return;
  auto devices = xcb_input_xi_query_device_infos_iterator(reply.get());
  for (; devices.rem; xcb_input_xi_device_info_next(&devices)) {
    const auto axes = axes_of(xcb_input_xi_device_info_classes_iterator(devices.data));
    wheels_.insert_or_assign(devices.data->deviceid, ScrollValuators(axes));
  }
}

void X11PointingDevices::watchAllPresses(bool watch) const {
  struct {
    xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
    uint32_t mask = XCB_INPUT_XI_EVENT_MASK_DEVICE_CHANGED;
  } wanted;
  if (watch)
    wanted.mask |= XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS;
  xcb_input_xi_select_events(connection_.get(), connection_.root(), 1, &wanted.head);
}

bool X11PointingDevices::sent(const xcb_generic_event_t& event) const {
  // The extension's opcode is in the byte that other events use for a detail.
  return usable() && (event.response_type & 0x7f) == XCB_GE_GENERIC && event.pad0 == opcode_;
}

void X11PointingDevices::select(xcb_window_t window) const {
  const struct {
    xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
    uint32_t mask = XCB_INPUT_XI_EVENT_MASK_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_BUTTON_RELEASE |
                    XCB_INPUT_XI_EVENT_MASK_MOTION;
  } pointing;
  xcb_input_xi_select_events(connection_.get(), window, 1, &pointing.head);
}

/// The device that is the pointer for this program.
xcb_input_device_id_t X11PointingDevices::pointer() const {
  constexpr xcb_input_device_id_t first_pointer = 2;
  xcb_connection_t* c = connection_.get();
  const XcbPtr<xcb_input_xi_get_client_pointer_reply_t> reply(
      xcb_input_xi_get_client_pointer_reply(c, xcb_input_xi_get_client_pointer(c, XCB_WINDOW_NONE), nullptr));
  return reply && reply->set ? reply->deviceid : first_pointer;
}

void X11PointingDevices::grabFor(xcb_window_t window) const {
  xcb_connection_t* c = connection_.get();
  unsigned int sequence = 0;
  // The server refuses to let one protocol take the pointer while a press told through the other lasts.
  if (usable()) {
    constexpr uint32_t mask = XCB_INPUT_XI_EVENT_MASK_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_BUTTON_RELEASE |
                              XCB_INPUT_XI_EVENT_MASK_MOTION;
    sequence = xcb_input_xi_grab_device(c, window, XCB_CURRENT_TIME, XCB_CURSOR_NONE, pointer(),
                                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, 0, 1, &mask)
                   .sequence;
  } else {
    constexpr uint16_t mask =
        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION;
    sequence = xcb_grab_pointer(c, 0, window, mask, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE,
                                XCB_CURSOR_NONE, XCB_CURRENT_TIME)
                   .sequence;
  }
  xcb_discard_reply(c, sequence);
}

void X11PointingDevices::ungrab() const {
  xcb_connection_t* c = connection_.get();
  if (usable()) {
    xcb_input_xi_ungrab_device(c, XCB_CURRENT_TIME, pointer());
  } else {
    xcb_ungrab_pointer(c, XCB_CURRENT_TIME);
  }
}

void X11PointingDevices::handleChange(const xcb_input_device_changed_event_t& event) {
  forgetPositions();
  const auto axes = axes_of(xcb_input_device_changed_classes_iterator(&event));
  wheels_.insert_or_assign(event.sourceid, ScrollValuators(axes));
}

ScrollTurn X11PointingDevices::turnOf(const xcb_input_motion_event_t& event) {
  const auto wheel = wheels_.find(event.sourceid);
  if (wheel == wheels_.end() || !wheel->second.scrolls())
    return {};
  const uint32_t* mask = xcb_input_button_press_valuator_mask(&event);
  const int words = xcb_input_button_press_valuator_mask_length(&event);
  const xcb_input_fp3232_t* next = xcb_input_button_press_axisvalues(&event);
  std::vector<ValuatorValue> values;
  for (unsigned int number = 0; number < static_cast<unsigned int>(words) * 32; ++number) {
    if (has_bit(mask, words, number))
      values.push_back({static_cast<uint16_t>(number), number_of(*next++)});
  }
  return wheel->second.moved(values);
}

void X11PointingDevices::forgetPositions() {
  for (auto& [device, wheel] : wheels_)
    wheel.forgetPositions();
}

}  // namespace cocoa
