// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "trace.h"
#include "user.h"
#include "windows/headless.h"

namespace ondex::trial {

/// What must hold of a window system that nothing waits in any more, whoever has the editor in it.
void check_windows(const cocoa::HeadlessWindowSystem& system, Trace& trace);

/// The user gets rid of every panel that is left, of the entry first; `settle` lets what was done take
/// effect.
void dismiss_panels(cocoa::HeadlessWindowSystem& system, User& user, Choices& choices, Trace& trace,
                    const std::function<void()>& settle);

}  // namespace ondex::trial
