#include "standalone/screenshot.h"

#include "foundation/CFRunLoop.h"
#include "standalone/editor_window.h"
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

/// Longer than the editor collects changes before it shows them.
constexpr double until_shown = 0.1;

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
      clock.advance(until_shown);
      CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
      if (editor.write_picture(options.screenshot->c_str()))
        status = 0;
    }
  }
  CFRunLoopGetCurrent()->setClock(nullptr);
  return status;
}

}  // namespace ondex
