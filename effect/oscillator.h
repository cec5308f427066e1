// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "effect/ramp.h"

namespace ondex {

/// One side's oscillator, w = sin(x + m sin(y)): x advances at the rate, y at the rate times the factor.
///
/// y is a phase of its own. Were it the factor times x, a new factor would throw it to another place. Both
/// are counted in 2^-64 of a turn, so that they wrap by themselves and keep their precision for as long as a
/// host runs.
class Oscillator {
 public:
  struct Settings {
    double rate;    ///< Hz, not negative
    double factor;  ///< not negative; with `rate`, below half the sample rate
    double index;   ///< radians
  };

  /// `sample_rate` in Hz.
  explicit Oscillator(double sample_rate);

  /// Both phases to 0, the settings in force at once.
  void restart(const Settings& settings);
  /// The settings to be reached over `frames` frames.
  void head_for(const Settings& settings, uint32_t frames);

  /// One frame on. The first frame after a restart has both phases 0.
  void advance() {
    index_.next();
    carrier_ += carrier_step_;
    modulator_ += modulator_step_;
    if (rate_.moving() || factor_.moving()) {
      rate_.next();
      factor_.next();
      set_steps();
    }
  }
  /// w, from -1 to 1.
  double value() const;

 private:
  void set_steps();

  double steps_per_hertz_;
  Ramp rate_;
  Ramp factor_;
  Ramp index_;
  uint64_t carrier_ = 0;
  uint64_t modulator_ = 0;
  uint64_t carrier_step_ = 0;
  uint64_t modulator_step_ = 0;
};

}  // namespace ondex
