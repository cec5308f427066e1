// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "audio_unit/private/call_gate.h"

namespace cocoa::test {
namespace {

TEST(CallGate, LetsCallsThroughUntilItCloses) {
  CallGate gate;
  EXPECT_TRUE(CallGate::Pass(gate));
  gate.close();
  EXPECT_FALSE(CallGate::Pass(gate));
  gate.close();
}

TEST(CallGate, MayCloseInsideACallOfTheSameThread) {
  CallGate gate;
  const CallGate::Pass outer(gate);
  const CallGate::Pass inner(gate);
  gate.close();
  EXPECT_FALSE(CallGate::Pass(gate));
}

TEST(CallGate, WaitsForCallsOfOtherThreads) {
  CallGate gate;
  std::atomic<bool> inside = false;
  std::atomic<bool> refused = false;
  std::atomic<bool> ended = false;
  std::thread caller([&] {
    const CallGate::Pass pass(gate);
    inside = true;
    // Until close() has begun to wait, others pass.
    while (CallGate::Pass(gate))
      std::this_thread::yield();
    refused = true;
    ended = true;
  });
  while (!inside)
    std::this_thread::yield();
  gate.close();
  EXPECT_TRUE(refused);
  EXPECT_TRUE(ended);
  caller.join();
}

}  // namespace
}  // namespace cocoa::test
