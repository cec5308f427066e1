// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "windows/private/x11_key_stage.h"

namespace cocoa {
namespace {

using Stage = X11KeyStage::Stage;

TEST(X11KeyStage, ClaimsTheKeysFromTheRequestOn) {
  X11KeyStage stage;
  EXPECT_FALSE(stage.isClaimed());
  stage.ask();
  EXPECT_TRUE(stage.isClaimed());
  EXPECT_FALSE(stage.isHeld());
  stage.get();
  EXPECT_TRUE(stage.isHeld());
  stage.lose();
  EXPECT_FALSE(stage.isClaimed());
}

TEST(X11KeyStage, GivesThemBackOnce) {
  X11KeyStage stage;
  EXPECT_FALSE(stage.giveBack()) << "others' keys";
  stage.get();
  EXPECT_TRUE(stage.giveBack());
  EXPECT_FALSE(stage.giveBack());
  EXPECT_TRUE(stage.isHeld()) << "until the server has said that they are gone";
  stage.lose();
  stage.get();
  EXPECT_TRUE(stage.giveBack()) << "they have come again";
}

TEST(X11KeyStage, DoesNotGiveBackTwiceWhatComesAfterItWasRecalled) {
  X11KeyStage stage;
  stage.ask();
  EXPECT_TRUE(stage.giveBack());
  EXPECT_FALSE(stage.isClaimed());
  stage.get();
  EXPECT_EQ(stage.stage(), Stage::given_back);
  EXPECT_FALSE(stage.giveBack());
}

TEST(X11KeyStage, WantsWhatItAsksForAgain) {
  X11KeyStage recalled;
  recalled.ask();
  recalled.giveBack();
  recalled.ask();
  recalled.get();
  EXPECT_EQ(recalled.stage(), Stage::held);

  X11KeyStage given_back;
  given_back.get();
  given_back.giveBack();
  given_back.ask();
  EXPECT_EQ(given_back.stage(), Stage::held);
}

TEST(X11RetakeLimit, StopsAfterEightTimesWithinASecond) {
  X11RetakeLimit limit;
  for (int i = 0; i < 8; ++i)
    EXPECT_TRUE(limit.allows(100 + i * 0.125)) << i;
  EXPECT_FALSE(limit.allows(101));
  EXPECT_TRUE(limit.allows(101.5)) << "a pointer comes and goes";
}

TEST(X11RetakeLimit, KnowsWhetherTheyWereTakenSinceTheRequest) {
  X11RetakeLimit limit;
  EXPECT_FALSE(limit.any());
  limit.allows(1);
  EXPECT_TRUE(limit.any());
  limit.reset();
  EXPECT_FALSE(limit.any());
}

}  // namespace
}  // namespace cocoa
