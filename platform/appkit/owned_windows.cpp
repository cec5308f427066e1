// SPDX-License-Identifier: MIT
#include "appkit/private/owned_windows.h"

#include "appkit/private/NSWindow_parts.h"

namespace cocoa {

void OwnedWindows::setOwner(NSWindow* owner) {
  if (owner_ == owner)
    return;
  for (const NSWindow* each = owner; each; each = each->ownerWindow()) {
    if (each == &window_)
      return;
  }
  const Ref<NSWindow> self(&window_);
  // The window system that showed it may go with the window that owned it.
  window_.orderOut(nullptr);
  window_.leaveWindowSystem();
  unlink();
  owner_ = owner;
  if (owner)
    owner->parts_->owned.owned_.push_back(&window_);
}

void OwnedWindows::unlink() {
  if (owner_)
    std::erase(owner_->parts_->owned.owned_, &window_);
}

void OwnedWindows::close() {
  // Closing one may let go of it or of others.
  const std::vector<WeakRef<NSWindow>> all(owned_.begin(), owned_.end());
  for (const WeakRef<NSWindow>& each : all) {
    if (each)
      each.get()->close();
  }
}

void OwnedWindows::leaveWindowSystem() {
  const std::vector<WeakRef<NSWindow>> all(owned_.begin(), owned_.end());
  for (const WeakRef<NSWindow>& each : all) {
    if (const Ref<NSWindow> owned = each.get()) {
      owned->orderOut(nullptr);
      owned->leaveWindowSystem();
    }
  }
}

void OwnedWindows::windowIsGoing() {
  close();
  while (!owned_.empty())
    owned_.back()->setOwnerWindow(nullptr);
  unlink();
}

}  // namespace cocoa
