// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "preferences_fixture.h"

namespace ondex::test {
namespace {

using namespace cocoa;
using testing::IsEmpty;
using testing::SizeIs;

TEST_F(PreferencesTest, TheCloseButtonClosesAndTheTitleReopens) {
  NSWindow* preferences_window = open_preferences().window();
  newest().requestClose();
  both_turn();
  EXPECT_FALSE(preferences_window->isVisible());
  EXPECT_EQ(open_preferences().window(), preferences_window);
  EXPECT_TRUE(newest().viewable());
  EXPECT_THAT(system.windows(), SizeIs(2));
}

class PreferencesClosing : public PreferencesTest {
 protected:
  PreferencesClosing() {
    open_preferences()._info_color_well->activate();
    both_turn();
    EXPECT_THAT(system.windows(), SizeIs(3));
  }
  HeadlessWindow& preferences_window() { return *system.windows()[1]; }
  HeadlessWindow& panel() { return *system.windows()[2]; }
};

TEST_F(PreferencesClosing, ThePreferencesTakeTheColourPanelWithThem) {
  preferences_window().requestClose();
  both_turn();
  EXPECT_FALSE(panel().viewable());
  EXPECT_FALSE(editor->_preferences_controller->_info_color_well->isActive());
}

TEST_F(PreferencesClosing, TheColourPanelAloneLeavesThePreferences) {
  panel().requestClose();
  both_turn();
  EXPECT_TRUE(preferences_window().viewable());
  EXPECT_FALSE(editor->_preferences_controller->_info_color_well->isActive());
  editor->_preferences_controller->_readout_color_well->activate();
  both_turn();
  EXPECT_TRUE(panel().viewable());
  EXPECT_THAT(system.windows(), SizeIs(3));
}

TEST_F(PreferencesClosing, TheEditorsWindowTakesEverythingWithIt) {
  window->close();
  EXPECT_FALSE(preferences_window().viewable());
  EXPECT_FALSE(panel().viewable());
  window = nullptr;
  EXPECT_THAT(system.windows(), IsEmpty());
  editor = nullptr;
}

TEST_F(PreferencesClosing, TheEditorTakesEverythingWithItBeforeItsWindow) {
  window->setContentView(make<NSView>(NSRect{}).get());
  editor = nullptr;
  EXPECT_THAT(system.windows(), SizeIs(1));
  both_turn();
  window = nullptr;
  EXPECT_THAT(system.windows(), IsEmpty());
}

TEST_F(PreferencesClosing, AnEditorThatMovesToAnotherWindowOpensThemThere) {
  HeadlessWindowSystem elsewhere(clock);
  auto next = make<NSWindow>(NSMakeRect(0, 0, 860, 352), NSTitledWindowMask);
  next->setWindowSystem(&elsewhere);
  next->orderFront(nullptr);
  window = nullptr;
  next->setContentView(editor.get());
  click_title(*editor);
  EXPECT_THAT(system.windows(), IsEmpty());
  EXPECT_THAT(elsewhere.windows(), SizeIs(2));
  next = nullptr;
  EXPECT_THAT(elsewhere.windows(), IsEmpty());
}

TEST_F(PreferencesClosing, ALostConnectionHarmsNobody) {
  system.loseConnection();
  both_turn();
  click_title(*editor);
  both_turn();
  EXPECT_FALSE(editor->_preferences_controller->window()->isVisible());
  editor = nullptr;
  window = nullptr;
}

TEST_F(PreferencesClosing, AHostThatDestroysTheEditorsWindowClosesThem) {
  system.windows()[0]->destroyFromOutside();
  both_turn();
  EXPECT_FALSE(preferences_window().viewable());
  EXPECT_FALSE(panel().viewable());
}

}  // namespace
}  // namespace ondex::test
