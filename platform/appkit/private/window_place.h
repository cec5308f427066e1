// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/private/content_fit.h"

namespace cocoa {

class NSWindow;

/// Where the window system is to put a window, and how the content lies in it. A borderless child goes by its
/// parent's place and fit, a window with an owner is first put near that.
class WindowPlace {
 public:
  explicit WindowPlace(NSWindow& window) : window_(window) {}

  const ContentFit& fit() const { return fit_; }
  void setContentScalesToFit();
  /// Whether the window is a borderless child of a window that there is.
  bool followsParent() const;
  /// The parent is somewhere else, or draws its content in another size.
  void followParent();
  /// The window system's window is new or has another size: makes the content as large as that allows and
  /// puts it into the middle, that of a child as large as its parent's.
  void fitContent();

  /// In the window system's points, with the room for its shadow.
  NSRect frameOnScreen() const;
  /// The screen in the points of the window's frame.
  NSRect screenBounds() const;
  /// Where it first shows: near the owner, and on the screen as far as it fits.
  NSPoint originAtOwner() const;

 private:
  NSWindow& window_;
  ContentFit fit_;
};

}  // namespace cocoa
