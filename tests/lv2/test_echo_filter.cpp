// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "lv2_ui/echo_filter.h"

namespace ondex {
namespace {

constexpr auto nothing = std::nullopt;

class EchoFilterTest : public testing::Test {
 protected:
  std::optional<float> heard(double value, double now, bool held = false) {
    return filter.heard(static_cast<float>(value), now, held);
  }
  EchoFilter filter{20};
};

TEST_F(EchoFilterTest, WhatNobodyHasWrittenPasses) {
  EXPECT_EQ(heard(3, 0), 3);
  EXPECT_EQ(heard(3, 0.01), 3);
}

TEST_F(EchoFilterTest, EchoesAtOnceAreDropped) {
  for (int i = 0; i < 100; ++i) {
    filter.wrote(static_cast<float>(i) / 5, i * 0.01);
    EXPECT_EQ(heard(i / 5.0, i * 0.01), nothing);
  }
  EXPECT_EQ(filter.settled(100, false), nothing);
}

TEST_F(EchoFilterTest, LateEchoesAreDroppedAndTheLastOneLeavesNothingBehind) {
  for (int i = 0; i < 60; ++i) {
    filter.wrote(static_cast<float>(i) / 5, i * 0.01);
    if (i >= 10) {
      EXPECT_EQ(heard((i - 10) / 5.0, i * 0.01), nothing);
    }
  }
  for (int i = 50; i < 60; ++i)
    EXPECT_EQ(heard(i / 5.0, i * 0.01 + 0.1), nothing);
  EXPECT_EQ(filter.settled(100, false), nothing);
}

TEST_F(EchoFilterTest, EchoesThatComeTwiceAreDropped) {
  filter.wrote(4, 0);
  EXPECT_EQ(heard(4, 0), nothing);
  EXPECT_EQ(heard(4, 0.04), nothing);
}

TEST_F(EchoFilterTest, RoundedEchoesAreDropped) {
  // What seven bits make of it.
  filter.wrote(7.3F, 0);
  EXPECT_EQ(heard(std::round(7.3 / 20 * 127) / 127 * 20, 0.04), nothing);
  EXPECT_EQ(heard(std::nextafter(7.3F, 100.0F), 0.04), nothing);
}

TEST_F(EchoFilterTest, AChangeByOthersPassesAtOnce) {
  filter.wrote(4, 0);
  EXPECT_EQ(heard(9, 0.01), 9);
  EXPECT_EQ(heard(4.2, 0.02), 4.2F);
}

TEST_F(EchoFilterTest, ALateReturnToAnOldValuePasses) {
  filter.wrote(4, 0);
  EXPECT_EQ(heard(4, 0.9), nothing);
  EXPECT_EQ(heard(4, 1.01), 4);
}

TEST_F(EchoFilterTest, AHostThatUpdatesSlowlyIsRememberedLonger) {
  filter = EchoFilter(20, 5);
  filter.wrote(4, 0);
  EXPECT_EQ(heard(4, 4.9), nothing);
}

TEST_F(EchoFilterTest, ALastWordThatLookedLikeAnOldEchoCountsInTheEnd) {
  // The user drags from 2 to 8; then somebody undoes that.
  filter.wrote(2, 0);
  filter.wrote(5, 0.1);
  filter.wrote(8, 0.2);
  EXPECT_EQ(heard(8, 0.24), nothing);
  EXPECT_EQ(heard(2, 0.5), nothing);
  EXPECT_EQ(filter.settled(0.6, false), nothing);
  EXPECT_EQ(filter.settled(0.9, false), 2);
  EXPECT_EQ(filter.settled(1.5, false), nothing) << "once";
}

TEST_F(EchoFilterTest, NothingPassesWhileTheUserHasHoldOfIt) {
  filter.wrote(2, 0);
  EXPECT_EQ(heard(9, 0.1, true), nothing);
  EXPECT_EQ(filter.settled(5, true), nothing);
  filter.wrote(3, 5);
  EXPECT_EQ(filter.settled(10, false), nothing) << "our own word was the last";
}

TEST_F(EchoFilterTest, TheHostsLastWordCountsWhenTheUserHasLetGo) {
  filter.wrote(2, 0);
  EXPECT_EQ(heard(9, 0.1, true), nothing);
  EXPECT_EQ(filter.settled(0.6, false), 9);
}

TEST_F(EchoFilterTest, MemoryIsBounded) {
  for (int i = 0; i < 10000; ++i)
    filter.wrote(static_cast<float>(i % 20), 0);
  filter.wrote(1, 0);
  EXPECT_EQ(heard(1, 0), nothing);
}

}  // namespace
}  // namespace ondex
