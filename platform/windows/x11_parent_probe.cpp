// SPDX-License-Identifier: MIT
#include "windows/private/x11_parent_probe.h"

#include <utility>

#include "windows/private/x11_system.h"

namespace cocoa {

void X11ParentProbe::findLeader() {
  if (parent_ != XCB_WINDOW_NONE)
    leader_ = window_.system().connection().topLevelOf(parent_);
}

X11Window* X11ParentProbe::parent() const {
  return window_.system().find(parent_);
}

void X11ParentProbe::ask(double now) {
  if (!window_.isPopup() || !window_.visibility().isShown())
    return;
  X11Window* const parent = this->parent();
  if (!parent)
    return;
  if (parent->isEmbedded())
    parent->placement().askForScreenPlace(now);
  if (question_.begin(now))
    askWhetherSeen();
}

bool X11ParentProbe::isSeen() const {
  return !parent() || window_.system().connection().isSeen(parent_, leader_);
}

void X11ParentProbe::tellHidden() const {
  if (X11Window* const parent = this->parent())
    parent->delegate().windowWasHidden();
}

void X11ParentProbe::askWhetherSeen() {
  X11WindowSystem& system = window_.system();
  const X11Connection::SeenQuestion question = system.connection().askWhetherSeen(parent_, leader_);
  system.expectFor(window_, question.attributes, [](X11Window& window, const void* reply, uint32_t) {
    window.parentProbe().take(!is_viewable(reply), false);
  });
  system.expectFor(window_, question.icccm_state, [](X11Window& window, const void* reply, uint32_t) {
    window.parentProbe().take(is_iconic(reply), false);
  });
  system.expectFor(window_, question.ewmh_state, [](X11Window& window, const void* reply, uint32_t) {
    window.parentProbe().take(is_hidden(reply, window.system().connection().atoms()), true);
  });
}

void X11ParentProbe::take(bool hidden, bool last) {
  hidden_ = hidden_ || hidden;
  if (!last)
    return;
  question_.answered();
  // A popup may be there before its parent has come up.
  if (!std::exchange(hidden_, false)) {
    was_seen_ = true;
  } else if (was_seen_) {
    tellHidden();
  }
}

}  // namespace cocoa
