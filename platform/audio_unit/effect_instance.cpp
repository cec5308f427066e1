#include "audio_unit/effect_instance.h"

#include <bit>
#include <cstddef>
#include <limits>
#include <tuple>
#include <utility>

#include "audio_unit/effect.h"
#include "audio_unit/event_listener.h"
#include "foundation/NSLog.h"

namespace cocoa {

Effect::Effect(std::vector<EffectParameter> parameters)
    : parameters_(std::move(parameters)), cells_(std::make_unique<Cell[]>(parameters_.size())) {
  for (std::size_t i = 0; i < parameters_.size(); ++i)
    cells_[i] = std::bit_cast<std::uint32_t>(parameters_[i].default_value);
}

Effect::Cell* Effect::cell(AudioUnitParameterID id) const {
  for (std::size_t i = 0; i < parameters_.size(); ++i) {
    if (parameters_[i].id == id)
      return &cells_[i];
  }
  return nullptr;
}

bool Effect::read(AudioUnitParameterID id, Float32& value, std::uint32_t* order) const {
  const Cell* found = cell(id);
  if (!found)
    return false;
  const std::uint64_t both = found->load();
  value = std::bit_cast<Float32>(static_cast<std::uint32_t>(both));
  if (order)
    *order = static_cast<std::uint32_t>(both >> 32U);
  return true;
}

bool Effect::write(AudioUnitParameterID id, Float32 value, std::uint32_t* order) {
  Cell* found = cell(id);
  if (!found)
    return false;
  const std::uint64_t bits = std::bit_cast<std::uint32_t>(value);
  std::uint64_t before = found->load();
  // The number wraps around by itself: it is the upper half.
  while (!found->compare_exchange_weak(before, ((before >> 32U) + 1) << 32U | bits)) {
  }
  *order = static_cast<std::uint32_t>((before >> 32U) + 1);
  return true;
}

EffectInstance::EffectInstance(std::vector<EffectParameter> parameters) : effect_(nullptr), unit_(nullptr) {
  auto effect = std::make_unique<Effect>(std::move(parameters));
  effect_ = effect.get();
  unit_ = units.add(effect);
  if (!unit_)
    NSLog("There is no room for one more effect: its editor stays detached");
  std::ignore = effect.release();  // on failure it stays this one's own
}

EffectInstance::~EffectInstance() {
  if (unit_) {
    units.retire(unit_);
  } else {
    delete effect_;
  }
}

const std::vector<EffectParameter>& EffectInstance::parameters() const {
  return effect_->parameters();
}

bool EffectInstance::setFromHost(AudioUnitParameterID id, Float32 value) {
  std::uint32_t order = 0;
  if (!effect_->write(id, value, &order))
    return false;
  if (unit_)
    announce_write({unit_, id, kAudioUnitScope_Global, 0}, value, order, {});
  return true;
}

Float32 EffectInstance::value(AudioUnitParameterID id) const {
  Float32 value = std::numeric_limits<Float32>::quiet_NaN();
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
