// SPDX-License-Identifier: MIT
#include "windows/private/x11_window_pointer.h"

#include <cmath>
#include <utility>

#include "windows/private/x11_properties.h"
#include "windows/private/x11_system.h"

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
}  // namespace

uint32_t modifiers_of_state(uint16_t state) {
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

PointerSample X11WindowPointer::sampleOf(const X11Pointer& pointer) const {
  const X11WindowPlace& place = window_.place();
  PointerSample sample;
  sample.location = place.locationOf(pointer.x, pointer.y);
  sample.screen_x = pointer.root_x / place.scale();
  sample.screen_y = pointer.root_y / place.scale();
  sample.modifiers = modifiers_of_state(pointer.state);
  sample.time = pointer.time;
  sample.timestamp = window_.system().secondsOf(pointer.time);
  return sample;
}

std::optional<WindowEvent> X11WindowPointer::button(const X11Pointer& pointer, bool down) {
  const PointerSample sample = sampleOf(pointer);
  const int button = button_of(pointer.button);
  if (std::exchange(moved_by_manager_, false) && !down)
    ask_to_stop_moving(window_.system().connection(), window_.id());
  if (down && button == 0) {
    pressed_x_ = static_cast<int>(std::floor(pointer.root_x));
    pressed_y_ = static_cast<int>(std::floor(pointer.root_y));
  }
  if (down)
    return tracker_.press(sample, button);
  return tracker_.release(sample, button);
}

std::vector<WindowEvent> X11WindowPointer::motion(const X11Pointer& pointer) {
  const PointerSample sample = sampleOf(pointer);
  std::vector<WindowEvent> events;
  // The release of a button is lost to us when another program grabs the pointer meanwhile.
  const std::vector<int> held = tracker_.held();
  for (const int button : held) {
    if ((pointer.state & bit_of_button(button)) == 0)
      events.push_back(*tracker_.release(sample, button));
  }
  if (!tracker_.isAt(sample))
    events.push_back(tracker_.move(sample));
  return events;
}

WindowEvent X11WindowPointer::scroll(const X11Pointer& pointer, ScrollTurn turn) {
  return tracker_.scroll(sampleOf(pointer), turn);
}

std::optional<WindowEvent> X11WindowPointer::crossing(const X11Pointer& pointer, bool in) {
  const PointerSample sample = sampleOf(pointer);
  return in ? tracker_.enter(sample) : tracker_.leave(sample);
}

std::vector<WindowEvent> X11WindowPointer::releaseAll() {
  grabbed_ = false;
  const std::vector<int> held = tracker_.held();
  std::vector<WindowEvent> events;
  events.reserve(held.size());
  for (const int button : held)
    events.push_back(*tracker_.release(tracker_.last(), button));
  return events;
}

bool X11WindowPointer::grab() {
  if (std::exchange(grabbed_, true))
    return false;
  window_.system().pointingDevices().grabFor(window_.id());
  return true;
}

bool X11WindowPointer::release() {
  if (!std::exchange(grabbed_, false))
    return false;
  window_.system().pointingDevices().ungrab();
  return true;
}

bool X11WindowPointer::letManagerMove() {
  if (!manager_moves_)
    return false;
  // The press is ours as long as the button is held.
  window_.system().pointingDevices().ungrab();
  ask_to_move(window_.system().connection(), window_.id(), pressed_x_, pressed_y_);
  moved_by_manager_ = true;
  return true;
}

}  // namespace cocoa
