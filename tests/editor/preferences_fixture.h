// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "appkit/NSColorWell.h"
#include "appkit/NSWindow.h"
#include "editor/private/color_preferences.h"
#include "editor_fixture.h"
#include "foundation/NSArchiver.h"
#include "foundation/private/preference_store.h"
#include "foundation/private/preferences_location.h"
#include "gestures.h"
#include "windows/headless.h"

namespace ondex::test {

inline cocoa::Ref<cocoa::NSColor> rgb(double r, double g, double b) {
  return cocoa::NSColor::colorWithDeviceRed_green_blue_alpha(
      static_cast<cocoa::CGFloat>(r), static_cast<cocoa::CGFloat>(g), static_cast<cocoa::CGFloat>(b), 1);
}

inline void expect_color(const cocoa::NSColor& color, double r, double g, double b) {
  EXPECT_NEAR(static_cast<double>(color.redComponent()), r, 1e-6);
  EXPECT_NEAR(static_cast<double>(color.greenComponent()), g, 1e-6);
  EXPECT_NEAR(static_cast<double>(color.blueComponent()), b, 1e-6);
}

/// What a process that has read nothing yet finds.
inline std::optional<cocoa::PropertyListValue> on_disk(const ColorPreference& preference) {
  cocoa::PreferenceStore fresh(&cocoa::preferences_file);
  return fresh.value(preference.key);
}

inline cocoa::PropertyListValue archived(const cocoa::NSColor& color) {
  const auto data = cocoa::NSArchiver::archivedDataWithRootObject(color);
  return std::vector<uint8_t>(data->bytes().begin(), data->bytes().end());
}

/// An editor in a window of a headless window system, from which its preferences are opened.
class PreferencesTest : public EditorFixture {
 protected:
  PreferencesTest() {
    open();
    window = show(editor.get());
  }
  cocoa::Ref<cocoa::NSWindow> show(cocoa::NSView* view) {
    auto made =
        cocoa::make<cocoa::NSWindow>(cocoa::NSMakeRect(100, 100, 860, 352), cocoa::NSTitledWindowMask);
    made->setWindowSystem(&system);
    made->setContentView(view);
    made->orderFront(nullptr);
    both_turn();
    return made;
  }
  void both_turn() {
    system.dispatch();
    turn();
  }
  static void click_title(KVOndexView& view) { press(*view._main_title, 1); }
  KV_Ondex_Preference_Controller& open_preferences() {
    click_title(*editor);
    both_turn();
    return *editor->_preferences_controller;
  }
  /// A change of a well, as its panel's user makes it.
  static void change(KV_Ondex_Preference_Controller& controller, cocoa::NSColorWell* well,
                     cocoa::NSColor* color) {
    well->setColor(color);
    controller.changeColor(well);
  }
  /// Lets the time pass in which changes made with the mouse held are written.
  void settle_on_disk() {
    clock.advance(0.2);
    both_turn();
  }
  cocoa::HeadlessWindow& newest() { return *system.newestWindow(); }

  cocoa::HeadlessWindowSystem system{clock};
  cocoa::Ref<cocoa::NSWindow> window;
};

}  // namespace ondex::test
