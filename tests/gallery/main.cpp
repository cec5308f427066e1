// SPDX-License-Identifier: MIT
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <span>
#include <string>

#include "Gallery.h"
#include "appkit/NSWindow.h"
#include "foundation/CFRunLoop.h"
#include "gallery_layout.h"
#include "standalone/options.h"
#include "standalone/private/text_lines.h"
#include "standalone/private/view_picture.h"
#include "windows/x11.h"

/// ondex-gallery: every control in a window, to be tried by hand. Prints a line for everything that one of
/// them sends, and "ready" when the window shows; ends on the line "quit", when its input ends, or when its
/// window is closed. With --screenshot FILE it draws itself into a picture, without a display.

namespace ondex::test {
namespace {

using namespace cocoa;

void print_line(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

class Session : private NSWindowDelegate {
 public:
  Session(WindowSystem& system, NSWindow& window) : system_(system), window_(window) {
    window_.setDelegate(this);
  }
  ~Session() override { window_.setDelegate(nullptr); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void run() {
    bool ready = false;
    while (!ended_) {
      CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
      if (!ready && window_.platformWindow() && window_.platformWindow()->viewable()) {
        ready = true;
        print_line("ready");
      }
      if (!ended_)
        wait();
    }
  }

 private:
  void windowWillClose(NSWindow*) override { ended_ = true; }

  void wait() {
    pollfd descriptors[] = {{STDIN_FILENO, POLLIN, 0},
                            {system_.descriptor(), POLLIN, 0},
                            {CFRunLoopGetCurrent()->wakeDescriptor(), POLLIN, 0}};
    poll(descriptors, std::size(descriptors), timeout());
    if (descriptors[0].revents != 0)
      read_input();
  }

  static int timeout() {
    const CFRunLoopRef loop = CFRunLoopGetCurrent();
    const double seconds = loop->nextTimerFireDate() - loop->clock().now();
    return std::isinf(seconds) ? -1 : static_cast<int>(std::clamp(std::ceil(seconds * 1000), 0.0, 60000.0));
  }

  void read_input() {
    char bytes[256];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0) {
      ended_ = true;
      return;
    }
    lines_.append({bytes, static_cast<size_t>(count)});
    while (const auto line = lines_.take())
      ended_ = ended_ || line == "quit";
  }

  WindowSystem& system_;
  NSWindow& window_;
  TextLines lines_;
  bool ended_ = false;
};

int run(const Options& options) {
  const NSAutoreleasePool pool;
  if (options.screenshot) {
    const auto gallery = make<Gallery>([](const std::string&) {});
    return write_view_picture(*gallery, options.scale.value_or(1), options.screenshot->c_str()) ? 0 : 1;
  }
  const auto system = make_x11_window_system(nullptr, options.scale.value_or(0.0));
  if (!system)
    return 1;
  const auto dispatcher = CFRunLoopGetCurrent()->addPoller([&system] { return system->dispatch(); });
  const auto window =
      make<NSWindow>(NSRect{{120, 120}, gallery::size}, NSTitledWindowMask | NSClosableWindowMask);
  window->setWindowSystem(system.get());
  window->setTitle("Ondex gallery");
  window->setContentView(make<Gallery>(print_line).get());
  window->makeKeyAndOrderFront(nullptr);
  Session(*system, *window).run();
  return system->connected() ? 0 : 1;
}

}  // namespace
}  // namespace ondex::test

int main(int argc, char** argv) {
  cocoa::Result<ondex::Options> options = ondex::read_options({argv, static_cast<size_t>(argc)});
  if (options && (options->help || options->version || !options->changes.empty()))
    options = cocoa::Failure{"it knows --screenshot FILE.png and --scale S only"};
  if (!options) {
    std::fprintf(stderr, "ondex-gallery: %s\n", options.cause().c_str());
    return 2;
  }
  return ondex::test::run(*options);
}
