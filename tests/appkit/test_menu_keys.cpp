// SPDX-License-Identifier: MIT
#include "menu_tracking_fixture.h"

namespace cocoa {
namespace {

using ondex::test::MenuTracking;

TEST_F(MenuTracking, ArrowsMoveTheLightAndStopAtTheEnds) {
  button->selectItemAtIndex(1);
  click_button();
  key(key_down);
  key(key_down);
  key(key_return);
  EXPECT_FALSE(open());
  EXPECT_EQ(button->indexOfSelectedItem(), 2);
  click_button();
  for (int i = 0; i < 5; ++i)
    key(key_up);
  key(key_return);
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
  EXPECT_EQ(host->edited.size(), 2U);
}

TEST_F(MenuTracking, HomeAndEndGoToTheEnds) {
  click_button();
  key(key_end);
  key(key_return);
  EXPECT_EQ(button->indexOfSelectedItem(), 2);
  click_button();
  key(key_home);
  key(' ', " ");
  EXPECT_EQ(button->indexOfSelectedItem(), 0) << "the space bar chooses as well";
}

TEST_F(MenuTracking, WithNothingLitArrowsBeginAtTheirEnd) {
  button->selectItemAtIndex(-1);
  click_button();
  key(key_up);
  key(key_return);
  EXPECT_EQ(button->indexOfSelectedItem(), 2);
  button->selectItemAtIndex(-1);
  click_button();
  key(key_down);
  key(key_return);
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
}

TEST_F(MenuTracking, EscapeClosesWithoutAChoice) {
  click_button();
  key(key_down);
  key(key_escape);
  EXPECT_FALSE(open());
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
  EXPECT_TRUE(host->edited.empty());
  EXPECT_EQ(system.keyWindow(), &main_window());
}

TEST_F(MenuTracking, ReturnWithNothingLitClosesWithoutAChoice) {
  button->selectItemAtIndex(-1);
  click_button();
  key(key_return);
  EXPECT_FALSE(open());
  EXPECT_EQ(button->indexOfSelectedItem(), -1);
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(MenuTracking, TypingFindsATitle) {
  click_button();
  type("n");
  key(key_return);
  EXPECT_EQ(button->titleOfSelectedItem()->view(), "Noise");
  click_button();
  type("SQ");
  key(key_return);
  EXPECT_EQ(button->titleOfSelectedItem()->view(), "Square") << "more letters tell more, of either case";
  click_button();
  type("s");
  clock.advance(2);
  type("n");
  key(key_return);
  EXPECT_EQ(button->titleOfSelectedItem()->view(), "Noise") << "after a pause a new title begins";
  click_button();
  type("x");
  key(key_return);
  EXPECT_EQ(button->titleOfSelectedItem()->view(), "Noise") << "nothing begins so";
}

TEST_F(MenuTracking, APointerThatRestsOutsideLeavesTheKeysTheirLight) {
  click_button();
  list().move_to({-100, -100});
  turn();
  key(key_end);
  list().move_to({-101, -100});
  turn();
  key(key_return);
  EXPECT_EQ(button->indexOfSelectedItem(), 2);
}

}  // namespace
}  // namespace cocoa
