// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "audio_unit/AudioUnit.h"

namespace cocoa {

struct EffectParameter {
  AudioUnitParameterID id = 0;
  std::string name;
  std::string unit;  ///< such as "Hz"; empty for a plain number
  Float32 minimum = 0;
  Float32 maximum = 1;
  Float32 default_value = 0;
};

class Effect;

/// The host's end of an effect: an AudioUnit to give to its editor.
///
/// The host makes and destroys it, on any one thread. When it goes, calls with its AudioUnit that are just
/// being made on other threads are waited for, later ones get badComponentInstance, and events about it that
/// were not told yet are dropped. It may go from inside its own observers.
class EffectInstance {
 public:
  /// Every parameter starts at its default. Of two with the same number the first counts.
  explicit EffectInstance(std::vector<EffectParameter> parameters);
  ~EffectInstance();
  EffectInstance(const EffectInstance&) = delete;
  EffectInstance& operator=(const EffectInstance&) = delete;

  /// What editors know it by.
  AudioUnit audio_unit() const { return unit_; }
  const std::vector<EffectParameter>& parameters() const;

  /// Stores what the host has set, as it is, and tells every listener of the parameter. The value is neither
  /// clamped nor checked, a NaN included: the effect has what its host gives it, what a control shows for it
  /// is the control's affair. False when there is no such parameter. Any thread.
  bool setFromHost(AudioUnitParameterID id, Float32 value);
  /// The current value; NaN when there is no such parameter. Any thread.
  Float32 value(AudioUnitParameterID id) const;

  /// Called after each write that comes through AUParameterSet, never for
  /// setFromHost, on the thread that writes; before the listeners of that thread's loop are told.
  /// Observers are set before an editor is given the unit.
  void onWrite(std::function<void(AudioUnitParameterID id, Float32 value)> observe);
  /// Called when somebody begins (true) or ends (false) to change one of the parameters by hand; on the
  /// thread that says so.
  void onGesture(std::function<void(AudioUnitParameterID id, bool begins)> observe);

 private:
  const std::shared_ptr<Effect> effect_;
  const AudioUnit unit_;
};

}  // namespace cocoa
