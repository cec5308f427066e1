// SPDX-License-Identifier: MIT
#include "editor/KV_Ondex_Preference_Controller.h"

#include "editor/private/color_preferences.h"
#include "quartz/CGWindowLevel.h"

namespace ondex {

using namespace cocoa;

namespace {

using Controller = KV_Ondex_Preference_Controller;

constexpr WeakOutlet preference_weak_outlets[] = {
    weak_outlet<&Controller::_info_color_well>("_info_color_well"),
    weak_outlet<&Controller::_readout_color_well>("_readout_color_well"),
    weak_outlet<&Controller::panel_view>("panel_view"),
};
constexpr auto preference_outlets = outlets_of(preference_weak_outlets);

constexpr SEL change_ended_selector("colorChangeEnded:");

constexpr Action preference_actions[] = {
    {SEL("changeColor:"), MethodAction<&Controller::changeColor>::perform},
    {change_ended_selector, MethodAction<&Controller::colorChangeEnded>::perform},
};

/// In seconds, of a colour that the user is still changing: 0.2 with the time that a host may let pass
/// between two of its idle calls.
constexpr double longest_unwritten = 0.15;

void prepare(NSColorWell* well, const ColorPreference& preference) {
  send(well, &NSColorWell::setColor, preferred_color(preference).get());
  send(well, &NSColorWell::setEndAction, change_ended_selector);
}

}  // namespace

const Class KV_Ondex_Preference_Controller::class_ = {
    .name = "KV_Ondex_Preference_Controller",
    .superclass = &NSWindowController::class_,
    .init = [] { return Ref<NSObject>(make<KV_Ondex_Preference_Controller>()); },
    .outlets = preference_outlets,
    .actions = preference_actions};

KV_Ondex_Preference_Controller::KV_Ondex_Preference_Controller()
    : NSWindowController("KV_Ondex_Preferences"), writing_(&synchronize_color_preferences) {}

KV_Ondex_Preference_Controller::~KV_Ondex_Preference_Controller() {
  // A drag ends here, while there is still somebody to hear of it.
  close();
  colorChangeEnded(nullptr);
}

void KV_Ondex_Preference_Controller::windowDidLoad() {
  // By now a well that nobody keeps has gone, too.
  log_missing_outlets(*this, preference_weak_outlets);
  refresh_color_preferences();
  prepare(_info_color_well, info_color_preference);
  prepare(_readout_color_well, readout_color_preference);
  // A host's own panels float; the window must not get lost behind them.
  window()->setLevel(CGWindowLevelForKey(kCGStatusWindowLevelKey));
}

void KV_Ondex_Preference_Controller::changeColor(NSObject* sender) {
  const auto* well = dynamic_cast<NSColorWell*>(sender);
  if (!well)
    return;
  if (well == _info_color_well) {
    store_color(info_color_preference, *well->color());
  } else if (well == _readout_color_well) {
    store_color(readout_color_preference, *well->color());
  } else {
    return;
  }
  if (well->isPicking()) {
    writing_.tryWithin(longest_unwritten);
  } else {
    writing_.tryNow();
  }
}

void KV_Ondex_Preference_Controller::colorChangeEnded(NSObject*) {
  if (writing_.isWaiting())
    writing_.tryNow();
}

}  // namespace ondex
