// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "effect/oscillator.h"
#include "effect/parameters.h"
#include "effect/ramp.h"

namespace ondex {

/// A stereo tremolo. Each side is multiplied by
///
///     gain = 1 - depth (1 - w) / 2,   w = sin(x + m sin(beta x))
///
/// with x advancing at the side's rate, beta its modulation factor and m its modulation index; both sides
/// share the depth. New parameters are reached in a straight line within 20 ms, so that no change is heard as
/// a click. At depth 0 every sample passes bit for bit.
///
/// Holds no memory but its own and calls nothing but the sine: everything here may be called in real time.
/// Not for two threads at once.
class Tremolo {
 public:
  /// Whether a sample rate (Hz) can be worked at. A modulator at its fastest, 20 times 20 Hz, turns less than
  /// half a turn a frame from 800 Hz up; beyond the highest no sound is sampled.
  static constexpr bool runs_at(double sample_rate) { return sample_rate >= 1e3 && sample_rate <= 1e7; }

  /// `sample_rate` in Hz, one that it runs at.
  explicit Tremolo(double sample_rate);

  /// Starts from phase 0, and with the parameters of the next process() at once.
  void reset() { fresh_ = true; }

  struct Input {
    const float* left;
    const float* right;
  };
  struct Output {
    float* left;
    float* right;
  };
  /// Processes `frames` frames towards `parameters`, which lie in their ranges. An output may be either
  /// input. How frames are divided among calls makes no difference.
  void process(const ParameterValues& parameters, Input input, Output output, uint32_t frames);

 private:
  void head_for(const ParameterValues& parameters);

  uint32_t ramp_frames_;
  Ramp depth_;
  Oscillator left_;
  Oscillator right_;
  bool fresh_ = true;
};

}  // namespace ondex
