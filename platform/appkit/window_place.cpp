// SPDX-License-Identifier: MIT
#include "appkit/private/window_place.h"

#include <algorithm>
#include <cmath>

#include "appkit/private/NSWindow_parts.h"

namespace cocoa {

void WindowPlace::setContentScalesToFit() {
  fit_.setScales();
  fitContent();
  window_.parts_->display.markAll();
}

bool WindowPlace::followsParent() const {
  const NSWindow* const parent = window_.parentWindow();
  return parent && parent->platform_ && window_.style_mask_ == NSBorderlessWindowMask;
}

void WindowPlace::followParent() {
  if (!window_.platform_ || !followsParent())
    return;
  window_.platform_->setFrame(frameOnScreen());
  fitContent();
  window_.parts_->display.markAll();
  window_.parts_->children.follow();
}

void WindowPlace::fitContent() {
  const PlatformWindow* const platform = window_.platformWindow();
  if (!platform)
    return;
  if (fit_.scales()) {
    if (fit_.fitInto(platform->frame().size, window_.frame().size, platform->scale()))
      window_.parts_->children.follow();
  } else {
    fit_.set(followsParent() ? window_.parentWindow()->parts_->place.fit().factor() : 1,
             window_.castsShadow() ? WindowDisplay::shadow_room : 0);
  }
}

NSRect WindowPlace::frameOnScreen() const {
  const CGFloat room = window_.castsShadow() ? WindowDisplay::shadow_room : 0;
  const NSRect frame = NSInsetRect(window_.frame(), -room, -room);
  if (!followsParent())
    return frame;
  // Where the parent really is: a host moves its window without telling the one inside, and scales it.
  const NSWindow& parent = *window_.parentWindow();
  const NSPoint origin = parent.platform_->screenFrame().origin;
  const NSRect in_parent = parent.parts_->place.fit().inWindow(
      NSOffsetRect(frame, -parent.frame_.origin.x, -parent.frame_.origin.y));
  return NSOffsetRect(in_parent, origin.x, origin.y);
}

NSRect WindowPlace::screenBounds() const {
  const PlatformWindow* const platform = window_.platformWindow();
  if (!platform)
    return {};
  const NSRect screen = platform->screenBounds();
  const NSPoint origin = platform->screenFrame().origin;
  const NSPoint frame = window_.frame().origin;
  const auto factor = static_cast<CGFloat>(fit_.factor());
  return NSMakeRect(frame.x + (screen.origin.x - origin.x) / factor - fit_.origin().x,
                    frame.y + (screen.origin.y - origin.y) / factor - fit_.origin().y,
                    screen.size.width / factor, screen.size.height / factor);
}

NSPoint WindowPlace::originAtOwner() const {
  const NSSize screen = window_.windowSystem()->screenSize();
  const NSSize size = window_.frame().size;
  const NSPoint origin = window_.originFor(window_.ownerWindow()->platform_->screenFrame(), screen);
  const auto fitted = [](CGFloat position, CGFloat extent, CGFloat available) {
    return std::floor(std::max(CGFloat(0), std::min(position, available - extent)));
  };
  return {fitted(origin.x, size.width, screen.width), fitted(origin.y, size.height, screen.height)};
}

}  // namespace cocoa
