#include <algorithm>
#include <utility>

#include "appkit/NSEvent.h"
#include "appkit/NSWindow.h"

namespace cocoa {

void NSWindow::windowBecameKey() {
  becomeKeyWindow();
}

void NSWindow::windowResignedKey() {
  resignKeyWindow();
}

void NSWindow::becomeKeyWindow() {
  asked_for_key_ = false;
  if (key_)
    return;
  key_ = true;
  const Ref<NSWindow> self(this);
  const Ref<NSView> initial(initial_first_responder_.get());
  if (!first_responder_ && initial && initial->window() == this)
    makeFirstResponder(initial.get());
  if (const Ref<NSResponder> responder = first_responder_.get())
    responder->becomeKeyWindow();
  if (delegate_)
    delegate_->windowDidBecomeKey(this);
}

void NSWindow::resignKeyWindow() {
  if (!claimsKey())
    return;
  key_ = asked_for_key_ = false;
  if (parent_ && platform_)
    parent_->child_ended_at_ = platform_->pressSeenAt();
  // The delegate may let go of the window when it loses the keys.
  const Ref<NSWindow> self(this);
  endTracking();
  if (const Ref<NSResponder> responder = first_responder_.get())
    responder->resignKeyWindow();
  if (delegate_)
    delegate_->windowDidResignKey(this);
}

void NSWindow::giveUpKey() {
  const Ref<NSWindow> self(this);
  resignKeyWindow();
  if (platform_)
    platform_->giveUpKey();
}

/// A click beside a child window that has the keys ends what is typed there. Nobody else may notice: a click
/// in an embedded window moves no keys, and neither does one where no window manager runs. Whether there was
/// any.
bool NSWindow::takeKeyFromChildren() {
  bool any = false;
  for (const Ref<NSWindow>& child : std::vector<Ref<NSWindow>>(children_)) {
    any = child->takeKeyFromChildren() || any;
    if (!child->claimsKey())
      continue;
    child->giveUpKey();
    any = true;
  }
  return any;
}

/// Whether the event belongs to a click that does nothing but end what was typed in a child window. A window
/// manager may have taken the keys from there before the press arrives here.
bool NSWindow::swallows(const NSEvent& event) {
  const int button = event.buttonNumber();
  switch (event.type()) {
    case WindowEventType::mouse_down: {
      std::erase(swallowed_buttons_, button);
      const bool ends_child = takeKeyFromChildren();
      const auto ended_at = std::exchange(child_ended_at_, std::nullopt);
      if (!ends_child && ended_at != event.timestamp())
        return false;
      swallowed_buttons_.push_back(button);
      return true;
    }
    case WindowEventType::mouse_dragged:
      return std::ranges::find(swallowed_buttons_, button) != swallowed_buttons_.end();
    case WindowEventType::mouse_up:
      return std::erase(swallowed_buttons_, button) != 0;
    default:
      return false;
  }
}

namespace {

/// The views of a tree that accept the keys, in drawing order.
void collect_key_views(NSView* view, std::vector<NSView*>& views) {
  if (view->isHidden())
    return;
  if (view->acceptsFirstResponder())
    views.push_back(view);
  for (const Ref<NSView>& subview : view->subviews())
    collect_key_views(subview.get(), views);
}

}  // namespace

void NSWindow::selectKeyView(bool forward) {
  std::vector<NSView*> views;
  collect_key_views(content_view_.get(), views);
  if (!forward)
    std::reverse(views.begin(), views.end());
  if (views.empty())
    return;
  const auto current = std::find(views.begin(), views.end(), first_responder_.get());
  const bool starts_over = current == views.end() || current + 1 == views.end();
  makeFirstResponder(starts_over ? views.front() : *(current + 1));
}

void NSWindow::selectNextKeyView(NSObject*) {
  selectKeyView(true);
}

void NSWindow::selectPreviousKeyView(NSObject*) {
  selectKeyView(false);
}

}  // namespace cocoa
