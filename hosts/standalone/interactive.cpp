#include "standalone/interactive.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>

#include "foundation/CFRunLoop.h"
#include "standalone/commands.h"
#include "standalone/editor_window.h"
#include "standalone/text_lines.h"
#include "standalone/values.h"
#include "windows/x11.h"

namespace ondex {

using namespace cocoa;

namespace {

/// The editor collects changes for 0.05 s before it shows them; the margin covers the rounding of its clock.
constexpr double until_shown = 0.051;

void print_line(const std::string& line) {
  const std::string text = line + "\n";
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

void complain(const std::string& error) {
  const std::string text = "ondex: " + error + "\n";
  std::fwrite(text.data(), 1, text.size(), stderr);
}

/// SIGINT and SIGTERM as a descriptor to poll.
class EndSignals {
 public:
  EndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    descriptor_ = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    // A reader of our output may go; that is no reason to end.
    std::signal(SIGPIPE, SIG_IGN);
  }
  ~EndSignals() {
    if (descriptor_ >= 0)
      close(descriptor_);
  }
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
};

/// The program while its window is open.
class Session : private NSWindowDelegate {
 public:
  Session(WindowSystem& system, EditorWindow& editor) : system_(system), editor_(editor) {
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
    while (!ended_) {
      CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
      serve_lines();
      if (!ended_)
        wait();
    }
  }

 private:
  void windowWillClose(NSWindow*) override { ended_ = true; }

  static const Clock& clock() { return CFRunLoopGetCurrent()->clock(); }

  /// Until something comes in, a timer is due, or a picture that waits may be made.
  void wait() {
    pollfd descriptors[] = {{input_open_ ? STDIN_FILENO : -1, POLLIN, 0},
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
    if (picture_waits_)
      until = std::min(until, last_change_ + until_shown);
    if (std::isinf(until))
      return -1;
    const double milliseconds = std::ceil((until - clock().now()) * 1000);
    return static_cast<int>(std::clamp(milliseconds, 0.0, 60000.0));
  }

  void read_input() {
    char bytes[4096];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    // The end of the input leaves the window open.
    if (count <= 0)
      input_open_ = false;
    if (count > 0)
      lines_.append({bytes, static_cast<size_t>(count)});
    if (!lines_.overlong())
      return;
    complain("a line without an end");
    lines_.drop_overlong();
  }

  /// Serves the lines that have come; a picture, and what follows it, waits until the changes before it show.
  void serve_lines() {
    while (!ended_ && !picture_is_early() && (picture_waits_ || take_command())) {
      picture_waits_ = command_.kind == CommandKind::screenshot;
      if (picture_is_early())
        return;
      picture_waits_ = false;
      serve();
    }
  }

  bool picture_is_early() const { return picture_waits_ && clock().now() < last_change_ + until_shown; }

  bool take_command() {
    std::string line;
    while (lines_.take(line)) {
      command_ = Command();
      if (const std::string error = read_command(line, command_); !error.empty()) {
        complain(error);
      } else if (command_.kind != CommandKind::none) {
        return true;
      }
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
        // What has just become due is still to be shown.
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
        editor_.write_picture(command_.file.c_str());
        return;
      case CommandKind::quit:
        ended_ = true;
        return;
      case CommandKind::none:
        return;
    }
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
  EndSignals signals_;
  TextLines lines_;
  Command command_;
  double last_change_ = 0;
  bool input_open_ = true;
  bool picture_waits_ = false;
  bool ended_ = false;
};

}  // namespace

int run_interactive(const Options& options) {
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
  Session(*system, editor).run();
  if (system->connected())
    return 0;
  complain("the connection to the display was lost");
  return 1;
}

}  // namespace ondex
