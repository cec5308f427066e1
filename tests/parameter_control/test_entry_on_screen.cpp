// SPDX-License-Identifier: MIT
#include "entry_on_screen.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::backspace_key;
using test::enter_key;
using test::EntryOnScreen;
using test::EntryPanel;
using test::escape_key;
using test::keypad_enter_key;

TEST_F(EntryOnScreen, TheValueIsSelectedSoThatTypingReplacesIt) {
  EXPECT_EQ(system.keyWindow(), &panel_window());
  EXPECT_EQ(panel->field->editedText().selectedText(), "1000.1");
  type("440");
  EXPECT_EQ(panel->field->editedText().text(), "440");
  EXPECT_EQ(readout->current_value(), 1000.1);
}

TEST_F(EntryOnScreen, ReturnCommitsAndGivesTheKeysBack) {
  type("440,5");
  press(enter_key);
  EXPECT_FALSE(is_open());
  EXPECT_EQ(readout->current_value(), 440.5);
  EXPECT_EQ(host->edited.size(), 1U);
  turn();
  EXPECT_EQ(system.keyWindow(), &editor_window());
}

TEST_F(EntryOnScreen, TheKeypadsEnterCommitsToo) {
  type("440");
  press(keypad_enter_key);
  EXPECT_FALSE(is_open());
  EXPECT_EQ(readout->current_value(), 440.0);
}

TEST_F(EntryOnScreen, AValueThatIsNotTouchedCommitsInSinglePrecision) {
  press(enter_key);
  EXPECT_EQ(readout->current_value(), static_cast<double>(1000.1F));
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(EntryOnScreen, ANumberOutsideTheRangeCommitsAsTheNearestBound) {
  type("50000");
  press(enter_key);
  EXPECT_EQ(readout->current_value(), 20000.0);
  open();
  type("-1e999");
  press(enter_key);
  EXPECT_EQ(readout->current_value(), 20.0);
  EXPECT_EQ(host->edited.size(), 2U);
}

TEST_F(EntryOnScreen, TextThatIsNoNumberStaysOpenIsMarkedAndWritesNothing) {
  type("loud");
  press(enter_key);
  EXPECT_TRUE(is_open());
  EXPECT_TRUE(panel->field->isRefused());
  EXPECT_EQ(panel->field->editedText().text(), "loud");
  EXPECT_TRUE(host->edited.empty());
  EXPECT_EQ(readout->current_value(), 1000.1);
  for (int i = 0; i < 4; ++i)
    press(backspace_key);
  type("50");
  press(enter_key);
  EXPECT_FALSE(is_open());
  EXPECT_EQ(readout->current_value(), 50.0);
}

TEST_F(EntryOnScreen, EscapeCancels) {
  type("440");
  press(escape_key);
  EXPECT_FALSE(is_open());
  EXPECT_EQ(readout->current_value(), 1000.1);
  EXPECT_TRUE(host->edited.empty());
  turn();
  EXPECT_EQ(system.keyWindow(), &editor_window());
}

TEST_F(EntryOnScreen, EscapeCancelsARefusedTextToo) {
  type("loud");
  press(enter_key);
  press(escape_key);
  EXPECT_FALSE(is_open());
  open();
  EXPECT_EQ(panel->field->editedText().text(), "1000.1");
  EXPECT_FALSE(panel->field->isRefused());
}

TEST_F(EntryOnScreen, AClickInTheEditorCancels) {
  type("440");
  editor_window().press(beside);
  editor_window().release();
  turn();
  EXPECT_FALSE(is_open());
  EXPECT_EQ(readout->current_value(), 1000.1);
  turn();
  EXPECT_EQ(system.keyWindow(), &editor_window());
}

TEST_F(EntryOnScreen, AClickInTheShadowCancels) {
  panel_window().press({2, 2});
  turn();
  EXPECT_FALSE(is_open());
  EXPECT_EQ(readout->current_value(), 1000.1);
}

TEST_F(EntryOnScreen, AClickOnThePanelDoesNotCancel) {
  panel_window().press({15, 15});
  panel_window().release();
  turn();
  EXPECT_TRUE(is_open());
}

TEST_F(EntryOnScreen, AnotherWindowThatTakesTheKeysCancels) {
  const auto other = make<NSWindow>(NSMakeRect(0, 0, 50, 50), NSTitledWindowMask);
  other->setWindowSystem(&system);
  other->makeKeyAndOrderFront(nullptr);
  turn();
  EXPECT_EQ(system.windows().size(), 2U) << "the editor's and the other";
  EXPECT_EQ(readout->current_value(), 1000.1);
  EXPECT_EQ(panel->window(), nullptr);
}

TEST_F(EntryOnScreen, ACommittedPanelGoesAtOnceAndACancelledOneAtTheEndOfTheCycle) {
  {
    const NSAutoreleasePool cycle;
    type("440");
    panel_window().key_down(enter_key, "");
    system.dispatch();
    EXPECT_FALSE(is_open());
  }
  open();
  {
    const NSAutoreleasePool cycle;
    panel_window().key_down(escape_key, "");
    system.dispatch();
    EXPECT_TRUE(is_open());
    EXPECT_TRUE(window->childWindows().empty());
  }
  EXPECT_FALSE(is_open());
}

TEST_F(EntryOnScreen, AChangeFromTheHostLeavesWhatIsTyped) {
  type("44");
  readout->set_current_value(5000);
  turn();
  EXPECT_EQ(panel->field->editedText().text(), "44");
  type("0");
  press(enter_key);
  EXPECT_EQ(readout->current_value(), 440.0);
}

TEST_F(EntryOnScreen, ThePanelMovesWithTheEditor) {
  const NSPoint before = panel_window().frame().origin;
  editor_window().move({310, 180});
  turn();
  EXPECT_EQ(panel_window().frame().origin, (NSPoint{before.x + 10, before.y - 20}));
  EXPECT_TRUE(is_open());
}

TEST_F(EntryOnScreen, TheEditorsWindowMayBeDestroyedFromOutside) {
  type("44");
  editor_window().destroyFromOutside();
  turn();
  EXPECT_EQ(readout->current_value(), 1000.1);
  window = nullptr;
  turn();
  EXPECT_TRUE(system.windows().empty());
  EXPECT_EQ(panel->window(), nullptr);
}

TEST_F(EntryOnScreen, TheConnectionMayBeLost) {
  type("44");
  system.loseConnection();
  turn();
  EXPECT_EQ(readout->current_value(), 1000.1);
}

TEST_F(EntryOnScreen, ThePanelCastsAShadowAroundItself) {
  const auto alpha = [this](int x, int y) { return panel_window().shownPixel(x, y) >> 24U; };
  // The content lies 11 pixels inside; the shadow is strongest below it and fades towards the window's edge.
  EXPECT_GT(alpha(81, 63), 0x40U);
  EXPECT_LT(alpha(81, 63), 0xa0U);
  EXPECT_LT(alpha(81, 71), alpha(81, 63));
  EXPECT_EQ(alpha(0, 0), 0U);
}

/// In a window that a host has moved and made larger.
TEST(EntryInAHost, ThePanelLiesOnTheReadoutWhereverTheHostPutsAndHoweverItScalesTheEditor) {
  const NSAutoreleasePool pool;
  HeadlessWindowSystem system;
  const auto turn = [&system] {
    const NSAutoreleasePool turn_pool;
    system.dispatch();
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
  };
  const auto panel = make<EntryPanel>();
  const auto readout = make<KV_Ondex_Parameter_Control_View>(NSMakeRect(40, 30, 132, 36));
  auto window = make<NSWindow>(NSMakeRect(0, 0, 400, 300), NSBorderlessWindowMask);
  window->setWindowSystem(&system);
  window->setHostWindow(77);
  window->contentView()->addSubview(readout.get());
  window->setContentScalesToFit();
  readout->set_pop_up_view(panel.get());
  window->orderFront(nullptr);
  turn();
  HeadlessWindow& shown = *system.newestWindow();
  shown.setHostOrigin({500, 100});
  shown.resize({800, 600});
  turn();
  for (int click = 0; click < 2; ++click) {
    shown.press({160, 90});
    shown.release();
  }
  turn();
  ASSERT_EQ(system.windows().size(), 2U);
  HeadlessWindow& opened = *system.newestWindow();
  // Twice as large: the corner at 500 + 2 · 40, less the shadow's 2 · 11; 2 · (140 + 22) wide.
  EXPECT_EQ(opened.frame(), NSMakeRect(558, 138, 324, 144));
  opened.press({22 + 20, 22 + 20});
  turn();
  EXPECT_EQ(system.windows().size(), 2U) << "that was inside of it";
  shown.setHostOrigin({600, 150});
  shown.move({0, 0});
  turn();
  EXPECT_EQ(opened.frame(), NSMakeRect(658, 188, 324, 144));
  shown.resize({400, 300});
  turn();
  EXPECT_EQ(opened.frame(), NSMakeRect(629, 169, 162, 72));
  window = nullptr;
}

}  // namespace
}  // namespace ondex
