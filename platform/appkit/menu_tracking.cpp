// SPDX-License-Identifier: MIT
#include "appkit/private/menu_tracking.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "appkit/NSEvent.h"
#include "appkit/NSPopUpButtonCell.h"
#include "quartz/CGWindowLevel.h"

namespace cocoa {

namespace {

/// A press that is shorter, in seconds, and stays nearer, in points, was a click.
constexpr double longest_click = 0.5;
constexpr CGFloat widest_click = 5;
/// Letters that come faster belong to one title.
constexpr double longest_pause = 1;
/// How fast a list scrolls under the pointer: a line every so many seconds.
constexpr double scroll_interval = 0.06;
constexpr CGFloat scroll_step = 18;

std::string in_lower_case(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z')
      c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

}  // namespace

MenuPlace place_menu(NSRect control, NSSize list, CGFloat middle, NSRect screen) {
  const CGFloat width = std::min(std::max(NSWidth(control), list.width), NSWidth(screen));
  const CGFloat height = std::min(list.height, NSHeight(screen));
  // On whole points, so that the list is as sharp as what is around it.
  const CGFloat wanted_top = std::round(NSMinY(control) + NSHeight(control) / 2 + middle);
  const CGFloat top = std::clamp(wanted_top, NSMinY(screen) + height, NSMaxY(screen));
  const CGFloat left = std::clamp(NSMinX(control), NSMinX(screen), NSMaxX(screen) - width);
  MenuPlace place;
  place.frame = NSMakeRect(left, top - height, width, height);
  if (height < list.height)
    place.scrolled = std::clamp<CGFloat>(wanted_top - top, 0, list.height - height);
  return place;
}

MenuTracking::MenuTracking(NSPopUpButtonCell& cell, std::function<void()> closed)
    : cell_(&cell), closed_(std::move(closed)) {}

MenuTracking::~MenuTracking() {
  cancel();
}

bool MenuTracking::open(NSRect frame, NSView& view) {
  NSWindow* const parent = view.window();
  if (!parent || !parent->isVisible())
    return false;
  parent->setEventTracker(this);
  const NSPopUpButtonCell& cell = *cell_.get();
  list_ = make<MenuList>(*cell.menu());
  const int selected = cell.indexOfSelectedItem();
  const NSRect in_window = view.convertRect_toView(frame, nullptr);
  const NSRect control = {parent->convertBaseToScreen(in_window.origin), in_window.size};
  const MenuPlace place = place_menu(control, list_->naturalSize(), list_->middleOf(std::max(0, selected)),
                                     parent->screenBounds());
  window_ = make<NSWindow>(place.frame, NSBorderlessWindowMask);
  window_->setContentView(list_.get());
  window_->setLevel(CGWindowLevelForKey(kCGPopUpMenuWindowLevelKey));
  list_->scrollTo(place.scrolled);
  list_->setHighlighted(selected);
  parent->addChildWindow_ordered(window_.get(), NSWindowAbove);
  if (!window_->isVisible()) {
    parent->removeChildWindow(window_.get());
    parent->removeEventTracker(this);
    window_ = nullptr;
    return false;
  }
  control_window_ = WeakRef<NSWindow>(parent);
  view_ = WeakRef<NSView>(&view);
  window_->setDelegate(this);
  window_->setEventTracker(this);
  const NSEvent* event = parent->currentEvent();
  holds_press_ = event && event->type() == WindowEventType::mouse_down && event->buttonNumber() == 0;
  if (holds_press_) {
    pressed_at_ = onScreen(event);
    pressed_time_ = event->timestamp();
  } else {
    stayOpen();
  }
  return true;
}

/// From here on the list is on its own: nothing is held that would end it.
void MenuTracking::stayOpen() {
  holds_press_ = false;
  if (PlatformWindow* platform = window_->platformWindow())
    platform->grabPointer();
  // Keys come by way of the control's window: the title bar of one without the focus would go grey, and its
  // manager's keys for it would be dead.
  NSWindow* const parent = control_window_.get();
  if (!parent || parent->isKeyWindow() || !parent->canBecomeKeyWindow())
    return;
  if (PlatformWindow* platform = parent->platformWindow()) {
    took_keys_ = true;
    platform->makeKey();
  }
}

void MenuTracking::cancel() {
  closed_ = nullptr;
  scroll_timer_.reset();
  const Ref<NSWindow> window = std::exchange(window_, nullptr);
  if (!window)
    return;
  window->setDelegate(nullptr);
  window->removeEventTracker(this);
  if (PlatformWindow* platform = window->platformWindow())
    platform->releasePointer();
  if (NSWindow* parent = control_window_.get()) {
    parent->removeEventTracker(this);
    parent->removeChildWindow(window.get());
  }
  window->orderOut(nullptr);
  if (NSWindow* parent = control_window_.get(); parent && std::exchange(took_keys_, false))
    parent->giveUpKey();
}

void MenuTracking::finish(NSMenuItem* chosen) {
  if (!window_)
    return;
  const Ref<MenuTracking> self(this);
  const Ref<NSMenuItem> item(chosen);
  const Ref<NSPopUpButtonCell> cell(cell_.get());
  const std::function<void()> closed = std::exchange(closed_, nullptr);
  cancel();
  if (!cell)
    return;
  cell->trackingEnded();
  if (item)
    cell->choose(item.get());
  if (closed)
    closed();
}

void MenuTracking::chooseLit() {
  const int lit = list_->highlighted();
  if (lit < 0) {
    close();
  } else if (list_->item(lit)->isEnabled()) {
    finish(list_->item(lit));
  }
}

void MenuTracking::viewLeftWindow(NSView* view) {
  if (view == view_.get())
    windowIsGoing();
}

void MenuTracking::windowIsGoing() {
  const Ref<MenuTracking> self(this);
  cancel();
  if (NSPopUpButtonCell* cell = cell_.get())
    cell->trackingEnded();
}

void MenuTracking::windowWillClose(NSWindow*) {
  close();
}

NSPoint MenuTracking::onScreen(const NSEvent* event) {
  return event->window()->convertBaseToScreen(event->locationInWindow());
}

NSPoint MenuTracking::inList(const NSEvent* event) const {
  return window_->convertScreenToBase(onScreen(event));
}

bool MenuTracking::trackEvent(NSEvent* event) {
  const Ref<MenuTracking> self(this);
  switch (event->type()) {
    case WindowEventType::mouse_moved:
    case WindowEventType::mouse_dragged:
      if (holds_press_ && !has_moved_) {
        const NSPoint now = onScreen(event);
        has_moved_ = std::hypot(now.x - pressed_at_.x, now.y - pressed_at_.y) > widest_click;
        if (!has_moved_)
          return true;
      }
      pointerMoved(inList(event));
      return true;
    case WindowEventType::mouse_down:
      pressed(event, inList(event));
      return true;
    case WindowEventType::mouse_up:
      return released(event, inList(event));
    case WindowEventType::scroll_wheel:
      turned(event);
      return true;
    case WindowEventType::key_down:
      keyPressed(event);
      return true;
    default:
      return true;
  }
}

void MenuTracking::pointerMoved(NSPoint where) {
  const int line = list_->lineAt(where);
  scrollAlong(list_->arrowAt(where));
  // A pointer that rests beside the list and trembles takes nothing from the keys.
  if (line < 0 && lit_by_key_ && !holds_press_)
    return;
  lit_by_key_ = false;
  list_->setHighlighted(line);
}

void MenuTracking::pressed(NSEvent* event, NSPoint where) {
  if (!NSPointInRect(where, list_->bounds()))
    return close();
  if (event->buttonNumber() != 0)
    return;
  pressed_in_list_ = true;
  pointerMoved(where);
}

/// Whether the release is used up. The one that ends the opening press is the control's as well.
bool MenuTracking::released(NSEvent* event, NSPoint where) {
  if (event->buttonNumber() != 0)
    return true;
  const bool opening = std::exchange(holds_press_, false);
  if (opening && !has_moved_) {
    if (event->timestamp() - pressed_time_ <= longest_click) {
      stayOpen();
    } else {
      // Long enough to have read what is lit.
      chooseLit();
      // A line that cannot be chosen.
      if (window_)
        stayOpen();
    }
    return false;
  }
  if (!opening && !std::exchange(pressed_in_list_, false))
    return true;
  if (!NSPointInRect(where, list_->bounds())) {
    close();
    return !opening;
  }
  pointerMoved(where);
  if (list_->highlighted() >= 0 && list_->lineAt(where) == list_->highlighted())
    chooseLit();
  if (window_ && opening)
    stayOpen();
  return !opening;
}

void MenuTracking::turned(NSEvent* event) {
  if (list_->scrollTo(list_->scrolled() - event->deltaY() * scroll_step))
    pointerMoved(inList(event));
}

/// Scrolls while the pointer stays on an arrow.
void MenuTracking::scrollAlong(int direction) {
  scroll_direction_ = direction;
  if (direction == 0) {
    scroll_timer_.reset();
    return;
  }
  if (scroll_timer_)
    return;
  CFRunLoopRef loop = CFRunLoopGetCurrent();
  scroll_timer_ = loop->addTimer(loop->clock().now() + scroll_interval, [this] {
    const CFRunLoop::AttachmentRef fired = std::move(scroll_timer_);
    const auto by = static_cast<CGFloat>(scroll_direction_) * scroll_step;
    if (list_->scrollTo(list_->scrolled() - by))
      scrollAlong(scroll_direction_);
  });
}

void MenuTracking::keyPressed(NSEvent* event) {
  const int last = list_->numberOfLines() - 1;
  switch (event->keysym()) {
    case XKB_KEY_Up:
    case XKB_KEY_KP_Up:
      return step(list_->highlighted() < 0 ? last + 1 : list_->highlighted(), -1);
    case XKB_KEY_Down:
    case XKB_KEY_KP_Down:
      return step(list_->highlighted(), 1);
    case XKB_KEY_Home:
    case XKB_KEY_KP_Home:
      return step(-1, 1);
    case XKB_KEY_End:
    case XKB_KEY_KP_End:
      return step(last + 1, -1);
    case XKB_KEY_Return:
    case XKB_KEY_KP_Enter:
    case XKB_KEY_space:
      return chooseLit();
    case XKB_KEY_Escape:
      return close();
    case XKB_KEY_Tab:
      return;
    default:
      return search(event);
  }
}

/// Lights the next line that can be chosen; none beyond the ends.
void MenuTracking::step(int from, int direction) {
  for (int i = from + direction; i >= 0 && i < list_->numberOfLines(); i += direction) {
    if (list_->item(i)->isEnabled())
      return light(i);
  }
}

void MenuTracking::light(int index) {
  lit_by_key_ = true;
  scrollAlong(0);
  list_->setHighlighted(index);
  list_->scrollToShow(index);
}

/// Lights the first title that begins with what is being typed.
void MenuTracking::search(NSEvent* event) {
  const Ref<NSString> characters = event->characters();
  constexpr uint32_t commands = NSControlKeyMask | NSAlternateKeyMask | NSCommandKeyMask;
  if (characters->view().empty() || static_cast<unsigned char>(characters->view().front()) < ' ' ||
      (event->modifierFlags() & commands) != 0) {
    return;
  }
  if (event->timestamp() - typed_time_ > longest_pause)
    typed_.clear();
  typed_time_ = event->timestamp();
  typed_ += in_lower_case(characters->view());
  for (int i = 0; i < list_->numberOfLines(); ++i) {
    if (list_->item(i)->isEnabled() && in_lower_case(list_->item(i)->title()).starts_with(typed_))
      return light(i);
  }
}

}  // namespace cocoa
