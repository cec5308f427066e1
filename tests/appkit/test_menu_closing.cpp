// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "foundation/NSLog.h"
#include "menu_tracking_fixture.h"

namespace cocoa {
namespace {

using ondex::test::MenuTracking;

// What follows when the list is closed

TEST_F(MenuTracking, ItsEndIsToldOnceAfterTheAction) {
  std::vector<std::string> story;
  host->on_edited = [&] { story.emplace_back("action " + std::to_string(button->indexOfSelectedItem())); };
  const auto tell = [&story] { story.emplace_back("closed"); };
  button->cell()->performClickWithFrame_inView(button->frame(), window->contentView(), tell);
  EXPECT_TRUE(story.empty());
  turn();
  EXPECT_EQ(system.pointerOwner(), &list()) << "no press holds it open";
  key(key_end);
  key(key_return);
  EXPECT_THAT(story, testing::ElementsAre("action 2", "closed"));
  button->cell()->performClickWithFrame_inView(button->frame(), window->contentView(), tell);
  turn();
  key(key_escape);
  EXPECT_THAT(story, testing::ElementsAre("action 2", "closed", "closed"));
}

TEST_F(MenuTracking, WhatCannotOpenEndsAtOnce) {
  int ends = 0;
  const auto count = [&ends] { ++ends; };
  button->cell()->performClickWithFrame_inView(button->frame(), nullptr, count);
  EXPECT_EQ(ends, 1);
  const auto loose = make<NSView>(NSMakeRect(0, 0, 10, 10));
  button->cell()->performClickWithFrame_inView(button->frame(), loose.get(), count);
  EXPECT_EQ(ends, 2);
  system.refuseWindows(true);
  {
    const NSLogHook quiet([](std::string_view) {});
    button->cell()->performClickWithFrame_inView(button->frame(), window->contentView(), count);
  }
  EXPECT_EQ(ends, 3);
  system.refuseWindows(false);
  click_button();
  EXPECT_TRUE(open());
}

TEST_F(MenuTracking, AnotherListClosesTheOneThatIsOpen) {
  int ends = 0;
  const auto other = make<NSPopUpButton>(NSMakeRect(200, 100, 100, 20));
  other->addItemWithTitle("Other");
  window->contentView()->addSubview(other.get());
  button->cell()->performClickWithFrame_inView(button->frame(), window->contentView(), [&ends] { ++ends; });
  turn();
  other->cell()->performClickWithFrame_inView(other->frame(), window->contentView(), {});
  turn();
  EXPECT_EQ(ends, 1);
  EXPECT_FALSE(button->cell()->isOpen());
  EXPECT_TRUE(other->cell()->isOpen());
  EXPECT_EQ(system.windows().size(), 2U);
  EXPECT_EQ(system.pointerOwner(), &list());
  key(key_return);
  EXPECT_FALSE(other->cell()->isOpen());
}

TEST_F(MenuTracking, DismissingClosesWithoutAChoice) {
  click_button();
  button->cell()->dismissPopUp();
  turn();
  EXPECT_FALSE(open());
  EXPECT_TRUE(host->edited.empty());
  button->cell()->dismissPopUp();
}

TEST_F(MenuTracking, AnItemThatHasGoneMeanwhileIsNotChosen) {
  click_button();
  button->cell()->removeItemWithTitle("Noise");
  key(key_end);
  key(key_return);
  EXPECT_FALSE(open());
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
  EXPECT_TRUE(host->edited.empty());
}

// What goes from under an open list

TEST_F(MenuTracking, AMovedWindowClosesIt) {
  click_button();
  main_window().move({310, 200});
  turn();
  EXPECT_FALSE(open());
}

TEST_F(MenuTracking, ItGoesWithAHiddenWindow) {
  click_button();
  main_window().setHidden(true);
  turn();
  EXPECT_FALSE(open());
  EXPECT_EQ(system.pointerOwner(), nullptr);
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(MenuTracking, ItGoesWithItsWindowOffTheScreen) {
  int ends = 0;
  button->cell()->performClickWithFrame_inView(button->frame(), window->contentView(), [&ends] { ++ends; });
  turn();
  window->orderOut(nullptr);
  turn();
  EXPECT_FALSE(open());
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(system.pointerOwner(), nullptr);
}

TEST_F(MenuTracking, ItGoesWithItsWindow) {
  int ends = 0;
  button->cell()->performClickWithFrame_inView(button->frame(), window->contentView(), [&ends] { ++ends; });
  turn();
  window = nullptr;
  EXPECT_TRUE(system.windows().empty());
  EXPECT_EQ(ends, 0) << "there is nobody left to tell";
  EXPECT_FALSE(button->cell()->isOpen());
}

TEST_F(MenuTracking, ItGoesWithItsView) {
  int ends = 0;
  button->cell()->performClickWithFrame_inView(button->bounds(), button.get(), [&ends] { ++ends; });
  turn();
  button->removeFromSuperview();
  turn();
  EXPECT_FALSE(open());
  EXPECT_EQ(ends, 0);
}

TEST_F(MenuTracking, ItGoesWithItsButton) {
  click_button();
  button->removeFromSuperview();
  button = nullptr;
  turn();
  EXPECT_FALSE(open());
  EXPECT_EQ(system.pointerOwner(), nullptr);
}

TEST_F(MenuTracking, TheServerMayDestroyTheList) {
  click_button();
  list().destroyFromOutside();
  turn();
  EXPECT_FALSE(button->cell()->isOpen());
  click_button();
  EXPECT_TRUE(button->cell()->isOpen());
}

TEST_F(MenuTracking, TheConnectionMayBeLost) {
  click_button();
  system.loseConnection();
  turn();
  EXPECT_FALSE(button->cell()->isOpen());
}

TEST_F(MenuTracking, TheActionMayTakeEverythingAway) {
  host->on_edited = [this] {
    button->removeFromSuperview();
    button = nullptr;
    window->orderOut(nullptr);
    window = nullptr;
  };
  press(on_button);
  drag({70, 22});
  release();
  EXPECT_EQ(host->edited.size(), 1U);
  EXPECT_TRUE(system.windows().empty());
}

}  // namespace
}  // namespace cocoa
