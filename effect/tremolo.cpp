// SPDX-License-Identifier: MIT
#include "effect/tremolo.h"

namespace ondex {
namespace {

constexpr double ramp_seconds = 0.02;

Oscillator::Settings left_settings(const ParameterValues& parameters) {
  return {parameters[left_tremolo_rate], parameters[left_tremolo_mod_factor],
          parameters[left_tremolo_mod_index]};
}

Oscillator::Settings right_settings(const ParameterValues& parameters) {
  return {parameters[right_tremolo_rate], parameters[right_tremolo_mod_factor],
          parameters[right_tremolo_mod_index]};
}

float attenuated(float sample, double depth, double w) {
  return static_cast<float>(sample * (1 - depth * (1 - w) / 2));
}

}  // namespace

Tremolo::Tremolo(double sample_rate)
    : ramp_frames_(static_cast<uint32_t>(ramp_seconds * sample_rate)),
      left_(sample_rate),
      right_(sample_rate) {}

void Tremolo::head_for(const ParameterValues& parameters) {
  if (fresh_) {
    depth_.jump(parameters[tremolo_depth]);
    left_.restart(left_settings(parameters));
    right_.restart(right_settings(parameters));
    fresh_ = false;
    return;
  }
  depth_.head_for(parameters[tremolo_depth], ramp_frames_);
  left_.head_for(left_settings(parameters), ramp_frames_);
  right_.head_for(right_settings(parameters), ramp_frames_);
}

void Tremolo::process(const ParameterValues& parameters, Input input, Output output, uint32_t frames) {
  // A host that only passes parameters along has let nothing be heard yet that a ramp would have to start
  // from.
  if (frames == 0)
    return;
  head_for(parameters);
  for (uint32_t i = 0; i < frames; ++i) {
    // Both are read before either is written: the host may have crossed the buffers.
    const float left = input.left[i];
    const float right = input.right[i];
    const double depth = depth_.next();
    // Even a factor of 1 could change bits, of a signalling NaN or of numbers that the host's mode flushes to
    // 0.
    output.left[i] = depth == 0 ? left : attenuated(left, depth, left_.value());
    output.right[i] = depth == 0 ? right : attenuated(right, depth, right_.value());
    left_.advance();
    right_.advance();
  }
}

}  // namespace ondex
