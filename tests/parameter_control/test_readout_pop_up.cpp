// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "entry_panel.h"
#include "gestures.h"
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"
#include "recording_host.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::edited_selector;
using test::EntryPanel;
using test::press;
using test::RecordingHost;
using test::turn_wheel;

class PopUpReadout : public KV_Ondex_Parameter_Control_View {
 public:
  using KV_Ondex_Parameter_Control_View::_pop_up_window;
  using KV_Ondex_Parameter_Control_View::KV_Ondex_Parameter_Control_View;
};

class ReadoutPopUp : public testing::Test {
 protected:
  ReadoutPopUp() {
    window->contentView()->addSubview(readout.get());
    readout->set_callback_onObject(edited_selector, host.get());
    readout->set_pop_up_view(panel.get());
    readout->set_values_minimum_maximum_default_value_scale_type(20, 20000, 20, 1);
    readout->set_current_value(1000.1);
  }
  KV_Ondex_Pop_Up_Window* opened() const { return readout->_pop_up_window.get(); }

  NSAutoreleasePool pool;
  Ref<RecordingHost> host = make<RecordingHost>();
  Ref<EntryPanel> panel = make<EntryPanel>();
  Ref<NSWindow> window = make<NSWindow>(NSMakeRect(300, 200, 400, 300), NSTitledWindowMask);
  Ref<PopUpReadout> readout = make<PopUpReadout>(NSMakeRect(40, 30, 132, 36));
};

TEST_F(ReadoutPopUp, ADoubleClickOpensThePanelOnTheReadoutsCorner) {
  press(*readout, 2);
  ASSERT_TRUE(opened());
  EXPECT_EQ(opened()->frame(), NSMakeRect(340, 230, 140, 50));
  EXPECT_EQ(opened()->contentView(), panel.get());
  EXPECT_EQ(opened()->parentWindow(), window.get());
  EXPECT_EQ(opened()->delegate(), readout.get());
  EXPECT_EQ(opened()->level(), 3);
  EXPECT_FALSE(opened()->isOpaque());
  EXPECT_TRUE(opened()->hasShadow());
  EXPECT_TRUE(opened()->canBecomeKeyWindow());
}

TEST_F(ReadoutPopUp, TheOpenPanelMovesWithTheEditorsWindow) {
  press(*readout, 2);
  window->setFrame_display(NSMakeRect(310, 180, 400, 300), false);
  ASSERT_TRUE(opened());
  EXPECT_EQ(opened()->frame(), NSMakeRect(350, 210, 140, 50));
}

TEST_F(ReadoutPopUp, ThePanelIsGivenValueBoundsAndTheReadoutToTell) {
  press(*readout, 2);
  EXPECT_EQ(panel->current_value(), static_cast<double>(1000.1F));
  EXPECT_EQ(panel->formatter->minimum(), 20.0);
  EXPECT_EQ(panel->formatter->maximum(), 20000.0);
  EXPECT_EQ(panel->action(), SEL("pop_up_done_editing:"));
  EXPECT_EQ(panel->opener(), readout.get());
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(ReadoutPopUp, AFinishedEntryIsStoredReportedAndClosesThePanel) {
  press(*readout, 2);
  const WeakRef<KV_Ondex_Pop_Up_Window> shown(opened());
  panel->finish(440);
  EXPECT_EQ(readout->current_value(), 440.0);
  ASSERT_EQ(host->edited.size(), 1U);
  EXPECT_EQ(host->edited.front(), readout.get());
  EXPECT_FALSE(opened());
  EXPECT_TRUE(window->childWindows().empty());
  EXPECT_FALSE(shown) << "the window goes at once";
  EXPECT_EQ(panel->window(), nullptr);
}

TEST_F(ReadoutPopUp, TheNumberIsStoredBeforeItIsReportedAndThePanelClosesAfter) {
  press(*readout, 2);
  double reported = 0;
  bool open_when_reported = false;
  host->on_edited = [&] {
    reported = readout->current_value();
    open_when_reported = opened() != nullptr;
  };
  panel->finish(440);
  EXPECT_EQ(reported, 440.0);
  EXPECT_TRUE(open_when_reported);
}

TEST_F(ReadoutPopUp, AnEntryOutsideTheRangeIsStoredAsTheNearestBound) {
  press(*readout, 2);
  panel->finish(50000);
  EXPECT_EQ(readout->current_value(), 20000.0);
  press(*readout, 2);
  panel->finish(-1);
  EXPECT_EQ(readout->current_value(), 20.0);
  EXPECT_EQ(host->edited.size(), 2U);
}

TEST_F(ReadoutPopUp, AnEntryPassesThroughSinglePrecision) {
  readout->set_values_minimum_maximum_default_value_scale_type(0, 1, 0, 0);
  press(*readout, 2);
  panel->finish(0.1);
  EXPECT_EQ(readout->current_value(), 0.10000000149011612);
}

TEST_F(ReadoutPopUp, ClickingElsewhereClosesThePanelAtTheEndOfTheTurn) {
  press(*readout, 2);
  const WeakRef<KV_Ondex_Pop_Up_Window> shown(opened());
  panel->set_current_value(440);
  {
    const NSAutoreleasePool turn;
    readout->windowDidResignKey(opened());
    EXPECT_FALSE(opened());
    EXPECT_TRUE(window->childWindows().empty());
    EXPECT_TRUE(shown);
    EXPECT_EQ(shown.get()->parentWindow(), nullptr);
  }
  EXPECT_FALSE(shown);
  EXPECT_EQ(readout->current_value(), 1000.1);
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(ReadoutPopUp, LosingTheKeysWithoutAPanelDoesNothing) {
  readout->windowDidResignKey(window.get());
  EXPECT_EQ(readout->current_value(), 1000.1);
  press(*readout, 2);
  panel->finish(440);
  readout->windowDidResignKey(nullptr);
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(ReadoutPopUp, TheWheelChangesTheValueUnderAnOpenPanel) {
  press(*readout, 2);
  turn_wheel(*readout, 0, 50);
  EXPECT_GT(readout->current_value(), 1900.0);
  EXPECT_EQ(panel->current_value(), static_cast<double>(1000.1F));
  EXPECT_TRUE(opened());
}

TEST_F(ReadoutPopUp, ThePanelOpensAgainAndForAnotherReadout) {
  const auto other = make<PopUpReadout>(NSMakeRect(40, 100, 132, 36));
  window->contentView()->addSubview(other.get());
  other->set_pop_up_view(panel.get());
  press(*readout, 2);
  panel->finish(440);
  press(*other, 2);
  ASSERT_TRUE(other->_pop_up_window);
  EXPECT_EQ(other->_pop_up_window->frame(), NSMakeRect(340, 300, 140, 50));
  EXPECT_EQ(other->_pop_up_window->contentView(), panel.get());
  panel->finish(0.25);
  EXPECT_EQ(other->current_value(), 0.25);
  EXPECT_EQ(readout->current_value(), 440.0);
}

TEST_F(ReadoutPopUp, OpeningTwiceShowsThePanelInANewWindowAndNoMoreInTheEarlier) {
  press(*readout, 2);
  const Ref<KV_Ondex_Pop_Up_Window> earlier(opened());
  press(*readout, 2);
  ASSERT_TRUE(opened());
  EXPECT_NE(opened(), earlier.get());
  EXPECT_EQ(opened()->contentView(), panel.get());
  EXPECT_NE(earlier->contentView(), panel.get());
  EXPECT_EQ(window->childWindows(), std::vector<Ref<NSWindow>>{opened()});
  // The earlier one has nothing to say about the entry any more.
  earlier->orderOut(nullptr);
  EXPECT_EQ(earlier->delegate(), nullptr);
  EXPECT_TRUE(opened());
}

TEST_F(ReadoutPopUp, OpeningForAnotherReadoutEndsTheEntryOfTheFirst) {
  const auto other = make<PopUpReadout>(NSMakeRect(40, 100, 132, 36));
  window->contentView()->addSubview(other.get());
  other->set_pop_up_view(panel.get());
  press(*readout, 2);
  press(*other, 2);
  EXPECT_FALSE(opened());
  ASSERT_TRUE(other->_pop_up_window);
  EXPECT_EQ(window->childWindows(), std::vector<Ref<NSWindow>>{other->_pop_up_window.get()});
  panel->finish(0.25);
  EXPECT_EQ(other->current_value(), 0.25);
  EXPECT_EQ(readout->current_value(), 1000.1);
  EXPECT_TRUE(window->childWindows().empty());
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(ReadoutPopUp, AnotherPanelLeavesNoneBehind) {
  press(*readout, 2);
  const auto other = make<EntryPanel>();
  readout->set_pop_up_view(other.get());
  press(*readout, 2);
  EXPECT_EQ(panel->window(), nullptr);
  EXPECT_EQ(opened()->contentView(), other.get());
  EXPECT_EQ(window->childWindows().size(), 1U);
}

TEST_F(ReadoutPopUp, SelectsNothingByItself) {
  press(*readout, 2);
  EXPECT_FALSE(readout->is_selected());
}

TEST_F(ReadoutPopUp, OutsideOfAnyWindowThereIsNowhereToOpen) {
  readout->removeFromSuperview();
  press(*readout, 2);
  EXPECT_FALSE(opened());
}

TEST_F(ReadoutPopUp, ANullPanelLeavesTheEarlierOne) {
  readout->set_pop_up_view(nullptr);
  press(*readout, 2);
  EXPECT_TRUE(opened());
}

TEST_F(ReadoutPopUp, ThePanelIsRetainedByEachReadoutAndKeepsNone) {
  EXPECT_EQ(panel->retainCount(), 2U);
  press(*readout, 2);
  panel->finish(440);
  readout->removeFromSuperview();
  const WeakRef<PopUpReadout> gone(readout.get());
  readout = nullptr;
  EXPECT_FALSE(gone);
  EXPECT_FALSE(panel->opener());
  EXPECT_EQ(panel->retainCount(), 1U);
}

TEST_F(ReadoutPopUp, AReadoutThatLeavesItsWindowTakesTheOpenPanelWithIt) {
  press(*readout, 2);
  const WeakRef<KV_Ondex_Pop_Up_Window> shown(opened());
  readout->removeFromSuperview();
  EXPECT_FALSE(shown);
  EXPECT_FALSE(opened());
  EXPECT_TRUE(window->childWindows().empty());
  EXPECT_EQ(panel->window(), nullptr);
  readout = nullptr;
  EXPECT_EQ(panel->retainCount(), 1U);
}

TEST_F(ReadoutPopUp, SoDoesOneThatMovesToAnotherWindow) {
  press(*readout, 2);
  const auto other = make<NSWindow>(NSMakeRect(0, 0, 400, 300), NSTitledWindowMask);
  other->setContentView(window->contentView());
  EXPECT_EQ(readout->window(), other.get());
  EXPECT_FALSE(opened());
  EXPECT_TRUE(window->childWindows().empty());
}

TEST_F(ReadoutPopUp, SoDoesOneWhoseWindowGoes) {
  press(*readout, 2);
  const WeakRef<KV_Ondex_Pop_Up_Window> shown(opened());
  window = nullptr;
  EXPECT_FALSE(shown);
  EXPECT_FALSE(opened());
  EXPECT_EQ(panel->window(), nullptr);
}

TEST_F(ReadoutPopUp, AReadoutMayBeTakenOutOfItsWindowAndReleasedWhileItsNumberIsReported) {
  press(*readout, 2);
  const WeakRef<KV_Ondex_Pop_Up_Window> shown(opened());
  const WeakRef<PopUpReadout> gone(readout.get());
  host->on_edited = [&] {
    readout->removeFromSuperview();
    readout = nullptr;
  };
  panel->finish(440);
  EXPECT_EQ(host->edited.size(), 1U);
  EXPECT_FALSE(gone);
  EXPECT_FALSE(shown);
  EXPECT_TRUE(window->childWindows().empty());
}

}  // namespace
}  // namespace ondex
