#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "audio_unit/effect_instance.h"
#include "audio_unit/handle_table.h"

namespace cocoa {

/// What an AudioUnit stands for.
class Effect {
 public:
  explicit Effect(std::vector<EffectParameter> parameters);

  const std::vector<EffectParameter>& parameters() const { return parameters_; }
  /// The value and the number of the write that left it. False when there is no such parameter.
  bool read(AudioUnitParameterID id, Float32& value, std::uint32_t* order = nullptr) const;
  /// Answers the number of this write among all writes of the parameter, modulo 2^32, in `*order`: of two
  /// threads that write at once, the higher number is the one whose value stays.
  bool write(AudioUnitParameterID id, Float32 value, std::uint32_t* order);

  std::function<void(AudioUnitParameterID, Float32)> on_write;
  std::function<void(AudioUnitParameterID, bool)> on_gesture;

 private:
  /// The number of the last write in the upper half, the bits of the value in the lower.
  using Cell = std::atomic<std::uint64_t>;
  static_assert(Cell::is_always_lock_free);
  Cell* cell(AudioUnitParameterID id) const;

  const std::vector<EffectParameter> parameters_;
  const std::unique_ptr<Cell[]> cells_;  // in the order of parameters_
};

/// All effects of the process.
inline constinit HandleTable<Effect, OpaqueAudioUnit> units;

/// AudioUnitSetParameter, with the number of the write (see Effect::write).
OSStatus write_parameter(const AudioUnitParameter& parameter, Float32 value, std::uint32_t* order);

}  // namespace cocoa
