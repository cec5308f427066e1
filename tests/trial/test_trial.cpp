// SPDX-License-Identifier: MIT
// A fixed number of seeds; the program ondex-trial goes on from there.

#include <gtest/gtest.h>

#include "trace.h"
#include "trial.h"

namespace ondex::trial {
namespace {

/// The seeds of one test, which ctest runs beside the others.
constexpr uint64_t seeds_each = 100;
/// Of the processor's time, for one seed: a hundred times what the slowest takes under the sanitizers.
constexpr unsigned longest = 60;

class Trial : public testing::TestWithParam<uint64_t> {
 protected:
  static void SetUpTestSuite() { Trace::reportDeaths(longest); }
  static void tryWorld(World world) {
    for (uint64_t seed = GetParam(); seed < GetParam() + seeds_each; ++seed) {
      const auto faults = run_trial(world, seed);
      ASSERT_FALSE(faults) << *faults;
    }
  }
};

TEST_P(Trial, AnAudioUnitHostFindsNoFault) {
  tryWorld(World::editor);
}

TEST_P(Trial, AnLv2HostFindsNoFault) {
  tryWorld(World::lv2);
}

INSTANTIATE_TEST_SUITE_P(From, Trial, testing::Values(0, seeds_each), testing::PrintToStringParamName());

}  // namespace
}  // namespace ondex::trial
