// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

#include "audio_unit/effect_instance.h"
#include "audio_unit/private/call_gate.h"
#include "audio_unit/private/event_listener.h"
#include "audio_unit/private/handles.h"

namespace cocoa {

/// What an AudioUnit stands for. Its values belong to audio_unit_lock; the observers are set before other
/// threads know the effect.
class Effect {
 public:
  explicit Effect(std::vector<EffectParameter> parameters);

  const std::vector<EffectParameter>& parameters() const { return parameters_; }
  /// Both under the lock; false when there is no such parameter.
  bool read(AudioUnitParameterID id, Float32& value) const;
  bool write(AudioUnitParameterID id, Float32 value);

  std::function<void(AudioUnitParameterID, Float32)> on_write;
  std::function<void(AudioUnitParameterID, bool)> on_gesture;
  CallGate gate;  ///< of the observers

 private:
  const std::vector<EffectParameter> parameters_;
  std::vector<Float32> values_;  ///< in the order of parameters_
};

/// All effects of the process.
inline Handles<Effect, OpaqueAudioUnit> units;

}  // namespace cocoa
