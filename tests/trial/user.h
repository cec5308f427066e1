// SPDX-License-Identifier: MIT
#pragma once

#include <utility>
#include <vector>

#include "choices.h"
#include "editor/KVOndexView.h"
#include "trace.h"
#include "windows/headless.h"

namespace ondex::trial {

/// A place in the editor that a user goes for, in shares of its size from the lower left.
struct Place {
  const char* name;
  double x;
  double y;
};
/// Its readouts, its knob, its title, and one where there is nothing.
std::vector<Place> places_of(const KVOndexView& editor);

/// What the windows show that are not gone, hidden or covered.
std::vector<cocoa::HeadlessWindow*> seen_windows(const cocoa::HeadlessWindowSystem& system);
/// Those of them that are of that kind.
std::vector<cocoa::HeadlessWindow*> seen_windows(const cocoa::HeadlessWindowSystem& system,
                                                 cocoa::WindowKind kind);

/// Somebody with a mouse, a keyboard and no plan. What is done waits for the window system's dispatch.
class User {
 public:
  User(Choices& choices, Trace& trace) : choices_(choices), trace_(trace) {}
  void know(std::vector<Place> places) { places_ = std::move(places); }

  /// Does one thing; nothing when there is nothing to be seen.
  void act(cocoa::HeadlessWindowSystem& system);
  /// Brings up what is held.
  void letGo(cocoa::HeadlessWindowSystem& system);
  /// Escape to the entry panel, which the window manager has given the keys.
  void escape(cocoa::HeadlessWindow& entry);
  /// Presses and releases on a quiet place of the editor.
  void clickBeside(cocoa::HeadlessWindow& window);
  bool holds() const { return holds_; }

 private:
  const Place& choosePlace();
  cocoa::NSPoint chooseWhere(const cocoa::HeadlessWindow& window);
  void doubleClick(cocoa::HeadlessWindow& window);
  void click(cocoa::HeadlessWindow& window, cocoa::NSPoint where);
  void drag(cocoa::HeadlessWindow& window);
  void dragIn(cocoa::HeadlessWindow& window, cocoa::NSPoint where);
  void wheel(cocoa::HeadlessWindow& window);
  void type(cocoa::HeadlessWindow& window);
  void key(cocoa::HeadlessWindow& window);
  void actOnWindows(cocoa::HeadlessWindowSystem& system, cocoa::HeadlessWindow& window);

  Choices& choices_;
  Trace& trace_;
  std::vector<Place> places_;
  unsigned favourite_ = 0;
  bool holds_ = false;
};

}  // namespace ondex::trial
