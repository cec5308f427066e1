// SPDX-License-Identifier: MIT
// Entries that end in other ways than by Return and Escape.

#include "entry_on_screen.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::enter_key;
using test::EntryOnScreen;
using test::escape_key;
using test::left_tab_key;
using test::tab_key;

class EntryClosing : public EntryOnScreen {
 protected:
  /// A readout beside the other one, with the same panel.
  Ref<KV_Ondex_Parameter_Control_View> add_another() {
    auto another = make<KV_Ondex_Parameter_Control_View>(NSMakeRect(200, 30, 132, 36));
    window->contentView()->addSubview(another.get());
    another->set_pop_up_view(panel.get());
    return another;
  }
  static constexpr NSPoint on_another = {260, 45};
};

TEST_F(EntryClosing, OfTwoThatWereOpenedWhileNobodyLookedOneIsLeft) {
  press(escape_key);
  ASSERT_FALSE(is_open());
  double_click(on_readout);
  double_click(on_readout);
  turn();
  ASSERT_TRUE(is_open());
  EXPECT_EQ(system.keyWindow(), &panel_window());
  press(tab_key);
  press(left_tab_key);
  type("440");
  press(enter_key);
  EXPECT_FALSE(is_open());
  EXPECT_EQ(readout->current_value(), 440.0);
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(EntryClosing, SoItIsWithTwoReadouts) {
  const auto another = add_another();
  press(escape_key);
  double_click(on_readout);
  double_click(on_another);
  turn();
  ASSERT_TRUE(is_open());
  type("0.5");
  press(enter_key);
  EXPECT_FALSE(is_open());
  EXPECT_EQ(another->current_value(), 0.5);
  EXPECT_EQ(readout->current_value(), 1000.1);
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(EntryClosing, ADoubleClickOnAnotherReadoutOpensItsEntry) {
  const auto another = add_another();
  double_click(on_another);
  turn();
  ASSERT_TRUE(is_open());
  EXPECT_EQ(panel->opener(), another.get());
  EXPECT_FALSE(another->is_selected()) << "the first click only ended the entry that was open";
}

TEST_F(EntryClosing, TheClickThatClosesItTurnsAndSelectsNothing) {
  const auto another = add_another();
  clock.advance(10);
  editor_window().press(on_another);
  editor_window().drag_to({260, 145});
  editor_window().release();
  turn();
  EXPECT_FALSE(is_open());
  EXPECT_FALSE(another->is_selected());
  EXPECT_EQ(another->current_value(), 0.0);
  clock.advance(10);
  editor_window().press(on_another);
  editor_window().drag_to({260, 145});
  editor_window().release();
  turn();
  EXPECT_TRUE(another->is_selected());
  EXPECT_EQ(another->current_value(), 0.5) << "100 of the 200 points that cross the range";
}

TEST_F(EntryClosing, WhatIsOnItsWayToACancelledEntryIsNotWritten) {
  HeadlessWindow& typed_into = panel_window();
  typed_into.type("440");
  clock.advance(10);
  editor_window().press(beside);
  typed_into.key_down(enter_key, "");
  turn();
  EXPECT_FALSE(is_open());
  EXPECT_EQ(readout->current_value(), 1000.1);
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(EntryClosing, AReadoutThatIsTakenOutOfItsWindowTakesItsEntryAlong) {
  type("440");
  panel_window().key_down(enter_key, "");
  readout->removeFromSuperview();
  EXPECT_FALSE(is_open());
  turn();
  EXPECT_TRUE(host->edited.empty());
  readout = nullptr;
  window->orderOut(nullptr);
  turn();
  window->makeKeyAndOrderFront(nullptr);
  turn();
  EXPECT_FALSE(is_open());
  EXPECT_EQ(system.keyWindow(), &editor_window());
}

TEST_F(EntryClosing, ItMayBeTakenOutAndReleasedWhileItsNumberIsReported) {
  const WeakRef<KV_Ondex_Parameter_Control_View> gone(readout.get());
  host->on_edited = [this] {
    readout->removeFromSuperview();
    readout = nullptr;
  };
  type("440");
  press(enter_key);
  EXPECT_EQ(host->edited.size(), 1U);
  EXPECT_FALSE(gone);
  EXPECT_FALSE(is_open());
  window->orderOut(nullptr);
  turn();
}

TEST_F(EntryClosing, TheWindowMayBeTakenOffTheScreenWhileTheNumberIsReported) {
  host->on_edited = [this] { window->orderOut(nullptr); };
  type("440");
  press(enter_key);
  EXPECT_EQ(readout->current_value(), 440.0);
  EXPECT_FALSE(is_open());
  window->makeKeyAndOrderFront(nullptr);
  turn();
  EXPECT_FALSE(is_open());
}

TEST_F(EntryClosing, AWindowThatGoesOffTheScreenBeforeTheEntryHasTheKeysTakesItAlong) {
  press(escape_key);
  double_click(on_readout);
  system.dispatch();
  window->close();
  window->makeKeyAndOrderFront(nullptr);
  turn();
  turn();
  EXPECT_FALSE(is_open());
  open();
}

TEST_F(EntryClosing, AReadoutThatGoesRightAfterItsEntryWasCancelledIsNotAskedAnyMore) {
  {
    const NSAutoreleasePool cycle;
    clock.advance(10);
    panel_window().key_down(escape_key, "");
    system.dispatch();
    // It waits for the end of the cycle.
    ASSERT_TRUE(is_open());
    readout->removeFromSuperview();
    readout = nullptr;
    window->orderOut(nullptr);
    panel_window().press({30, 30});
    system.dispatch();
  }
  turn();
  EXPECT_EQ(system.windows().size(), 1U);
}

}  // namespace
}  // namespace ondex
