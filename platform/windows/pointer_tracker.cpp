// SPDX-License-Identifier: MIT
#include "windows/pointer_tracker.h"

#include <algorithm>
#include <utility>

namespace cocoa {

namespace {
WindowEvent event_at(const PointerSample& sample, WindowEventType type) {
  WindowEvent event;
  event.type = type;
  event.location = sample.location;
  event.modifiers = sample.modifiers;
  event.timestamp = sample.timestamp;
  return event;
}
}  // namespace

void PointerTracker::seeAt(const PointerSample& sample) {
  last_ = sample;
  seen_ = true;
}

WindowEvent PointerTracker::press(const PointerSample& sample, int button) {
  seeAt(sample);
  WindowEvent event = event_at(sample, WindowEventType::mouse_down);
  event.button = button;
  event.click_count = clicks_.press(sample.location, button, sample.time);
  if (std::find(held_.begin(), held_.end(), button) == held_.end())
    held_.push_back(button);
  return event;
}

std::optional<WindowEvent> PointerTracker::release(const PointerSample& sample, int button) {
  const auto held = std::find(held_.begin(), held_.end(), button);
  if (held == held_.end())
    return std::nullopt;
  held_.erase(held);
  seeAt(sample);
  WindowEvent event = event_at(sample, WindowEventType::mouse_up);
  event.button = button;
  event.click_count = clicks_.release(button);
  return event;
}

WindowEvent PointerTracker::move(const PointerSample& sample) {
  const double dx = seen_ ? sample.screen_x - last_.screen_x : 0;
  const double dy = seen_ ? sample.screen_y - last_.screen_y : 0;
  seeAt(sample);
  WindowEvent event =
      event_at(sample, held_.empty() ? WindowEventType::mouse_moved : WindowEventType::mouse_dragged);
  event.button = held_.empty() ? 0 : held_.front();
  event.delta_x = static_cast<CGFloat>(dx);
  event.delta_y = static_cast<CGFloat>(dy);
  return event;
}

WindowEvent PointerTracker::scroll(const PointerSample& sample, ScrollTurn turn) {
  // Where the pointer was stays as it is: a wheel event has no room for motion, the next move tells it.
  WindowEvent event = event_at(sample, WindowEventType::scroll_wheel);
  event.delta_x = static_cast<CGFloat>(turn.x);
  event.delta_y = static_cast<CGFloat>(turn.y);
  return event;
}

std::optional<WindowEvent> PointerTracker::enter(const PointerSample& sample) {
  if (std::exchange(inside_, true))
    return std::nullopt;
  // In the middle of a drag the motion up to here still has to be told.
  if (held_.empty())
    seeAt(sample);
  return event_at(sample, WindowEventType::mouse_entered);
}

std::optional<WindowEvent> PointerTracker::leave(const PointerSample& sample) {
  if (!std::exchange(inside_, false))
    return std::nullopt;
  return event_at(sample, WindowEventType::mouse_exited);
}

}  // namespace cocoa
