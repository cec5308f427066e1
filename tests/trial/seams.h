// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "manual_clock.h"
#include "windows/headless.h"

/// A program with the trial has no display and no clock of its own: what the modules ask the machine for they
/// get from here, as seams.cpp is linked in place of their own.

namespace ondex::trial {

/// The machine's clock.
test::ManualClock& machine_clock();

/// The window systems that LV2 editors have asked for and not given back, in the order of their making.
const std::vector<cocoa::HeadlessWindowSystem*>& displays();

/// Device pixels a point: small pictures are drawn sooner, and are not what is tried.
inline constexpr double display_scale = 0.5;

}  // namespace ondex::trial
