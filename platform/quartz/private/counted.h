// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

/// The reference counting of Quartz objects.

namespace cocoa {

/// A count of references, 1 at first. Atomic, because colour spaces and colours that are kept for the life
/// of the process meet in editors that run on different threads.
class Counted {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  void add_reference() const { references_.fetch_add(1, std::memory_order_relaxed); }
  /// True when that was the last one.
  [[nodiscard]] bool drop_reference() const {
    return references_.fetch_sub(1, std::memory_order_acq_rel) == 1;
  }

 private:
  mutable std::atomic<unsigned> references_{1};
};

template <typename T>
T* retain_counted(T* object) {
  if (object)
    object->add_reference();
  return object;
}

template <typename T>
void release_counted(T* object) {
  if (object && object->drop_reference())
    delete object;
}

}  // namespace cocoa
