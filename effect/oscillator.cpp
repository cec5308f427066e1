// SPDX-License-Identifier: MIT
#include "effect/oscillator.h"

#include <cmath>
#include <numbers>

namespace ondex {
namespace {

/// The angle of a phase, from -pi to pi: read as signed, the second half of the turn lies below 0.
double radians(uint64_t phase) {
  return static_cast<double>(static_cast<int64_t>(phase)) * (2 * std::numbers::pi * 0x1p-64);
}

}  // namespace

Oscillator::Oscillator(double sample_rate) : steps_per_hertz_(0x1p64 / sample_rate) {}

void Oscillator::restart(const Settings& settings) {
  rate_.jump(settings.rate);
  factor_.jump(settings.factor);
  index_.jump(settings.index);
  carrier_ = modulator_ = 0;
  set_steps();
}

void Oscillator::head_for(const Settings& settings, uint32_t frames) {
  rate_.head_for(settings.rate, frames);
  factor_.head_for(settings.factor, frames);
  index_.head_for(settings.index, frames);
}

double Oscillator::value() const {
  const double index = index_.value();
  const double push = index == 0 ? 0 : index * std::sin(radians(modulator_));
  return std::sin(radians(carrier_) + push);
}

// Both steps lie below half a turn, hence in the signed range, which converts in one instruction.
void Oscillator::set_steps() {
  const double step = rate_.value() * steps_per_hertz_;
  carrier_step_ = static_cast<uint64_t>(static_cast<int64_t>(step));
  modulator_step_ = static_cast<uint64_t>(static_cast<int64_t>(step * factor_.value()));
}

}  // namespace ondex
