// SPDX-License-Identifier: MIT
#include "standalone/interactive.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "foundation/CFRunLoop.h"
#include "foundation/NSLog.h"
#include "foundation/visible_text.h"
#include "standalone/private/command_input.h"
#include "standalone/private/commands.h"
#include "standalone/private/editor_window.h"
#include "standalone/private/end_signals.h"
#include "standalone/private/values.h"
#include "standalone/standard_streams.h"
#include "windows/x11.h"

namespace ondex {

using namespace cocoa;

namespace {

/// The editor collects changes for 0.05 s before it shows them; the margin covers the rounding of its clock.
constexpr double until_shown = 0.051;

void print_line(const std::string& line) {
  write_text(STDOUT_FILENO, line + "\n");
}

void complain(const std::string& error) {
  NSLog("ondex: %s", visible_text(error).c_str());
}

/// The program while its window is open.
class Session : private NSWindowDelegate {
 public:
  Session(WindowSystem& system, EditorWindow& editor, const EndSignals& signals)
      : system_(system), editor_(editor), signals_(signals) {
    editor_.effect().onWrite([](AudioUnitParameterID id, Float32 value) {
      print_line("parameter " + std::to_string(id) + " " + text_of(value));
    });
    editor_.window()->setDelegate(this);
    last_change_ = clock().now();
  }
  ~Session() override { editor_.window()->setDelegate(nullptr); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void run() {
    while (!ended()) {
      CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
      serve_lines();
      if (!ended())
        wait();
    }
  }

 private:
  void windowWillClose(NSWindow*) override { ended_ = true; }

  static const Clock& clock() { return CFRunLoopGetCurrent()->clock(); }

  bool ended() const { return ended_ || EndSignals::came_through(); }

  /// Until something comes in, a timer is due, or a picture that waits may be made. Until then no more lines
  /// are read: they would only pile up.
  void wait() {
    const int input = picture_waits_ ? -1 : input_.descriptor(clock().now());
    pollfd descriptors[] = {{input, POLLIN, 0},
                            {system_.descriptor(), POLLIN, 0},
                            {CFRunLoopGetCurrent()->wakeDescriptor(), POLLIN, 0},
                            {signals_.descriptor(), POLLIN, 0}};
    poll(descriptors, std::size(descriptors), timeout());
    if (descriptors[0].revents != 0)
      read_input();
    if (descriptors[3].revents != 0)
      ended_ = true;
  }

  int timeout() const {
    double until = CFRunLoopGetCurrent()->nextTimerFireDate();
    const double now = clock().now();
    // What the window has still to draw is drawn on a pass that the display asks for.
    if (!picture_waits_) {
      until = std::min(until, input_.again(now));
    } else if (changes_are_collected()) {
      until = std::min(until, last_change_ + until_shown);
    }
    if (std::isinf(until))
      return -1;
    const double milliseconds = std::ceil((until - now) * 1000);
    return static_cast<int>(std::clamp(milliseconds, 0.0, 60000.0));
  }

  void read_input() {
    // Another reader of the same input may have been quicker.
    const EndSignals::Interruptible interruptible;
    if (!input_.read(clock().now()))
      complain("a line without an end");
  }

  /// Serves the lines that have come; a picture, and what follows it, waits until the changes before it show.
  void serve_lines() {
    while (!ended() && !picture_is_early() && (picture_waits_ || take_command())) {
      picture_waits_ = command_.kind == CommandKind::screenshot;
      // What has just become due is still to be drawn.
      if (picture_waits_ && !changes_are_collected())
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
      if (picture_is_early())
        return;
      picture_waits_ = false;
      serve();
    }
  }

  bool changes_are_collected() const { return clock().now() < last_change_ + until_shown; }

  bool picture_is_early() const {
    return picture_waits_ && (changes_are_collected() || is_about_to_show(*editor_.window()));
  }

  bool take_command() {
    while (const auto line = input_.lines().take()) {
      Result<Command> command = read_command(*line);
      if (!command) {
        complain(command.cause());
        continue;
      }
      command_ = std::move(*command);
      if (command_.kind != CommandKind::none)
        return true;
    }
    return false;
  }

  void serve() {
    const unsigned id = command_.change.id;
    switch (command_.kind) {
      case CommandKind::set:
        editor_.effect().setFromHost(id, command_.change.value);
        last_change_ = clock().now();
        return;
      case CommandKind::get:
        return print_line("value " + std::to_string(id) + " " + text_of(editor_.effect().value(id)));
      case CommandKind::list:
        return list();
      case CommandKind::screenshot:
        return write_picture();
      case CommandKind::quit:
        ended_ = true;
        return;
      case CommandKind::none:
        return;
    }
  }

  void write_picture() {
    // The file may be a FIFO, which waits for its reader.
    const EndSignals::Interruptible interruptible;
    editor_.write_picture(command_.file.c_str());
  }

  void list() {
    for (const EffectParameter& parameter : editor_.effect().parameters()) {
      print_line(std::to_string(parameter.id) + "\t" + parameter.name + "\t" +
                 text_of(editor_.effect().value(parameter.id)) + "\t" + text_of(parameter.minimum) + "\t" +
                 text_of(parameter.maximum));
    }
  }

  WindowSystem& system_;
  EditorWindow& editor_;
  const EndSignals& signals_;
  CommandInput input_;
  Command command_;
  double last_change_ = 0;
  bool picture_waits_ = false;
  bool ended_ = false;
};

}  // namespace

int run_interactive(const Options& options) {
  ignore_terminal_stops();
  EndSignals signals;
  const NSLogHook log([](std::string_view line) { write_text(STDERR_FILENO, std::string(line) + "\n"); });
  const NSAutoreleasePool pool;
  const std::unique_ptr<WindowSystem> system = make_x11_window_system(nullptr, options.scale.value_or(0.0));
  if (!system)
    return 1;
  const auto dispatcher = CFRunLoopGetCurrent()->addPoller([&system] { return system->dispatch(); });
  // Panels that the editor opens belong to the same display.
  const WindowSystemScope windows(system.get());
  EditorWindow editor(*system, options.changes);
  if (!editor.open())
    return 1;
  signals.hold_back();
  Session(*system, editor, signals).run();
  if (system->connected())
    return 0;
  complain("the connection to the display was lost");
  return 1;
}

}  // namespace ondex
