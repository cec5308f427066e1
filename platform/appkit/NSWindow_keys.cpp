#include <algorithm>

#include "appkit/NSWindow.h"

namespace cocoa {

void NSWindow::windowBecameKey() {
  becomeKeyWindow();
}

void NSWindow::windowResignedKey() {
  resignKeyWindow();
}

void NSWindow::becomeKeyWindow() {
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
  if (!key_)
    return;
  key_ = false;
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
/// in an embedded window moves no keys, and neither does one where no window manager runs.
void NSWindow::takeKeyFromChildren() {
  for (const Ref<NSWindow>& child : std::vector<Ref<NSWindow>>(children_)) {
    child->takeKeyFromChildren();
    if (child->key_)
      child->giveUpKey();
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
