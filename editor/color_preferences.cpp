// SPDX-License-Identifier: MIT
#include "editor/private/color_preferences.h"

#include "foundation/CFPreferences.h"
#include "foundation/NSArchiver.h"
#include "foundation/NSData.h"

namespace ondex {

using namespace cocoa;

namespace {

Ref<NSObject> stored_value(const ColorPreference& preference) {
  return CFPreferencesCopyValue(preference.key, kCFPreferencesAnyApplication, kCFPreferencesCurrentUser,
                                kCFPreferencesCurrentHost);
}

bool store_defaults() {
  store_color(info_color_preference, *default_color(info_color_preference));
  store_color(readout_color_preference, *default_color(readout_color_preference));
  if (synchronize_color_preferences())
    return true;
  forget_unwritten_preference(info_color_preference.key);
  forget_unwritten_preference(readout_color_preference.key);
  return false;
}

}  // namespace

Ref<NSColor> default_color(const ColorPreference& preference) {
  return NSColor::colorWithDeviceRed_green_blue_alpha(
      static_cast<CGFloat>(preference.red), static_cast<CGFloat>(preference.green),
      static_cast<CGFloat>(preference.blue), static_cast<CGFloat>(preference.alpha));
}

Ref<NSColor> preferred_color(const ColorPreference& preference) {
  static const Class* const archived_classes[] = {&NSColor::class_};
  const Ref<NSObject> value = stored_value(preference);
  const auto* data = dynamic_cast<const NSData*>(value.get());
  if (!data)
    return default_color(preference);
  const Ref<NSObject> object = NSUnarchiver::unarchiveObjectWithData(*data, archived_classes);
  auto* color = dynamic_cast<NSColor*>(object.get());
  return color ? Ref<NSColor>(color) : default_color(preference);
}

void store_color(const ColorPreference& preference, const NSColor& color) {
  CFPreferencesSetValue(preference.key, NSArchiver::archivedDataWithRootObject(color).get(),
                        kCFPreferencesAnyApplication, kCFPreferencesCurrentUser, kCFPreferencesCurrentHost);
}

bool synchronize_color_preferences() {
  return CFPreferencesSynchronize(kCFPreferencesAnyApplication, kCFPreferencesCurrentUser,
                                  kCFPreferencesCurrentHost);
}

void refresh_color_preferences() {
  // With nothing to write, synchronising drops what was read.
  synchronize_color_preferences();
}

bool seed_color_preferences() {
  refresh_color_preferences();
  return (stored_value(info_color_preference) && stored_value(readout_color_preference)) || store_defaults();
}

bool seed_empty_color_preferences() {
  refresh_color_preferences();
  return stored_value(info_color_preference) || stored_value(readout_color_preference) || store_defaults();
}

}  // namespace ondex
