// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <limits>
#include <mutex>
#include <shared_mutex>

#include "plugin.h"
#include "traps.h"

namespace ondex::test {
namespace {

constexpr Controls busy = {5, 6, 0.9F, 2, 3, 1, 2};

TEST(RealTimeTrap, LetsPlainWorkComeToItsEnd) {
  volatile double sum = 0;
  EXPECT_EQ(trapped([&sum] { sum = sum + 1; }), "");
}

TEST(RealTimeTrap, CatchesMemoryTakenAndGivenBack) {
  // Through volatile pointers, as the compiler may leave out a pair of calls that it sees.
  void* (*volatile take)(size_t) = std::malloc;
  void (*volatile give)(void*) = std::free;
  EXPECT_EQ(trapped([take] { take(1); }), "malloc");
  EXPECT_EQ(trapped([give] { give(nullptr); }), "free");
  EXPECT_EQ(trapped([] { ::operator delete(::operator new(1)); }), "malloc");
}

TEST(RealTimeTrap, CatchesLocksThatNobodyHolds) {
  std::mutex mutex;
  EXPECT_EQ(trapped([&mutex] { mutex.lock(); }), "pthread_mutex_lock");
  std::shared_mutex shared;
  EXPECT_EQ(trapped([&shared] { shared.lock_shared(); }), "pthread_rwlock_rdlock");
  EXPECT_EQ(trapped([&shared] { shared.lock(); }), "pthread_rwlock_wrlock");
}

TEST(RealTimeTrap, CatchesSystemCalls) {
  EXPECT_EQ(trapped([] { getppid(); }), "system call " + std::to_string(SYS_getppid));
  EXPECT_EQ(trapped([] { (void)!write(-1, nullptr, 0); }), "system call " + std::to_string(SYS_write));
}

TEST(RealTimeTrap, ReachesIntoThePlugIn) {
  const LV2_Descriptor& effect = descriptor();
  EXPECT_EQ(trapped([&effect] { effect.instantiate(&effect, 48000, "", nullptr); }), "malloc");
  const LV2_Handle handle = effect.instantiate(&effect, 48000, "", nullptr);
  EXPECT_EQ(trapped([&effect, handle] { effect.cleanup(handle); }), "free");
  effect.cleanup(handle);
}

TEST(EffectRealTime, RunsWithoutAllocationsLocksAndSystemCalls) {
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  constexpr std::array<Controls, 5> settings = {busy,
                                                {20, 20, 1, 20, 20, 20, 20},
                                                default_controls,
                                                {5, 5, 0, 5, 5, 5, 5},
                                                {nan, -1, 99, nan, nan, 0, 0}};
  constexpr std::array<uint32_t, 8> sizes = {0, 1, 63, 64, 960, 4096, 3, 1024};
  Plugin plugin(48000, busy);
  const Stereo sound = noise(4096, 1);
  Stereo output = constant(4096, 0);
  // The first block counts too.
  EXPECT_EQ(trapped([&] {
              for (size_t block = 0; block < 400; ++block) {
                plugin.controls = settings[block % settings.size()];
                plugin.run(sound.left.data(), sound.right.data(), output.left.data(), output.right.data(),
                           sizes[block % sizes.size()]);
              }
            }),
            "");
}

}  // namespace
}  // namespace ondex::test
