// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include "menu_tracking_fixture.h"

namespace cocoa {
namespace {

using ondex::test::MenuTracking;
using ondex::test::selected_selector;

TEST_F(MenuTracking, APressOpensTheListWithTheSelectedLineOverTheControl) {
  button->selectItemAtIndex(1);
  press(on_button);
  ASSERT_TRUE(open());
  EXPECT_EQ(list().kind(), WindowKind::popup);
  // The second line's middle is 31 below the top of 62.
  EXPECT_EQ(list().frame(), NSMakeRect(340, 209, 132, 62));
  EXPECT_EQ(list().parent(), &main_window());
}

TEST_F(MenuTracking, WithNothingSelectedTheFirstLineIsOverTheControl) {
  button->selectItemAtIndex(-1);
  press(on_button);
  EXPECT_EQ(list().frame(), NSMakeRect(340, 191, 132, 62));
}

TEST_F(MenuTracking, PressDragReleaseChoosesAndTakesNeitherKeysNorPointer) {
  button->selectItemAtIndex(1);
  press(on_button);
  drag(line(2));
  EXPECT_EQ(system.keyWindow(), &main_window());
  EXPECT_EQ(system.pointerOwner(), nullptr);
  EXPECT_TRUE(host->edited.empty());
  release();
  EXPECT_FALSE(open());
  EXPECT_EQ(button->indexOfSelectedItem(), 2);
  EXPECT_EQ(host->edited, std::vector<NSObject*>{button.get()});
}

TEST_F(MenuTracking, ReleasingBesideTheListChoosesNothing) {
  button->selectItemAtIndex(1);
  press(on_button);
  drag({300, 200});
  release();
  EXPECT_FALSE(open());
  EXPECT_EQ(button->indexOfSelectedItem(), 1);
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(MenuTracking, AClickLeavesTheListOpenForAnotherOne) {
  button->selectItemAtIndex(1);
  click_button();
  ASSERT_TRUE(open());
  EXPECT_EQ(system.keyWindow(), &main_window()) << "the list never has the keys";
  EXPECT_EQ(system.pointerOwner(), &list());
  click_in_list(line_in_list(0));
  EXPECT_FALSE(open());
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
  EXPECT_EQ(host->edited.size(), 1U);
  EXPECT_EQ(system.keyWindow(), &main_window());
  EXPECT_EQ(system.pointerOwner(), nullptr);
}

TEST_F(MenuTracking, AHandThatTremblesStillClicks) {
  press(on_button);
  drag({102, 43});
  clock.advance(0.3);
  release();
  EXPECT_TRUE(open());
}

TEST_F(MenuTracking, ALongPressOnTheSpotChoosesTheLineUnderIt) {
  button->selectItemAtIndex(1);
  press(on_button);
  clock.advance(0.6);
  release();
  EXPECT_FALSE(open());
  EXPECT_EQ(button->indexOfSelectedItem(), 1);
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(MenuTracking, ChoosingTheSelectedLineAgainIsAChoice) {
  button->selectItemAtIndex(1);
  click_button();
  click_in_list(line_in_list(1));
  EXPECT_EQ(button->indexOfSelectedItem(), 1);
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(MenuTracking, AClickElsewhereClosesTheListAndIsUsedUp) {
  class Pressed : public NSView {
   public:
    using NSView::NSView;
    void mouseDown(NSEvent*) override { ++presses; }
    int presses = 0;
  };
  const auto other = make<Pressed>(NSMakeRect(200, 200, 50, 50));
  window->contentView()->addSubview(other.get());
  click_button();
  press({220, 220});
  EXPECT_FALSE(open());
  EXPECT_EQ(other->presses, 0);
  EXPECT_TRUE(host->edited.empty());
  release();
  press({220, 220});
  EXPECT_EQ(other->presses, 1) << "from then on all is as before";
}

TEST_F(MenuTracking, AClickInAnotherProgramClosesTheList) {
  click_button();
  list().press({-200, 400});
  turn();
  EXPECT_FALSE(open());
  EXPECT_EQ(system.pointerOwner(), nullptr);
}

TEST_F(MenuTracking, AnyButtonClosesTheListFromOutside) {
  click_button();
  list().press({-200, 400}, 1);
  turn();
  EXPECT_FALSE(open());
}

TEST_F(MenuTracking, AWindowWithoutTheKeysHasThemWhileTheListIsOpen) {
  const auto other = make<NSWindow>(NSMakeRect(0, 0, 50, 50), NSTitledWindowMask);
  other->setWindowSystem(&system);
  other->makeKeyAndOrderFront(nullptr);
  turn();
  HeadlessWindow* const before = system.keyWindow();
  ASSERT_NE(before, &main_window());
  button->cell()->performClickWithFrame_inView(button->frame(), window->contentView(), {});
  turn();
  EXPECT_EQ(system.keyWindow(), &main_window());
  key(key_end);
  key(key_return);
  EXPECT_EQ(button->indexOfSelectedItem(), 2);
  EXPECT_EQ(system.keyWindow(), before) << "the keys go back";
}

TEST_F(MenuTracking, LosingTheKeysClosesTheList) {
  click_button();
  system.loseKey();
  turn();
  EXPECT_FALSE(open());
  EXPECT_EQ(system.pointerOwner(), nullptr);
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(MenuTracking, APressInTheListReleasedOutsideClosesIt) {
  click_button();
  list().press(line_in_list(0));
  turn();
  list().drag_to({-50, 30});
  turn();
  ASSERT_TRUE(open());
  list().release();
  turn();
  EXPECT_FALSE(open());
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(MenuTracking, WhatCannotBeChosenKeepsTheListOpen) {
  button->itemAtIndex(1)->setEnabled(false);
  click_button();
  // The first line is over the control.
  click_in_list(line_in_list(1));
  ASSERT_TRUE(open());
  key(key_home);
  key(key_down);
  key(key_return);
  EXPECT_EQ(button->indexOfSelectedItem(), 2) << "the keys pass it by";
}

TEST_F(MenuTracking, AReleaseOnWhatCannotBeChosenLeavesTheListOpen) {
  button->selectItemAtIndex(1);
  button->itemAtIndex(2)->setEnabled(false);
  press(on_button);
  drag(line(2));
  release();
  ASSERT_TRUE(open());
  EXPECT_EQ(system.pointerOwner(), &list());
  click_in_list(line_in_list(0));
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
}

TEST_F(MenuTracking, AnItemsOwnActionIsSentInsteadOfTheControls) {
  NSMenuItem* item = button->itemAtIndex(2);
  item->setTarget_action(host.get(), selected_selector);
  click_button();
  key(key_end);
  key(key_return);
  EXPECT_EQ(host->selected, std::vector<NSObject*>{item});
  EXPECT_TRUE(host->edited.empty());
  EXPECT_EQ(button->indexOfSelectedItem(), 2);
}

TEST_F(MenuTracking, AnEmptyListDoesNotOpen) {
  button->removeAllItems();
  click_button();
  EXPECT_FALSE(open());
}

// Edges and scales

TEST_F(MenuTracking, InAnEditorDrawnLargerTheListIsStillOverTheControl) {
  window->setContentScalesToFit();
  main_window().resize({800, 600});
  turn();
  button->selectItemAtIndex(1);
  press({200, 80});
  ASSERT_TRUE(open());
  // The button is at (80, 60) and 264 × 40 in a window at (300, 200).
  EXPECT_EQ(list().frame(), NSMakeRect(380, 218, 264, 124)) << "drawn as large as the control";
  main_window().drag_to({100, 44});
  turn();
  release();
  EXPECT_EQ(button->indexOfSelectedItem(), 2) << "44 + 200 - 218 is in the middle of the lowest line";
}

TEST_F(MenuTracking, AListTallerThanTheScreenScrolls) {
  button->removeAllItems();
  for (int i = 0; i < 100; ++i)
    button->addItemWithTitle("item " + std::to_string(i));
  button->selectItemAtIndex(50);
  click_button();
  EXPECT_EQ(NSHeight(list().frame()), 800);
  EXPECT_EQ(NSMinY(list().frame()), 0);
  // The selected line is over the control: at 240 on the screen.
  click_in_list({30, 240});
  EXPECT_EQ(button->indexOfSelectedItem(), 50);
  click_button();
  list().move_to({30, 400});
  turn();
  list().scroll(0, -2);
  turn();
  list().press({30, 240});
  list().release();
  turn();
  EXPECT_EQ(button->indexOfSelectedItem(), 52) << "two lines on";
  click_button();
  key(key_end);
  key(key_return);
  EXPECT_EQ(button->indexOfSelectedItem(), 99);
}

TEST_F(MenuTracking, APointerOnAnArrowScrollsOn) {
  button->removeAllItems();
  for (int i = 0; i < 60; ++i)
    button->addItemWithTitle("item " + std::to_string(i));
  click_button();
  list().move_to({30, 2});
  turn();
  for (int i = 0; i < 100; ++i) {
    clock.advance(0.06);
    turn();
  }
  click_in_list({30, 10});
  EXPECT_EQ(button->indexOfSelectedItem(), 59);
}

}  // namespace
}  // namespace cocoa
