// SPDX-License-Identifier: MIT
#include "appkit/private/child_windows.h"

#include <algorithm>
#include <utility>

#include "appkit/private/NSWindow_parts.h"

namespace cocoa {

bool ChildWindows::add(NSWindow* child) {
  if (!child || child->parentWindow() == &window_)
    return false;
  for (const NSWindow* ancestor = &window_; ancestor; ancestor = ancestor->parentWindow()) {
    if (ancestor == child)
      return false;
  }
  const Ref<NSWindow> added(child);
  if (child->parentWindow())
    child->parentWindow()->removeChildWindow(child);
  child->parts_->children.parent_ = &window_;
  children_.push_back(added);
  return true;
}

void ChildWindows::remove(NSWindow* child) {
  const auto found = std::ranges::find(children_, child, &Ref<NSWindow>::get);
  if (found == children_.end())
    return;
  const Ref<NSWindow> removed = *found;
  children_.erase(found);
  removed->parts_->children.parent_ = nullptr;
}

void ChildWindows::move(CGFloat x, CGFloat y) {
  for (const Ref<NSWindow>& child : children_)
    child->setFrame_display(NSOffsetRect(child->frame(), x, y), false);
}

void ChildWindows::follow() {
  for (const Ref<NSWindow>& child : children_)
    child->parts_->place.followParent();
}

void ChildWindows::orderOut() {
  for (const Ref<NSWindow>& child : std::vector<Ref<NSWindow>>(children_)) {
    child->orderOut(nullptr);
    // Given up by its delegate, it may wait for a pool that drains after the window system has gone.
    if (!child->parentWindow())
      child->platform_.reset();
  }
}

void ChildWindows::leaveWindowSystem() {
  for (const Ref<NSWindow>& child : std::vector<Ref<NSWindow>>(children_)) {
    child->orderOut(nullptr);
    child->leaveWindowSystem();
  }
}

bool ChildWindows::takeKeys() {
  bool any = false;
  for (const Ref<NSWindow>& child : std::vector<Ref<NSWindow>>(children_)) {
    any = child->parts_->children.takeKeys() || any;
    if (!child->claimsKey())
      continue;
    child->giveUpKey();
    any = true;
  }
  return any;
}

void ChildWindows::windowIsGoing() {
  // A child that goes off the screen may make its delegate remove it.
  for (const Ref<NSWindow>& child : std::exchange(children_, {})) {
    child->orderOut(nullptr);
    child->parts_->children.parent_ = nullptr;
    // A popup lives in its parent's window system and cannot outlive it.
    child->platform_.reset();
  }
}

}  // namespace cocoa
