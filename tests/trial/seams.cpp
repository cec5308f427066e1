// SPDX-License-Identifier: MIT
#include "seams.h"

#include "foundation/Clock.h"
#include "windows/x11.h"

namespace ondex::trial {

namespace {

std::vector<cocoa::HeadlessWindowSystem*>& living_displays() {
  static std::vector<cocoa::HeadlessWindowSystem*> living;
  return living;
}

class Display final : public cocoa::HeadlessWindowSystem {
 public:
  Display() : HeadlessWindowSystem(machine_clock(), display_scale) { living_displays().push_back(this); }
  ~Display() override { std::erase(living_displays(), this); }
};

}  // namespace

test::ManualClock& machine_clock() {
  static test::ManualClock clock(1000);
  return clock;
}

const std::vector<cocoa::HeadlessWindowSystem*>& displays() {
  return living_displays();
}

}  // namespace ondex::trial

namespace cocoa {

const Clock& Clock::system() {
  return ondex::trial::machine_clock();
}

std::unique_ptr<WindowSystem> make_x11_window_system(const char*, double) {
  return std::make_unique<ondex::trial::Display>();
}

}  // namespace cocoa
