#include <utility>

#include "foundation/Clock.h"
#include "windows/pixel_geometry.h"
#include "windows/private/x11_connection.h"
#include "windows/private/x11_system.h"
#include "windows/private/x11_window.h"

// What a popup has to do with the window that it lies over.

namespace cocoa {

void X11Window::lieOverParent() {
  if (!blends_itself_)
    return;
  const X11Window* parent = system_.find(parent_);
  if (!parent) {
    surface_->setBackdrop(nullptr, 0, 0);
    return;
  }
  const bool knows_its_place = parent->kind_ != WindowKind::embedded;
  const int parent_x = knows_its_place ? parent->place_.x() : parent->screen_x_;
  const int parent_y = knows_its_place ? parent->place_.y() : parent->screen_y_;
  const PixelRect& below = parent->place_.drawn();
  surface_->setBackdrop(parent->surface_.get(), place_.x() + place_.drawn().x - parent_x - below.x,
                        place_.y() + place_.drawn().y - parent_y - below.y);
}

void X11Window::handleNewsBelow(const X11Window& parent, std::span<const PixelRect> damage) {
  if (!blends_itself_ || parent_ != parent.id_)
    return;
  lieOverParent();
  for (const PixelRect& part : damage)
    surface_->restoreAbove(clipped(part, parent.place_.drawn().width, parent.place_.drawn().height));
}

void X11Window::handlePressOutside(xcb_timestamp_t time) {
  if (!isPopupWithKey())
    return;
  // Just before the press: whoever gives the keys to what was pressed shall have the last word. Who has them
  // already keeps them; and what we have taken again since is not given back by an earlier time.
  if (!asks_for_key_holder_)
    giveKeyBack(times_retaken_ > 0 ? xcb_timestamp_t{XCB_CURRENT_TIME} : time - 1);
  loseKey();
}

// Focus follows the mouse, with some managers

/// When the manager gives the keys to the popup's parent, as it does where the pointer moves onto that, they
/// are taken again.
void X11Window::askWhoHasKeys() {
  if (std::exchange(asks_for_key_holder_, true))
    return;
  const unsigned int sequence = xcb_get_input_focus(connection_.get()).sequence;
  connection_.expect(sequence, [&system = system_, id = id_](const void* reply) {
    const auto* answer = static_cast<const xcb_get_input_focus_reply_t*>(reply);
    if (X11Window* window = system.find(id))
      window->judgeKeyHolder(answer ? answer->focus : xcb_window_t{XCB_WINDOW_NONE}, 0);
  });
}

void X11Window::judgeKeyHolder(xcb_window_t holder, int depth) {
  // A host gives the keys to a window of its own choice, a few levels inside its top-level window.
  constexpr int deepest = 16;
  const bool is_window = holder > XCB_INPUT_FOCUS_POINTER_ROOT && holder != connection_.root();
  if (!is_key_ || holder == id_) {
    asks_for_key_holder_ = false;
  } else if (is_window && (holder == parent_ || holder == leader_)) {
    asks_for_key_holder_ = false;
    retakeKey();
  } else if (is_window && depth < deepest) {
    const unsigned int sequence = xcb_query_tree(connection_.get(), holder).sequence;
    connection_.expect(sequence, [&system = system_, id = id_, depth](const void* reply) {
      const auto* answer = static_cast<const xcb_query_tree_reply_t*>(reply);
      if (X11Window* window = system.find(id))
        window->judgeKeyHolder(answer ? answer->parent : xcb_window_t{XCB_WINDOW_NONE}, depth + 1);
    });
  } else {
    asks_for_key_holder_ = false;
    loseKey();
  }
}

void X11Window::retakeKey() {
  // A program that insists on the keys gets them: a pointer does not come and go so often.
  constexpr int most_times = 8;
  constexpr double within = 1;
  const double now = Clock::system().now();
  if (now - retaking_since_ > within) {
    retaking_since_ = now;
    times_retaken_ = 0;
  }
  if (++times_retaken_ > most_times)
    return loseKey();
  xcb_set_input_focus(connection_.get(), XCB_INPUT_FOCUS_PARENT, id_, XCB_CURRENT_TIME);
}

// Whether the parent shows

void X11Window::watchParent(double now) {
  if (!isPopup() || !shown_)
    return;
  X11Window* parent = system_.find(parent_);
  if (parent && parent->kind_ == WindowKind::embedded)
    parent->askForScreenPlace(now);
  askWhetherParentIsSeen(now);
}

void X11Window::askForScreenPlace(double now) {
  constexpr double interval = 1.0 / 60;
  if (asked_place_ || now - place_asked_at_ < interval)
    return;
  asked_place_ = true;
  place_asked_at_ = now;
  const unsigned int sequence =
      xcb_translate_coordinates(connection_.get(), id_, connection_.root(), 0, 0).sequence;
  connection_.expect(sequence, [&system = system_, id = id_](const void* reply) {
    X11Window* window = system.find(id);
    if (!window)
      return;
    window->asked_place_ = false;
    const auto* origin = static_cast<const xcb_translate_coordinates_reply_t*>(reply);
    if (!origin || (origin->dst_x == window->screen_x_ && origin->dst_y == window->screen_y_))
      return;
    window->screen_x_ = origin->dst_x;
    window->screen_y_ = origin->dst_y;
    window->delegate_.windowMoved();
  });
}

bool X11Window::parentIsSeen() const {
  return !system_.find(parent_) || connection_.isSeen(parent_, leader_);
}

void X11Window::tellParentHidden() {
  if (X11Window* parent = system_.find(parent_))
    parent->delegate_.windowWasHidden();
}

void X11Window::askWhetherParentIsSeen(double now) {
  constexpr double interval = 0.1;
  if (asked_parent_ || now - parent_asked_at_ < interval || !system_.find(parent_))
    return;
  asked_parent_ = true;
  parent_asked_at_ = now;
  const X11Connection::SeenQuestion question = connection_.askWhetherSeen(parent_, leader_);
  const auto take = [&system = system_, id = id_](bool hidden, bool last) {
    X11Window* window = system.find(id);
    if (!window)
      return;
    window->parent_hidden_ = window->parent_hidden_ || hidden;
    if (!last)
      return;
    window->asked_parent_ = false;
    // A popup may be there before its parent has come up.
    if (!std::exchange(window->parent_hidden_, false)) {
      window->parent_was_seen_ = true;
    } else if (window->parent_was_seen_) {
      window->tellParentHidden();
    }
  };
  const X11Atoms& atoms = connection_.atoms();
  connection_.expect(question.attributes, [take](const void* reply) { take(!is_viewable(reply), false); });
  connection_.expect(question.icccm_state, [take](const void* reply) { take(is_iconic(reply), false); });
  connection_.expect(question.ewmh_state,
                     [take, &atoms](const void* reply) { take(is_hidden(reply, atoms), true); });
}

}  // namespace cocoa
