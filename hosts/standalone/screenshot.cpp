// SPDX-License-Identifier: MIT
#include "standalone/screenshot.h"

#include "foundation/CFRunLoop.h"
#include "foundation/NSLog.h"
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"
#include "standalone/private/editor_window.h"
#include "windows/headless.h"

namespace ondex {

using namespace cocoa;

namespace {

/// A clock that is moved by hand: a picture does not wait for the time in which changes are collected.
class PictureClock : public Clock {
 public:
  double now() const override { return now_; }
  void advance(double seconds) { now_ += seconds; }

 private:
  double now_ = 0;
};

/// The readout of a parameter, in the view or below it; null for none.
NSView* readout_of(NSView& view, int32_t parameter) {
  const auto* readout = dynamic_cast<const KV_Ondex_Parameter_Control_View*>(&view);
  if (readout && readout->parameter_number() == parameter)
    return &view;
  for (const Ref<NSView>& subview : view.subviews()) {
    if (NSView* found = readout_of(*subview, parameter))
      return found;
  }
  return nullptr;
}

/// Opens the numeric entry as a user does, with a double click; false, after a line in the log, without one.
bool open_entry(NSWindow& window, HeadlessWindowSystem& system, unsigned parameter) {
  NSView* readout = readout_of(*window.contentView(), static_cast<int32_t>(parameter));
  HeadlessWindow* shown = system.newestWindow();
  if (readout && shown) {
    const NSRect bounds = readout->bounds();
    const NSPoint middle = readout->convertPoint_toView({NSMaxX(bounds) / 2, NSMaxY(bounds) / 2}, nullptr);
    for (int click = 0; click < 2; ++click) {
      shown->press(middle);
      shown->release();
    }
    system.dispatch();
  }
  if (!window.childWindows().empty())
    return true;
  NSLog("ondex: the editor has no numeric entry for parameter %u", parameter);
  return false;
}

/// Longer than the editor collects changes before it shows them.
constexpr double until_settled = 0.1;

/// Null, after a line in the log, when it cannot be opened.
NSWindow* shown_window(EditorWindow& editor, HeadlessWindowSystem& system, const Options& options) {
  switch (options.shown) {
    case Shown::editor:
      break;
    case Shown::entry:
      return open_entry(*editor.window(), system, options.entry_of) ? editor.window() : nullptr;
    case Shown::preferences:
      return editor.open_preferences();
    case Shown::colors:
      return editor.open_colors();
  }
  return editor.window();
}

}  // namespace

int run_screenshot(const Options& options) {
  PictureClock clock;
  CFRunLoopGetCurrent()->setClock(&clock);
  int status = 1;
  {
    const NSAutoreleasePool pool;
    HeadlessWindowSystem system(clock, options.scale.value_or(1.0));
    EditorWindow editor(system, options.changes);
    if (editor.open()) {
      clock.advance(until_settled);
      CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
      NSWindow* shown = shown_window(editor, system, options);
      // Windows show when the window system says so, and are drawn on the pass after.
      system.dispatch();
      CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
      if (shown && write_window_picture(*shown, options.screenshot->c_str()))
        status = 0;
    }
  }
  CFRunLoopGetCurrent()->setClock(nullptr);
  return status;
}

}  // namespace ondex
