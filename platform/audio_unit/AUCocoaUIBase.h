// SPDX-License-Identifier: MIT
#pragma once

#include "audio_unit/AudioUnit.h"
#include "foundation/NSGeometry.h"

namespace cocoa {

class NSView;

/// What a host asks of the class that makes an effect's editor. The class is an NSObject besides; hosts show
/// its description() as the editor's name.
class AUCocoaUIBase {
 public:
  virtual ~AUCocoaUIBase() = default;
  /// The version of this protocol that the class follows: 0.
  virtual UInt32 interfaceVersion() const = 0;
  /// A new view that edits `inAudioUnit`, autoreleased, so that a host which keeps it retains it; null when
  /// it cannot be made. `inPreferredSize`, in points, is a wish and may be the zero size.
  virtual NSView* uiViewForAudioUnit_withSize(AudioUnit inAudioUnit, NSSize inPreferredSize) = 0;
};

}  // namespace cocoa
