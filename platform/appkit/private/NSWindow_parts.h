// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSWindow.h"
#include "appkit/private/child_windows.h"
#include "appkit/private/event_router.h"
#include "appkit/private/owned_windows.h"
#include "appkit/private/window_display.h"
#include "appkit/private/window_keys.h"
#include "appkit/private/window_place.h"

namespace cocoa {

/// What a window is made of besides its own properties: each part has a state of its own.
struct NSWindow::Parts {
  explicit Parts(NSWindow& window)
      : place(window), display(window), children(window), owned(window), keys(window), events(window) {}

  WindowPlace place;
  WindowDisplay display;
  ChildWindows children;
  OwnedWindows owned;
  WindowKeys keys;
  EventRouter events;
};

}  // namespace cocoa
