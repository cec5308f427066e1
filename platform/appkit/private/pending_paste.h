// SPDX-License-Identifier: MIT
#pragma once

#include <deque>

#include "appkit/NSEvent.h"

namespace cocoa {

class WindowSystem;

/// A text that was asked for and has not come yet, and the events that wait for it.
class PendingPaste {
 public:
  /// The answer will have that number.
  unsigned begin(const WindowSystem* asked);
  /// Whether a text is waited for; a field's window system, null for none, that is not the one that was asked
  /// answers no more.
  bool waitsFor(const WindowSystem* system) const { return asked_ && asked_ == system; }
  bool isNewest(unsigned number) const { return number == begun_; }
  /// It has come.
  void end() { asked_ = nullptr; }

  void hold(NSEvent* event) { waiting_.emplace_back(event); }
  /// The event that has waited longest, which no longer does; null for none.
  Ref<NSEvent> next();
  /// Whether there were events, which are dropped.
  bool abandon();

 private:
  const WindowSystem* asked_ = nullptr;
  unsigned begun_ = 0;  ///< so far
  std::deque<Ref<NSEvent>> waiting_;
};

}  // namespace cocoa
