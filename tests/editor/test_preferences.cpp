// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "drawn_view.h"
#include "preferences_fixture.h"
#include "quartz/CGWindowLevel.h"

namespace ondex::test {
namespace {

using namespace cocoa;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// Opening

TEST_F(PreferencesTest, TheTitleOpensAWindowForTheEditor) {
  EXPECT_FALSE(editor->_preferences_controller);
  KV_Ondex_Preference_Controller& controller = open_preferences();
  EXPECT_THAT(system.windows(), SizeIs(2));
  EXPECT_EQ(newest().kind(), WindowKind::panel);
  EXPECT_EQ(newest().parent(), window->platformWindow());
  EXPECT_EQ(newest().title(), "KV Ondex Preferences");
  EXPECT_TRUE(newest().viewable());
  EXPECT_EQ(controller.windowNibName(), "KV_Ondex_Preferences");
  EXPECT_TRUE(controller._info_color_well && controller._readout_color_well && controller.panel_view);
  EXPECT_EQ(controller.window()->level(), CGWindowLevelForKey(kCGStatusWindowLevelKey));
  EXPECT_TRUE(controller.window()->isKeyWindow());
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(PreferencesTest, ASecondClickBringsTheSameWindowForward) {
  NSWindow* first = open_preferences().window();
  window->makeKeyAndOrderFront(nullptr);
  both_turn();
  EXPECT_FALSE(first->isKeyWindow());
  EXPECT_EQ(open_preferences().window(), first);
  EXPECT_TRUE(first->isKeyWindow());
  EXPECT_THAT(system.windows(), SizeIs(2));
}

TEST_F(PreferencesTest, WithoutAnyStoredColoursTheWellsShowTheDefaults) {
  for (const ColorPreference& preference : {info_color_preference, readout_color_preference}) {
    CFPreferencesSetValue(preference.key, nullptr, kCFPreferencesAnyApplication, kCFPreferencesCurrentUser,
                          kCFPreferencesCurrentHost);
  }
  synchronize();
  const KV_Ondex_Preference_Controller& controller = open_preferences();
  expect_color(*controller._info_color_well->color(), 0.0, 0.15, 0.8);
  expect_color(*controller._readout_color_well->color(), 0.8, 0.65, 0.2);
  EXPECT_EQ(on_disk(info_color_preference), std::nullopt) << "showing a default stores nothing";
}

TEST_F(PreferencesTest, WhatIsNoColourCountsAsMissingForItsWellOnly) {
  store_color(readout_color_preference, *rgb(1, 0, 0));
  CFPreferencesSetValue(info_color_preference.key, make<NSString>("blue").get(), kCFPreferencesAnyApplication,
                        kCFPreferencesCurrentUser, kCFPreferencesCurrentHost);
  const KV_Ondex_Preference_Controller& controller = open_preferences();
  expect_color(*controller._info_color_well->color(), 0.0, 0.15, 0.8);
  expect_color(*controller._readout_color_well->color(), 1, 0, 0);
}

TEST_F(PreferencesTest, WithoutItsInterfaceFileTheEditorGoesOn) {
  const TemporaryFolder empty;
  bundle = make<NSBundle>(empty.path().string(), bundle_classes());
  click_title(*editor);
  both_turn();
  EXPECT_THAT(log, testing::ElementsAre(HasSubstr("KV_Ondex_Preferences.xib")));
  EXPECT_THAT(system.windows(), SizeIs(1));
  bundle = make<NSBundle>(source_path("resources"), bundle_classes());
  open_preferences();
  EXPECT_THAT(system.windows(), SizeIs(2));
}

// Storing

TEST_F(PreferencesTest, ChangingOneWellWritesOnlyItsKeyAtOnce) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  const auto readout_before = on_disk(readout_color_preference);
  change(controller, controller._info_color_well, rgb(0.25, 0.5, 0.75).get());
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(0.25, 0.5, 0.75)));
  EXPECT_EQ(on_disk(readout_color_preference), readout_before);
  change(controller, controller._readout_color_well, rgb(1, 0, 0.5).get());
  EXPECT_EQ(on_disk(readout_color_preference), archived(*rgb(1, 0, 0.5)));
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(0.25, 0.5, 0.75)));
}

TEST_F(PreferencesTest, AKeyThatIsMissingStaysMissingWhenTheOtherChanges) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  CFPreferencesSetValue(readout_color_preference.key, nullptr, kCFPreferencesAnyApplication,
                        kCFPreferencesCurrentUser, kCFPreferencesCurrentHost);
  change(controller, controller._info_color_well, rgb(1, 1, 0).get());
  EXPECT_EQ(on_disk(readout_color_preference), std::nullopt);
}

TEST_F(PreferencesTest, AnyOtherSenderWritesNothing) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  const auto info = on_disk(info_color_preference);
  const auto readout = on_disk(readout_color_preference);
  const auto stranger = make<NSColorWell>(NSMakeRect(0, 0, 40, 20));
  stranger->setColor(rgb(1, 0, 0).get());
  controller.changeColor(stranger.get());
  controller.changeColor(editor.get());
  controller.changeColor(nullptr);
  EXPECT_EQ(on_disk(info_color_preference), info);
  EXPECT_EQ(on_disk(readout_color_preference), readout);
}

TEST_F(PreferencesTest, AWellThatIsNotConnectedIsAnyOtherSender) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  NSColorWell* well = controller._info_color_well;
  controller._info_color_well = nullptr;
  const auto info = on_disk(info_color_preference);
  change(controller, well, rgb(1, 0, 0).get());
  EXPECT_EQ(on_disk(info_color_preference), info);
}

TEST_F(PreferencesTest, OpenEditorsKeepTheirColoursAndLaterOnesShowTheNew) {
  const auto label = [](const KVOndexView& view) { return DrawnView(*view._left_label, 1); };
  const auto readout = [](const KVOndexView& view) {
    return DrawnView(*view._tremolo_left_rate_parameter, 1);
  };
  const DrawnView label_before = label(*editor);
  const DrawnView readout_before = readout(*editor);
  KV_Ondex_Preference_Controller& controller = open_preferences();
  change(controller, controller._info_color_well, rgb(1, 0, 0).get());
  change(controller, controller._readout_color_well, rgb(0, 1, 0).get());
  EXPECT_EQ(label(*editor), label_before);
  EXPECT_EQ(readout(*editor), readout_before);
  const Ref<KVOndexView> later = make_editor();
  EXPECT_FALSE(label(*later) == label_before);
  EXPECT_FALSE(readout(*later) == readout_before);
}

TEST_F(PreferencesTest, EditorsAndWindowsOpenedLaterShowWhatOtherProcessesStored) {
  PreferenceStore other_process(&preferences_file);
  other_process.setValue(info_color_preference.key, archived(*rgb(1, 0, 0)));
  ASSERT_TRUE(other_process.synchronize());
  expect_color(*open_preferences()._info_color_well->color(), 1, 0, 0);
  other_process.setValue(info_color_preference.key, archived(*rgb(0, 1, 0)));
  ASSERT_TRUE(other_process.synchronize());
  make_editor();
  expect_color(*preferred_color(info_color_preference), 0, 1, 0);
}

TEST_F(PreferencesTest, EachEditorHasAWindowOfItsOwnAndBothWriteTheSameKeys) {
  const Ref<KVOndexView> second = make_editor();
  const Ref<NSWindow> second_window = show(second.get());
  KV_Ondex_Preference_Controller& one = open_preferences();
  click_title(*second);
  KV_Ondex_Preference_Controller& other = *second->_preferences_controller;
  EXPECT_NE(one.window(), other.window());
  EXPECT_EQ(one.window()->ownerWindow(), window.get());
  EXPECT_EQ(other.window()->ownerWindow(), second_window.get());
  EXPECT_THAT(system.windows(), SizeIs(4));
  change(one, one._info_color_well, rgb(1, 0, 0).get());
  change(other, other._info_color_well, rgb(0, 0, 1).get());
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(0, 0, 1)));
  change(one, one._readout_color_well, rgb(0, 1, 0).get());
  EXPECT_EQ(on_disk(readout_color_preference), archived(*rgb(0, 1, 0)));
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(0, 0, 1)));
}

TEST_F(PreferencesTest, WhatIsPickedInTheColourPanelIsStoredWhileTheMouseMoves) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  NSColorWell* well = controller._readout_color_well;
  HeadlessWindow& preferences_window = newest();
  const NSRect place = well->convertRect_toView(well->bounds(), nullptr);
  preferences_window.press({NSMinX(place) + NSWidth(place) / 2, NSMinY(place) + NSHeight(place) / 2});
  preferences_window.release();
  both_turn();
  ASSERT_TRUE(well->isActive());
  HeadlessWindow& panel = newest();
  ASSERT_NE(&panel, &preferences_window);
  // The lower left corner of the square is black, the upper left one white.
  panel.press({16, 16});
  both_turn();
  settle_on_disk();
  EXPECT_EQ(on_disk(readout_color_preference), archived(*rgb(0, 0, 0)));
  panel.drag_to({16, 207});
  both_turn();
  settle_on_disk();
  EXPECT_EQ(on_disk(readout_color_preference), archived(*rgb(1, 1, 1)));
  panel.release();
  EXPECT_EQ(on_disk(info_color_preference), archived(*default_color(info_color_preference)));
}

}  // namespace
}  // namespace ondex::test
