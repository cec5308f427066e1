// SPDX-License-Identifier: MIT
#include "editor/private/color_preferences.h"
#include "editor_fixture.h"
#include "foundation/NSArchiver.h"
#include "foundation/NSString.h"

namespace ondex::test {
namespace {

using namespace cocoa;

class ColorsTest : public EditorFixture {
 protected:
  static void store(const ColorPreference& preference, NSObject* value) {
    CFPreferencesSetValue(preference.key, value, kCFPreferencesAnyApplication, kCFPreferencesCurrentUser,
                          kCFPreferencesCurrentHost);
  }
  static Ref<NSObject> stored(const ColorPreference& preference) {
    return CFPreferencesCopyValue(preference.key, kCFPreferencesAnyApplication, kCFPreferencesCurrentUser,
                                  kCFPreferencesCurrentHost);
  }
  static Ref<NSColor> red() { return NSColor::colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1); }
  static void expect_color(const NSColor& color, double r, double g, double b) {
    EXPECT_NEAR(static_cast<double>(color.redComponent()), r, 1e-6);
    EXPECT_NEAR(static_cast<double>(color.greenComponent()), g, 1e-6);
    EXPECT_NEAR(static_cast<double>(color.blueComponent()), b, 1e-6);
  }
};

TEST_F(ColorsTest, WithoutAnyTheDefaultsAreStoredAndUsed) {
  EXPECT_FALSE(stored(info_color_preference));
  open();
  EXPECT_TRUE(stored(info_color_preference));
  EXPECT_TRUE(stored(readout_color_preference));
  expect_color(*preferred_color(info_color_preference), 0.0, 0.15, 0.8);
  expect_color(*preferred_color(readout_color_preference), 0.8, 0.65, 0.2);
}

TEST_F(ColorsTest, TheDefaultsReachTheDisk) {
  open();
  synchronize();  // nothing is pending: the next read comes from disk
  EXPECT_TRUE(stored(info_color_preference));
}

TEST_F(ColorsTest, OneAloneIsOverwrittenWithBothDefaults) {
  store(readout_color_preference, NSArchiver::archivedDataWithRootObject(*red()).get());
  open();
  expect_color(*preferred_color(readout_color_preference), 0.8, 0.65, 0.2);
  EXPECT_TRUE(stored(info_color_preference));
}

TEST_F(ColorsTest, BothStoredAreKept) {
  store_color(info_color_preference, *red());
  store_color(readout_color_preference, *NSColor::colorWithCalibratedWhite_alpha(1, 1));
  open();
  expect_color(*preferred_color(info_color_preference), 1, 0, 0);
  expect_color(*preferred_color(readout_color_preference), 1, 1, 1);
}

TEST_F(ColorsTest, WhatIsNoArchivedColourFallsBackForThatColourOnly) {
  store_color(info_color_preference, *red());
  const Ref<NSObject> no_colors[] = {make<NSString>("blue"), make<NSData>(std::vector<uint8_t>{1, 2, 3}),
                                     make<NSData>(std::vector<uint8_t>{}),
                                     NSArchiver::archivedDataWithRootObject(*make<NSObject>())};
  for (const Ref<NSObject>& value : no_colors) {
    store(readout_color_preference, value.get());
    expect_color(*preferred_color(readout_color_preference), 0.8, 0.65, 0.2);
    expect_color(*preferred_color(info_color_preference), 1, 0, 0);
  }
}

}  // namespace
}  // namespace ondex::test
