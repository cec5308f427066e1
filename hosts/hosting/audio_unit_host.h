// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "appkit/NSView.h"
#include "audio_unit/effect_instance.h"
#include "foundation/NSBundle.h"

/// What everybody who plays an Audio Unit host to the editor needs.

namespace ondex {

/// The seven parameters of the effect with their ranges and defaults, as the host holds them.
std::vector<cocoa::EffectParameter> effect_parameters();

/// The editor of the unit, made by the class that the bundle names as its principal one; null, after a line
/// in the log, without one. There must be an autorelease pool.
cocoa::Ref<cocoa::NSView> make_editor(const cocoa::NSBundle& bundle, cocoa::AudioUnit unit);

}  // namespace ondex
