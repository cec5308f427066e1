// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "windows/window_system.h"

namespace cocoa {

/// Keeps everything a window tells, in order.
class Recorder : public PlatformWindowDelegate {
 public:
  std::vector<WindowEvent> events;
  std::vector<std::string> told;
  /// Called after an event is kept; may destroy the window.
  std::function<void(const WindowEvent&)> on_event;
  std::function<void()> on_resigned;
  std::function<void()> on_close;

  void windowReceived(const WindowEvent& event) override {
    events.push_back(event);
    tell(name(event.type));
    if (on_event)
      on_event(event);
  }
  void windowMustRedraw() override { tell("redraw"); }
  void windowMoved() override { tell("moved"); }
  void windowWasHidden() override { tell("hidden"); }
  void windowBecameKey() override { tell("key"); }
  void windowResignedKey() override {
    tell("resigned");
    if (on_resigned)
      on_resigned();
  }
  void windowShouldClose() override {
    tell("close");
    if (on_close)
      on_close();
  }
  void windowGone() override { tell("gone"); }

  long count(const std::string& what) const { return std::count(told.begin(), told.end(), what); }
  std::vector<WindowEvent> of(WindowEventType type) const {
    std::vector<WindowEvent> found;
    std::copy_if(events.begin(), events.end(), std::back_inserter(found),
                 [type](const WindowEvent& event) { return event.type == type; });
    return found;
  }
  void clear() {
    events.clear();
    told.clear();
  }

 private:
  static std::string name(WindowEventType type) {
    switch (type) {
      case WindowEventType::mouse_down:
        return "down";
      case WindowEventType::mouse_up:
        return "up";
      case WindowEventType::mouse_dragged:
        return "dragged";
      case WindowEventType::mouse_moved:
        return "moved to";
      case WindowEventType::mouse_entered:
        return "entered";
      case WindowEventType::mouse_exited:
        return "exited";
      case WindowEventType::scroll_wheel:
        return "scroll";
      case WindowEventType::key_down:
        return "key down";
      case WindowEventType::key_up:
        return "key up";
    }
    return "?";
  }
  void tell(std::string what) { told.push_back(std::move(what)); }
};

}  // namespace cocoa
