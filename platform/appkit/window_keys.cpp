// SPDX-License-Identifier: MIT
#include "appkit/private/window_keys.h"

#include <algorithm>

#include "appkit/private/NSWindow_parts.h"

namespace cocoa {

void WindowKeys::ask() {
  if (stage_ == Stage::without)
    stage_ = Stage::asked;
}

void WindowKeys::become() {
  if (isKey())
    return;
  stage_ = Stage::key;
  const Ref<NSWindow> self(&window_);
  const Ref<NSView> initial(initial_first_responder_.get());
  if (!first_responder_ && initial && initial->window() == &window_)
    window_.makeFirstResponder(initial.get());
  if (const Ref<NSResponder> responder = first_responder_.get())
    responder->becomeKeyWindow();
  if (NSWindowDelegate* const delegate = window_.delegate())
    delegate->windowDidBecomeKey(&window_);
}

void WindowKeys::resign() {
  if (!isClaimed())
    return;
  stage_ = Stage::without;
  NSWindow* const parent = window_.parentWindow();
  if (parent && window_.platform_)
    parent->parts_->events.swallowedClicks().childEnded(window_.platform_->pressSeenAt());
  // The delegate may let go of the window when it loses the keys.
  const Ref<NSWindow> self(&window_);
  window_.parts_->events.endTracking();
  if (const Ref<NSResponder> responder = first_responder_.get())
    responder->resignKeyWindow();
  if (NSWindowDelegate* const delegate = window_.delegate())
    delegate->windowDidResignKey(&window_);
}

bool WindowKeys::makeFirstResponder(NSResponder* responder) {
  NSResponder* old = first_responder_.get();
  if (old == responder)
    return true;
  if (old && !old->resignFirstResponder())
    return false;
  first_responder_ = WeakRef<NSResponder>();
  if (!responder)
    return true;
  if (!responder->acceptsFirstResponder() || !responder->becomeFirstResponder())
    return false;
  first_responder_ = WeakRef<NSResponder>(responder);
  return true;
}

void WindowKeys::viewLeft(const NSView* view) {
  if (first_responder_.get() == view)
    first_responder_ = WeakRef<NSResponder>();
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

void WindowKeys::selectKeyView(bool forward) {
  std::vector<NSView*> views;
  collect_key_views(window_.contentView(), views);
  if (!forward)
    std::reverse(views.begin(), views.end());
  if (views.empty())
    return;
  const auto current = std::find(views.begin(), views.end(), first_responder_.get());
  const bool starts_over = current == views.end() || current + 1 == views.end();
  window_.makeFirstResponder(starts_over ? views.front() : *(current + 1));
}

}  // namespace cocoa
