#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "appkit/NSPopUpButton.h"
#include "appkit/NSWindow.h"
#include "foundation/NSLog.h"
#include "manual_clock.h"
#include "recording_host.h"
#include "windows/headless.h"

namespace cocoa {
namespace {

using ondex::test::edited_selector;
using ondex::test::ManualClock;
using ondex::test::RecordingHost;
using ondex::test::selected_selector;

constexpr uint32_t key_return = 0xff0d;
constexpr uint32_t key_escape = 0xff1b;
constexpr uint32_t key_home = 0xff50;
constexpr uint32_t key_up = 0xff52;
constexpr uint32_t key_down = 0xff54;
constexpr uint32_t key_end = 0xff57;

/// A pop-up button in a window, its left at 340 and its middle at 240 on the screen.
class MenuTracking : public testing::Test {
 protected:
  MenuTracking() {
    CFRunLoopGetCurrent()->setClock(&clock);
    for (const char* title : {"Sine", "Square", "Noise"})
      button->addItemWithTitle(title);
    button->setTarget_action(host.get(), edited_selector);
    window->setWindowSystem(&system);
    window->contentView()->addSubview(button.get());
    window->makeKeyAndOrderFront(nullptr);
    turn();
  }
  ~MenuTracking() override {
    window = nullptr;
    CFRunLoopGetCurrent()->setClock(nullptr);
  }
  void turn() {
    const NSAutoreleasePool turn_pool;
    system.dispatch();
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
  }
  HeadlessWindow& main_window() { return *system.windows().front(); }
  HeadlessWindow& list() { return *system.newestWindow(); }
  bool open() { return system.windows().size() == 2; }
  /// The middle of a line of the list of three, with the second selected, in the button's window.
  static NSPoint line(int index) { return {70, static_cast<CGFloat>(58 - 18 * index)}; }
  /// The same in the list's window.
  static NSPoint line_in_list(int index) { return {30, static_cast<CGFloat>(49 - 18 * index)}; }

  void press(NSPoint where) {
    main_window().press(where);
    turn();
  }
  void drag(NSPoint where) {
    main_window().drag_to(where);
    turn();
  }
  void release() {
    main_window().release();
    turn();
  }
  void click_button() {
    press(on_button);
    clock.advance(0.1);
    release();
    clock.advance(1);
  }
  void click_in_list(NSPoint where) {
    list().press(where);
    turn();
    if (open())
      list().release();
    turn();
  }
  void key(uint32_t keysym, std::string_view characters = "") {
    system.keyWindow()->key_down(keysym, characters);
    turn();
  }
  void type(std::string_view text) {
    system.keyWindow()->type(text);
    turn();
  }

  static constexpr NSPoint on_button = {100, 40};
  NSAutoreleasePool pool;
  ManualClock clock{1000};
  HeadlessWindowSystem system{clock};
  Ref<RecordingHost> host = make<RecordingHost>();
  Ref<NSWindow> window = make<NSWindow>(NSMakeRect(300, 200, 400, 300), NSTitledWindowMask);
  Ref<NSPopUpButton> button = make<NSPopUpButton>(NSMakeRect(40, 30, 132, 20));
};

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
  EXPECT_EQ(system.keyWindow(), &list());
  EXPECT_EQ(system.pointerOwner(), &list());
  click_in_list(line_in_list(0));
  EXPECT_FALSE(open());
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
  EXPECT_EQ(host->edited.size(), 1U);
  EXPECT_EQ(system.keyWindow(), &main_window()) << "the keys go back";
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
  button->removeItemWithTitle("Noise");
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
