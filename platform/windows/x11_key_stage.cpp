// SPDX-License-Identifier: MIT
#include "windows/private/x11_key_stage.h"

namespace cocoa {

void X11KeyStage::ask() {
  // Those that are here still are; they are no longer on their way back.
  stage_ = isHeld() ? Stage::held : Stage::asked;
}

void X11KeyStage::get() {
  if (isHeld())
    return;
  stage_ = stage_ == Stage::recalled ? Stage::given_back : Stage::held;
}

bool X11KeyStage::giveBack() {
  switch (stage_) {
    case Stage::asked:
      stage_ = Stage::recalled;
      return true;
    case Stage::held:
      stage_ = Stage::given_back;
      return true;
    default:
      return false;
  }
}

bool X11RetakeLimit::allows(double now) {
  constexpr int most_times = 8;
  constexpr double within = 1;
  if (now - since_ > within) {
    since_ = now;
    times_ = 0;
  }
  return ++times_ <= most_times;
}

}  // namespace cocoa
