// SPDX-License-Identifier: MIT
#include "lv2_ui/gesture_tracker.h"

namespace ondex {

void GestureTracker::willWrite(unsigned parameter, GestureKind kind, double now) {
  State& state = states_[parameter];
  const bool begins = state == State::none;
  switch (kind) {
    case GestureKind::hold:
      // Takes over from a wheel that has just been turned: one gesture in the host's eyes.
      state = State::hold;
      break;
    case GestureKind::wheel:
      if (state == State::none || state == State::wheel) {
        state = State::wheel;
        rests_at_[parameter] = now + wheel_rest;
      }
      break;
    case GestureKind::entry:
      if (begins)
        state = State::entry;
      break;
  }
  if (begins)
    tell_(parameter, true);
}

void GestureTracker::didWrite(unsigned parameter) {
  if (states_[parameter] == State::entry)
    end(parameter);
}

void GestureTracker::released() {
  for (unsigned parameter = 0; parameter < parameter_count; ++parameter) {
    if (states_[parameter] == State::hold)
      end(parameter);
  }
}

void GestureTracker::tick(double now) {
  for (unsigned parameter = 0; parameter < parameter_count; ++parameter) {
    if (states_[parameter] == State::wheel && now >= rests_at_[parameter])
      end(parameter);
  }
}

void GestureTracker::endAll() {
  for (unsigned parameter = 0; parameter < parameter_count; ++parameter) {
    if (isOpen(parameter))
      end(parameter);
  }
}

void GestureTracker::end(unsigned parameter) {
  // First, as the host may call us back.
  states_[parameter] = State::none;
  tell_(parameter, false);
}

}  // namespace ondex
