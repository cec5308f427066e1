// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace cocoa {

/// Calls that an object makes of code of others, and its end: once close() has returned none is being made on
/// another thread and none begins. Any thread, also from inside such a call.
class CallGate {
 public:
  /// What a call is made under, while it lives.
  class Pass {
   public:
    explicit Pass(CallGate& gate) : gate_(gate), open_(gate.enter()) {}
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;
    ~Pass() {
      if (open_)
        gate_.leave();
    }
    /// False when the end has come.
    explicit operator bool() const { return open_; }

   private:
    CallGate& gate_;
    const bool open_;
  };

  void close();

 private:
  bool enter();
  void leave();

  std::mutex mutex_;
  std::condition_variable left_;
  std::vector<std::thread::id> inside_;  ///< once for each call
  bool closed_ = false;
};

}  // namespace cocoa
