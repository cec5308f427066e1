// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSView.h"

namespace ondex::test {

// Every control in every state, each with a caption under it.

/// Label, title button, readout, knob, box and graph.
cocoa::Ref<cocoa::NSView> contact_sheet();
/// The choice controls, with and without their lists; what a press shows, of every control; the panel.
cocoa::Ref<cocoa::NSView> choices_sheet();

}  // namespace ondex::test
