#include <utility>

#include "windows/pixel_geometry.h"
#include "windows/private/x11_connection.h"
#include "windows/private/x11_system.h"
#include "windows/private/x11_window.h"

// What a popup has to do with the window that it lies over.

namespace cocoa {

void X11Window::lieOverParent() {
  if (!blends_itself_)
    return;
  const X11Window* parent = this->parent();
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

// Whether the parent shows

void X11Window::watchParent(double now) {
  if (!isPopup() || !shown_)
    return;
  X11Window* parent = this->parent();
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
  return !parent() || connection_.isSeen(parent_, leader_);
}

void X11Window::tellParentHidden() {
  if (X11Window* parent = this->parent())
    parent->delegate_.windowWasHidden();
}

void X11Window::askWhetherParentIsSeen(double now) {
  constexpr double interval = 0.1;
  if (asked_parent_ || now - parent_asked_at_ < interval || !parent())
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
