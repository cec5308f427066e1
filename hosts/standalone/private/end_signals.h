// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>
#include <string_view>

#include "foundation/UniqueFd.h"

namespace ondex {

/// SIGINT and SIGTERM while the program shows its window. They are held back, so that it ends in order, and
/// let through where it waits for others: for a reader of its text, or for one of a FIFO that a picture is
/// written to.
///
/// There is one at a time, on the main thread; other threads are started while it lives and inherit its mask.
class EndSignals {
 public:
  EndSignals() = default;
  /// The signals stay held back: the program is about to end.
  ~EndSignals() = default;
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

  /// Until then they end the program at once.
  void hold_back();
  /// Becomes readable when one is held back; -1 before any is.
  int descriptor() const { return descriptor_.get(); }
  /// Whether one was let through.
  static bool came_through();

  /// While it lives, a signal interrupts a system call that waits, again and again until none does. They may
  /// be nested.
  class Interruptible {
   public:
    Interruptible();
    ~Interruptible();
    Interruptible(const Interruptible&) = delete;
    Interruptible& operator=(const Interruptible&) = delete;

   private:
    sigset_t outside_;
  };

 private:
  cocoa::UniqueFd descriptor_;
};

/// Writes all of a text, however long its reader takes, unless a signal comes through.
void write_text(int descriptor, std::string_view text);

}  // namespace ondex
