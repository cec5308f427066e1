// SPDX-License-Identifier: MIT
#pragma once

#include "standalone/private/text_lines.h"

namespace ondex {

/// Standard input as lines. Times are those of the run loop's clock, in seconds.
class CommandInput {
 public:
  /// What to wait for input on; -1 while there is none to be had.
  int descriptor(double now) const;
  /// When to ask for the descriptor again; infinite while only its input matters.
  double again(double now) const;
  /// Reads what there is, once the descriptor is ready. False when a line was dropped that has no end.
  bool read(double now);
  TextLines& lines() { return lines_; }

 private:
  TextLines lines_;
  bool open_ = true;
  double background_until_ = 0;
};

}  // namespace ondex
