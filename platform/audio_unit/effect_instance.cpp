// SPDX-License-Identifier: MIT
#include "audio_unit/effect_instance.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <mutex>
#include <utility>

#include "audio_unit/private/effect.h"

namespace cocoa {

Effect::Effect(std::vector<EffectParameter> parameters) : parameters_(std::move(parameters)) {
  std::transform(parameters_.begin(), parameters_.end(), std::back_inserter(values_),
                 [](const EffectParameter& parameter) { return parameter.default_value; });
}

bool Effect::read(AudioUnitParameterID id, Float32& value) const {
  for (std::size_t i = 0; i < parameters_.size(); ++i) {
    if (parameters_[i].id == id) {
      value = values_[i];
      return true;
    }
  }
  return false;
}

bool Effect::write(AudioUnitParameterID id, Float32 value) {
  for (std::size_t i = 0; i < parameters_.size(); ++i) {
    if (parameters_[i].id == id) {
      values_[i] = value;
      return true;
    }
  }
  return false;
}

EffectInstance::EffectInstance(std::vector<EffectParameter> parameters)
    : effect_(std::make_shared<Effect>(std::move(parameters))), unit_(units.add(effect_)) {}

EffectInstance::~EffectInstance() {
  units.remove(unit_);
  effect_->gate.close();
}

const std::vector<EffectParameter>& EffectInstance::parameters() const {
  return effect_->parameters();
}

bool EffectInstance::setFromHost(AudioUnitParameterID id, Float32 value) {
  const SentEvent change = value_change_to({unit_, id, kAudioUnitScope_Global, 0}, value);
  {
    const std::lock_guard lock(audio_unit_lock);
    if (!effect_->write(id, value))
      return false;
    queue_for_all(change, {});
  }
  call_at_once(change, {});
  return true;
}

Float32 EffectInstance::value(AudioUnitParameterID id) const {
  Float32 value = std::numeric_limits<Float32>::quiet_NaN();
  const std::lock_guard lock(audio_unit_lock);
  effect_->read(id, value);
  return value;
}

void EffectInstance::onWrite(std::function<void(AudioUnitParameterID, Float32)> observe) {
  effect_->on_write = std::move(observe);
}

void EffectInstance::onGesture(std::function<void(AudioUnitParameterID, bool)> observe) {
  effect_->on_gesture = std::move(observe);
}

}  // namespace cocoa
