// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace ondex {

/// A value that reaches a new target in a straight line, frame by frame, and then is exactly the target.
class Ramp {
 public:
  /// Is at the target at once.
  void jump(double target) {
    value_ = target_ = target;
    frames_left_ = 0;
  }
  /// Sets out for another target, to be reached after `frames` calls of next(). The target it already has
  /// does not start it again.
  void head_for(double target, uint32_t frames) {
    if (target == target_)
      return;
    slope_ = (target - value_) / frames;
    target_ = target;
    frames_left_ = frames;
  }
  /// The value one frame on.
  double next() {
    if (frames_left_ > 0)
      value_ = target_ - slope_ * --frames_left_;
    return value_;
  }
  double value() const { return value_; }
  bool moving() const { return frames_left_ > 0; }

 private:
  double value_ = 0;
  double target_ = 0;
  double slope_ = 0;
  uint32_t frames_left_ = 0;
};

}  // namespace ondex
