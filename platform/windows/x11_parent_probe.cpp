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
  X11Connection& connection = system.connection();
  const X11Connection::SeenQuestion question = connection.askWhetherSeen(parent_, leader_);
  const auto answer = [&system, id = window_.id()](bool hidden, bool last) {
    if (X11Window* window = system.find(id))
      window->parentProbe().take(hidden, last);
  };
  const X11Atoms& atoms = connection.atoms();
  connection.expect(question.attributes, [answer](const void* reply) { answer(!is_viewable(reply), false); });
  connection.expect(question.icccm_state, [answer](const void* reply) { answer(is_iconic(reply), false); });
  connection.expect(question.ewmh_state,
                    [answer, &atoms](const void* reply) { answer(is_hidden(reply, atoms), true); });
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
