// SPDX-License-Identifier: MIT
#include "windows/private/x11_key_focus.h"

#include <utility>

#include "foundation/Clock.h"
#include "windows/private/x11_properties.h"
#include "windows/private/x11_system.h"

namespace cocoa {

void X11KeyFocus::take() {
  X11WindowSystem& system = window_.system();
  X11Connection& connection = system.connection();
  if (managed_) {
    ask_to_activate(connection, window_.id());
    return;
  }
  selectKeys(true);
  stage_.ask();
  retaken_.reset();
  if (window_.isPopup())
    system.popupKeyChanged();
  const unsigned int sequence = xcb_get_input_focus(connection.get()).sequence;
  system.expectFor(window_, sequence, [](X11Window& window, const void* reply, uint32_t) {
    const auto* answer = static_cast<const xcb_get_input_focus_reply_t*>(reply);
    if (answer && answer->focus != window.id())
      window.keyFocus().before_ = answer->focus;
  });
  // A host may have set the focus after the user's click, so the time of the click would come too late.
  xcb_set_input_focus(connection.get(), XCB_INPUT_FOCUS_PARENT, window_.id(), XCB_CURRENT_TIME);
}

void X11KeyFocus::windowIsMapped() {
  if (std::exchange(wanted_, false))
    take();
}

void X11KeyFocus::windowIsHidden() {
  giveBack();
  wanted_ = false;
}

void X11KeyFocus::giveBack(xcb_timestamp_t time) {
  if (!stage_.giveBack() || managed_)
    return;
  X11WindowSystem& system = window_.system();
  xcb_window_t parent_or_host = XCB_INPUT_FOCUS_POINTER_ROOT;
  if (const X11Window* parent = window_.parent())
    parent_or_host = parent->host() == XCB_WINDOW_NONE ? parent->id() : parent->host();
  const xcb_window_t next = before_ == XCB_WINDOW_NONE ? parent_or_host : before_;
  system.giveKeyTo(next, parent_or_host, time);
  if (time == XCB_CURRENT_TIME)
    return;
  // The server passes over what is older than its last change: after a press in the very millisecond in which
  // this window got the keys it would keep them.
  X11Connection& connection = system.connection();
  const unsigned int sequence = xcb_get_input_focus(connection.get()).sequence;
  connection.expect(sequence, [&system, id = window_.id(), next, parent_or_host](const void* reply) {
    if (reply && static_cast<const xcb_get_input_focus_reply_t*>(reply)->focus == id)
      system.giveKeyTo(next, parent_or_host, XCB_CURRENT_TIME);
  });
}

void X11KeyFocus::selectKeys(bool wanted) {
  if (!window_.isEmbedded() || std::exchange(selects_keys_, wanted) == wanted)
    return;
  window_.selectEvents();
}

void X11KeyFocus::handleChange(const xcb_focus_in_event_t& event, bool has_them) {
  // Grabs borrow the focus for a moment; and the pointer's being here does not make us key.
  const bool grabs = event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB;
  const bool ours = event.detail == XCB_NOTIFY_DETAIL_ANCESTOR || event.detail == XCB_NOTIFY_DETAIL_VIRTUAL ||
                    event.detail == XCB_NOTIFY_DETAIL_NONLINEAR ||
                    event.detail == XCB_NOTIFY_DETAIL_NONLINEAR_VIRTUAL;
  if (grabs || !ours || isKey() == has_them)
    return;
  if (!has_them) {
    // Of a popup that is told of presses anywhere, these end it and not the pointer's way to its parent.
    if (window_.isPopup() && window_.visibility().isShown() && stage_.stage() == X11KeyStage::Stage::held &&
        window_.system().watchesPresses())
      return askForHolder();
    return lose();
  }
  stage_.get();
  if (window_.isPopup())
    window_.system().popupKeyChanged();
  window_.delegate().windowBecameKey();
}

void X11KeyFocus::handlePressAnywhere(double time) {
  if (isClaimed())
    press_seen_at_ = time;
}

void X11KeyFocus::handlePressOutside(xcb_timestamp_t time) {
  if (!isClaimed())
    return;
  // Just before the press: whoever gives the keys to what was pressed shall have the last word. Who has them
  // already keeps them; and what we have taken again since is not given back by an earlier time.
  if (!asks_for_holder_)
    giveBack(retaken_.any() ? xcb_timestamp_t{XCB_CURRENT_TIME} : time - 1);
  lose();
}

void X11KeyFocus::lose() {
  stage_.lose();
  before_ = XCB_WINDOW_NONE;
  selectKeys(false);
  window_.system().keyboard().forgetHeldKeys();
  if (window_.isPopup())
    window_.system().popupKeyChanged();
  window_.delegate().windowResignedKey();
}

void X11KeyFocus::handleGone() {
  if (!isKey())
    return;
  stage_.lose();
  window_.delegate().windowResignedKey();
}

// Focus follows the mouse, with some managers

/// When the manager gives the keys to the popup's parent, as it does where the pointer moves onto that, they
/// are taken again.
void X11KeyFocus::askForHolder() {
  if (std::exchange(asks_for_holder_, true))
    return;
  holder_depth_ = 0;
  X11WindowSystem& system = window_.system();
  const unsigned int sequence = xcb_get_input_focus(system.connection().get()).sequence;
  system.expectFor(window_, sequence, [](X11Window& window, const void* reply, uint32_t) {
    const auto* answer = static_cast<const xcb_get_input_focus_reply_t*>(reply);
    window.keyFocus().judgeHolder(answer ? answer->focus : xcb_window_t{XCB_WINDOW_NONE});
  });
}

void X11KeyFocus::judgeHolder(xcb_window_t holder) {
  // A host gives the keys to a window of its own choice, a few levels inside its top-level window.
  constexpr int deepest = 16;
  X11WindowSystem& system = window_.system();
  X11Connection& connection = system.connection();
  const bool is_window = holder > XCB_INPUT_FOCUS_POINTER_ROOT && holder != connection.root();
  if (!isKey() || holder == window_.id()) {
    asks_for_holder_ = false;
  } else if (is_window && window_.parentProbe().concerns(holder)) {
    asks_for_holder_ = false;
    retake();
  } else if (is_window && holder_depth_++ < deepest) {
    const unsigned int sequence = xcb_query_tree(connection.get(), holder).sequence;
    system.expectFor(window_, sequence, [](X11Window& window, const void* reply, uint32_t) {
      const auto* answer = static_cast<const xcb_query_tree_reply_t*>(reply);
      window.keyFocus().judgeHolder(answer ? answer->parent : xcb_window_t{XCB_WINDOW_NONE});
    });
  } else {
    asks_for_holder_ = false;
    lose();
  }
}

void X11KeyFocus::retake() {
  if (!retaken_.allows(Clock::system().now()))
    return lose();
  xcb_set_input_focus(window_.system().connection().get(), XCB_INPUT_FOCUS_PARENT, window_.id(),
                      XCB_CURRENT_TIME);
}

}  // namespace cocoa
