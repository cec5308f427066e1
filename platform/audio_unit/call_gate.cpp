// SPDX-License-Identifier: MIT
#include "audio_unit/private/call_gate.h"

#include <algorithm>

namespace cocoa {

bool CallGate::enter() {
  const std::lock_guard lock(mutex_);
  if (!closed_)
    inside_.push_back(std::this_thread::get_id());
  return !closed_;
}

void CallGate::leave() {
  const std::lock_guard lock(mutex_);
  inside_.erase(std::find(inside_.begin(), inside_.end(), std::this_thread::get_id()));
  // Under the lock: whoever waits may destroy this as soon as it sees that the call has ended.
  left_.notify_all();
}

void CallGate::close() {
  std::unique_lock lock(mutex_);
  closed_ = true;
  left_.wait(lock, [this] {
    return std::all_of(inside_.begin(), inside_.end(),
                       [](std::thread::id id) { return id == std::this_thread::get_id(); });
  });
}

}  // namespace cocoa
