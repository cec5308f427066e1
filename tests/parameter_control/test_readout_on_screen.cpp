// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "entry_panel.h"
#include "foundation/CFRunLoop.h"
#include "manual_clock.h"
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"
#include "recording_host.h"
#include "windows/headless.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::edited_selector;
using test::EntryPanel;
using test::ManualClock;
using test::RecordingHost;

/// A readout in a window that somebody sees, with the panel to type numbers into.
class ReadoutOnScreen : public testing::Test {
 protected:
  ReadoutOnScreen() {
    window->setWindowSystem(&system);
    window->contentView()->addSubview(readout.get());
    readout->set_callback_onObject(edited_selector, host.get());
    readout->set_pop_up_view(panel.get());
    readout->set_current_value(0.5);
    window->makeKeyAndOrderFront(nullptr);
    turn();
  }
  /// As a turn of the run loop: what was injected is delivered, then what views marked is drawn.
  void turn() {
    const NSAutoreleasePool turn_pool;
    system.dispatch();
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
  }
  HeadlessWindow& editor_window() { return *system.windows().front(); }
  void click(NSPoint where) {
    editor_window().press(where);
    editor_window().release();
    turn();
  }
  void double_click() {
    click(on_readout);
    clock.advance(0.1);
    click(on_readout);
    clock.advance(10);
  }
  bool panel_is_open() { return system.windows().size() == 2; }

  static constexpr NSPoint on_readout = {100, 45};
  static constexpr NSPoint beside = {350, 250};
  NSAutoreleasePool pool;
  ManualClock clock{1000};
  HeadlessWindowSystem system{clock};
  Ref<RecordingHost> host = make<RecordingHost>();
  Ref<EntryPanel> panel = make<EntryPanel>();
  Ref<NSWindow> window = make<NSWindow>(NSMakeRect(300, 200, 400, 300), NSTitledWindowMask);
  Ref<KV_Ondex_Parameter_Control_View> readout =
      make<KV_Ondex_Parameter_Control_View>(NSMakeRect(40, 30, 132, 36));
};

TEST_F(ReadoutOnScreen, ADoubleClickSelectsAndOpensAPanelThatTakesTheKeys) {
  double_click();
  EXPECT_TRUE(readout->is_selected());
  ASSERT_TRUE(panel_is_open());
  EXPECT_EQ(system.keyWindow(), system.newestWindow());
  EXPECT_EQ(system.newestWindow()->kind(), WindowKind::popup);
  // With the room for its shadow: 11 points on every side.
  EXPECT_EQ(system.newestWindow()->frame(), NSMakeRect(329, 219, 162, 72));
}

TEST_F(ReadoutOnScreen, ClickingElsewhereClosesThePanelAndLeavesTheValue) {
  double_click();
  ASSERT_TRUE(panel_is_open());
  system.newestWindow()->type("0.75");
  click(beside);
  EXPECT_FALSE(panel_is_open());
  EXPECT_EQ(readout->current_value(), 0.5);
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(ReadoutOnScreen, SwitchingToAnotherProgramClosesThePanel) {
  double_click();
  system.loseKey();
  turn();
  EXPECT_FALSE(panel_is_open());
  EXPECT_EQ(readout->current_value(), 0.5);
}

TEST_F(ReadoutOnScreen, AFinishedEntryTakesThePanelOffTheScreen) {
  double_click();
  panel->finish(0.75);
  EXPECT_FALSE(panel_is_open());
  EXPECT_EQ(readout->current_value(), 0.75);
  turn();
  double_click();
  EXPECT_TRUE(panel_is_open());
}

TEST_F(ReadoutOnScreen, TheEditorsWindowMayGoUnderAnOpenPanel) {
  double_click();
  ASSERT_TRUE(panel_is_open());
  {
    const NSAutoreleasePool last_turn;
    window->close();
    window = nullptr;
  }
  EXPECT_TRUE(system.windows().empty());
  EXPECT_EQ(panel->window(), nullptr);
}

TEST_F(ReadoutOnScreen, OnlyWhatShowsAskesForARedraw) {
  const auto redraws = [this](auto action) {
    editor_window().clearPresented();
    action();
    turn();
    return editor_window().presented().size();
  };
  const auto press = [this] { editor_window().press(on_readout); };
  const auto release = [this] { editor_window().release(); };
  EXPECT_EQ(redraws(press), 1U) << "selects";
  EXPECT_EQ(redraws(release), 1U);
  clock.advance(10);
  EXPECT_EQ(redraws(press), 0U) << "is selected";
  EXPECT_EQ(redraws(release), 1U);
  EXPECT_EQ(redraws([this] { readout->set_selected(false); }), 1U);
  EXPECT_EQ(redraws([this] { readout->set_current_value(0.5); }), 1U);
  EXPECT_EQ(redraws([this] { readout->set_description(nullptr); }), 0U);
  EXPECT_EQ(redraws([this] { readout->set_parameter_number(3); }), 0U);
}

}  // namespace
}  // namespace ondex
