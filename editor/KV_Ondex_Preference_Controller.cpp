#include "editor/KV_Ondex_Preference_Controller.h"

#include "editor/color_preferences.h"
#include "quartz/CGWindowLevel.h"

namespace ondex {

using namespace cocoa;

namespace {

using Controller = KV_Ondex_Preference_Controller;

constexpr WeakOutlet weak_outlets[] = {
    weak_outlet<&Controller::_info_color_well>("_info_color_well"),
    weak_outlet<&Controller::_readout_color_well>("_readout_color_well"),
    weak_outlet<&Controller::panel_view>("panel_view"),
};
constexpr auto outlets = outlets_of(weak_outlets);

constexpr Action actions[] = {{SEL("changeColor:"), MethodAction<&Controller::changeColor>::perform}};

void show_stored_color(NSColorWell* well, const ColorPreference& preference) {
  send(well, &NSColorWell::setColor, preferred_color(preference).get());
}

}  // namespace

const Class KV_Ondex_Preference_Controller::class_ = {
    .name = "KV_Ondex_Preference_Controller",
    .superclass = &NSWindowController::class_,
    .init = [] { return Ref<NSObject>(make<KV_Ondex_Preference_Controller>()); },
    .outlets = outlets,
    .actions = actions};

KV_Ondex_Preference_Controller::KV_Ondex_Preference_Controller()
    : NSWindowController("KV_Ondex_Preferences") {}

void KV_Ondex_Preference_Controller::windowDidLoad() {
  // By now a well that nobody keeps has gone, too.
  log_missing_outlets(*this, weak_outlets);
  refresh_color_preferences();
  show_stored_color(_info_color_well, info_color_preference);
  show_stored_color(_readout_color_well, readout_color_preference);
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
  synchronize_color_preferences();
}

}  // namespace ondex
