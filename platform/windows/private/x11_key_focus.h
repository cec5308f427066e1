// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <optional>

#include "windows/private/x11_key_stage.h"

namespace cocoa {

class X11Window;

/// One window's part in who has the keys: asks for them, gives them back, and takes them again from the
/// window that a popup lies over. What calls the owner does so last, because it may destroy the window.
class X11KeyFocus {
 public:
  /// Keys of a window inside a host's are selected only while it has them: the pointer over it would draw the
  /// host's keys to it.
  X11KeyFocus(X11Window& window, bool inside_host) : window_(window), selects_keys_(!inside_host) {}

  bool isKey() const { return stage_.isHeld(); }
  /// Whether it has the keys or is about to.
  bool isClaimed() const { return stage_.isClaimed(); }
  bool selectsKeys() const { return selects_keys_; }
  std::optional<double> pressSeenAt() const { return press_seen_at_; }
  /// A window manager runs, who is to be asked for the keys.
  void setManaged() { managed_ = true; }

  // None of these flushes.

  /// Only of a window that is mapped: to others the server would refuse them.
  void take();
  void takeOnceMapped() { wanted_ = true; }
  void windowIsMapped();
  void windowIsHidden();
  void giveBack(xcb_timestamp_t time = XCB_CURRENT_TIME);

  /// The server gives the keys to the window, or takes them.
  void handleChange(const xcb_focus_in_event_t& event, bool has_them);
  /// The user has pressed a button somewhere, at that time in seconds.
  void handlePressAnywhere(double time);
  /// The user has pressed a button where no popup is: a popup with the keys loses them.
  void handlePressOutside(xcb_timestamp_t time);
  /// The window no longer exists.
  void handleGone();

 private:
  void selectKeys(bool wanted);
  void lose();
  void askForHolder();
  void judgeHolder(xcb_window_t holder);
  void retake();

  X11Window& window_;
  X11KeyStage stage_;
  X11RetakeLimit retaken_;
  bool selects_keys_;
  bool managed_ = false;
  bool wanted_ = false;  ///< as soon as the window is mapped
  bool asks_for_holder_ = false;
  int holder_depth_ = 0;                   ///< how many windows above the holder have been asked for
  xcb_window_t before_ = XCB_WINDOW_NONE;  ///< whom they were taken from
  std::optional<double> press_seen_at_;
};

}  // namespace cocoa
