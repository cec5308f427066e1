// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace cocoa {

class NSWindow;

/// The windows that a window owns on the screen, and the one that owns it. Nobody here retains anybody.
class OwnedWindows {
 public:
  explicit OwnedWindows(NSWindow& window) : window_(window) {}

  NSWindow* owner() const { return owner_; }
  /// In the order in which they came.
  const std::vector<NSWindow*>& all() const { return owned_; }
  /// Null for none. Whoever owns itself, in the end, is not taken for an owner.
  void setOwner(NSWindow* owner);
  void close();
  void leaveWindowSystem();
  /// They are closed, and owned no more.
  void windowIsGoing();

 private:
  void unlink();

  NSWindow& window_;
  NSWindow* owner_ = nullptr;
  std::vector<NSWindow*> owned_;
};

}  // namespace cocoa
