// SPDX-License-Identifier: MIT
#include "lv2_trial.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "appkit/NSApplication.h"
#include "build_paths.h"
#include "checks.h"
#include "factory/KVOndexViewFactory.h"
#include "factory/bundle_classes.h"
#include "foundation/CFPreferences.h"
#include "foundation/NSBundle.h"
#include "hosting/audio_unit_host.h"
#include "seams.h"

namespace ondex::trial {

using namespace cocoa;

namespace {

constexpr int most_host_steps = 400;
constexpr int most_host_turns = 30;
constexpr size_t most_interfaces = 3;
/// A number for the host's window; nothing asks the window system about it.
constexpr uintptr_t host_window = 4711;

const LV2UI_Descriptor& descriptor() {
  return *lv2ui_descriptor(0);
}

template <typename Interface>
const Interface& extension(const char* uri) {
  return *static_cast<const Interface*>(descriptor().extension_data(uri));
}

/// As an editor of no host's has them.
std::vector<Place> known_places() {
  NSApplicationLoad();
  const NSAutoreleasePool pool;
  CFRunLoop loop;
  const CFRunLoopScope scope(loop);
  const auto bundle = make<NSBundle>(test::source_path("resources"), bundle_classes());
  const EffectInstance effect(effect_parameters());
  const auto factory = make<KVOndexViewFactory>();
  const Ref<NSView> view(factory->uiViewForAudioUnit_withSize(effect.audio_unit(), {}));
  const auto* editor = dynamic_cast<const KVOndexView*>(view.get());
  return editor ? places_of(*editor) : std::vector<Place>();
}

bool is_there(const HeadlessWindowSystem* display) {
  return std::find(displays().begin(), displays().end(), display) != displays().end();
}

}  // namespace

Lv2Trial::Lv2Trial(Choices& choices, Trace& trace) : choices_(choices), trace_(trace) {
  HeadlessWindowSystem::clearPasteboards();
  CFPreferencesSynchronize(kCFPreferencesAnyApplication, kCFPreferencesCurrentUser,
                           kCFPreferencesCurrentHost);
  instantiate();
}

Lv2Trial::~Lv2Trial() {
  may_call_from_inside_ = false;
  for (const auto& ui : interfaces_) {
    if (ui->handle)
      descriptor().cleanup(std::exchange(ui->handle, nullptr));
  }
}

void Lv2Trial::run() {
  for (int steps = 0; steps < most_host_steps && choices_.any() && !trace_.failed(); ++steps)
    step();
  if (!trace_.failed())
    end();
}

Lv2Interface* Lv2Trial::choose() {
  std::vector<Lv2Interface*> there;
  for (const auto& ui : interfaces_) {
    if (ui->handle)
      there.push_back(ui.get());
  }
  return there.empty() ? nullptr : there[choices_.below(static_cast<unsigned>(there.size()))];
}

void Lv2Trial::step() {
  Lv2Interface* const ui = choose();
  if (!ui)
    return instantiate();
  switch (choices_.below(8)) {
    case 0:
    case 1:
    case 2:
    case 3:
      if (seen_windows(*ui->display).empty() && choices_.oneOf(2)) {
        show(*ui, true);
        break;
      }
      ui->user_acted = true;
      ui->user->act(*ui->display);
      break;
    case 4:
    case 5:
      pass(*ui);
      break;
    case 6: {
      const double gap = std::array{0.1, 0.7, 3.0}.at(choices_.below(3));
      trace_.note("%g s pass", gap);
      machine_clock().advance(gap);
      break;
    }
    default:
      actAsHost(*ui);
  }
  checkCleanedUp();
}

// The host calls

void Lv2Trial::instantiate() {
  if (static_cast<size_t>(std::count_if(interfaces_.begin(), interfaces_.end(), [](const auto& each) {
        return each->handle != nullptr;
      })) == most_interfaces) {
    return;
  }
  static const std::vector<Place> places = known_places();
  auto& ui = *interfaces_.emplace_back(std::make_unique<Lv2Interface>());
  ui.trial = this;
  ui.number = static_cast<unsigned>(interfaces_.size() - 1);
  ui.user = std::make_unique<User>(choices_, trace_);
  ui.user->know(places);
  ui.offers_touch = !choices_.oneOf(8);
  const bool embeds = !choices_.oneOf(4);

  LV2UI_Touch touch_data = {&ui, touch};
  LV2UI_Resize resize_data = {&ui, announce};
  const LV2_Feature parent_feature = {LV2_UI__parent, std::bit_cast<void*>(host_window)};
  const LV2_Feature touch_feature = {LV2_UI__touch, &touch_data};
  const LV2_Feature resize_feature = {LV2_UI__resize, &resize_data};
  LV2_URID_Map map_data = {this, map};
  LV2_Log_Log log_data = {this, print, printList};
  const LV2_Feature map_feature = {LV2_URID__map, &map_data};
  const LV2_Feature log_feature = {LV2_LOG__log, &log_data};
  std::vector<const LV2_Feature*> features = {&resize_feature, &map_feature, &log_feature};
  if (embeds)
    features.push_back(&parent_feature);
  if (ui.offers_touch)
    features.push_back(&touch_feature);
  features.push_back(nullptr);
  LV2UI_Widget widget = nullptr;
  trace_.note("the host opens interface %u%s", ui.number, embeds ? "" : ", not embedded");
  const std::string bundle = test::source_path("");
  ui.handle = descriptor().instantiate(&descriptor(), plugin_uri, bundle.c_str(), write, &ui, &widget,
                                       features.data());
  if (!ui.handle)
    return trace_.fault("no interface is made");
  ui.display = displays().back();
  if (!embeds)
    show(ui, true);
}

void Lv2Trial::cleanUp(Lv2Interface& ui) {
  trace_.note("the host cleans up interface %u", ui.number);
  descriptor().cleanup(std::exchange(ui.handle, nullptr));
  ui.cleaned_up = true;
}

void Lv2Trial::sayValue(Lv2Interface& ui, uint32_t port, float value) {
  trace_.note("the host tells interface %u that port %u is %g", ui.number, port, static_cast<double>(value));
  descriptor().port_event(ui.handle, port, sizeof value, 0, &value);
}

void Lv2Trial::sayRandomValue(Lv2Interface& ui) {
  const unsigned parameter = choices_.below(parameter_count);
  sayValue(ui, parameter_ports.at(parameter),
           static_cast<float>(choices_.share() * parameter_table.at(parameter).maximum));
}

bool Lv2Trial::idle(Lv2Interface& ui) {
  const bool goes_on = extension<LV2UI_Idle_Interface>(LV2_UI__idleInterface).idle(ui.handle) == 0;
  return goes_on;
}

void Lv2Trial::show(Lv2Interface& ui, bool shown) {
  trace_.note("the host %s interface %u", shown ? "shows" : "hides", ui.number);
  const auto& functions = extension<LV2UI_Show_Interface>(LV2_UI__showInterface);
  if (shown) {
    functions.show(ui.handle);
  } else {
    functions.hide(ui.handle);
  }
}

void Lv2Trial::resize(Lv2Interface& ui) {
  const int width = static_cast<int>(1000 * choices_.share());
  const int height = static_cast<int>(500 * choices_.share());
  trace_.note("the host resizes interface %u to %d x %d", ui.number, width, height);
  extension<LV2UI_Resize>(LV2_UI__resize).ui_resize(ui.handle, width, height);
}

void Lv2Trial::actAsHost(Lv2Interface& ui) {
  switch (choices_.below(10)) {
    case 0:
      return cleanUp(ui);
    case 1:
    case 2:
      return instantiate();
    case 3:
      return show(ui, false);
    case 4:
      return show(ui, true);
    case 5:
      return resize(ui);
    case 6:
    case 7:
      return sayRandomValue(ui);
    default:
      return changeWindow(ui);
  }
}

void Lv2Trial::changeWindow(const Lv2Interface& ui) {
  const auto& windows = ui.display->windows();
  if (windows.empty())
    return;
  HeadlessWindow& window = *windows[choices_.below(static_cast<unsigned>(windows.size()))];
  switch (choices_.below(8)) {
    case 0:
      trace_.note("a window of interface %u is destroyed from outside", ui.number);
      return window.destroyFromOutside();
    case 1:
      trace_.note("interface %u loses its display", ui.number);
      return ui.display->loseConnection();
    case 2:
      trace_.note("a window of interface %u is scaled", ui.number);
      return window.setScale(display_scale * (1 + choices_.share()));
    case 3:
      trace_.note("a window of interface %u is moved", ui.number);
      return window.move({static_cast<CGFloat>(500 * choices_.share()), 50});
    case 4:
      trace_.note("a window of interface %u is resized", ui.number);
      return window.resize({static_cast<CGFloat>(900 * choices_.share()), 200});
    default:
      trace_.note("a window of interface %u is covered or uncovered", ui.number);
      return window.setObscured(window.viewable());
  }
}

// Time

void Lv2Trial::pass(Lv2Interface& ui) {
  switch (choices_.below(4)) {
    case 0:
      trace_.note("one idle call to interface %u", ui.number);
      idle(ui);
      return;
    case 1:
      trace_.note("idle calls to interface %u after 0.4 s", ui.number);
      settle(ui);
      if (!ui.handle)
        return;
      machine_clock().advance(0.4);
      settle(ui);
      // Those of the wheel have come to rest by now, and those of a button end with it.
      if (ui.handle && !ui.user->holds())
        trace_.expect(std::ranges::count(ui.touched, true) == 0, "a gesture has no end");
      return;
    default:
      trace_.note("idle calls to interface %u", ui.number);
      settle(ui);
  }
}

/// From inside one of its own calls nothing is told: there it is only called.
void Lv2Trial::settle(Lv2Interface& ui) {
  int turns = 0;
  do {
    idle(ui);
  } while (ui.handle && inside_ == 0 && ui.display->hasQueued() && ++turns < most_host_turns);
  if (!ui.handle || inside_ > 0)
    return;
  trace_.expect(!ui.display->hasQueued(), "the windows never come to rest");
  ui.user_acted = false;
  check_windows(*ui.display, trace_);
}

// The end

void Lv2Trial::checkCleanedUp() {
  for (const auto& ui : interfaces_) {
    if (ui->cleaned_up && ui->display) {
      trace_.expect(!is_there(ui->display), "cleanup leaves the connection to the display open");
      trace_.expect(std::ranges::count(ui->touched, true) == 0, "cleanup leaves a gesture open");
      // Its address may be another one's by and by.
      ui->display = nullptr;
    }
  }
}

void Lv2Trial::end() {
  may_call_from_inside_ = choices_.oneOf(2);
  if (const auto cleaned = choose(); cleaned && may_call_from_inside_)
    cleanUp(*cleaned);
  may_call_from_inside_ = false;
  for (const auto& ui : interfaces_) {
    if (!ui->handle)
      continue;
    settle(*ui);
    if (ui->handle && choices_.oneOf(2)) {
      dismiss_panels(*ui->display, *ui->user, choices_, trace_, [&] {
        ui->user_acted = true;
        if (ui->handle)
          settle(*ui);
      });
    }
    if (trace_.failed())
      return;
    if (ui->handle)
      cleanUp(*ui);
  }
  checkCleanedUp();
  trace_.expect(displays().empty(), "a connection to the display is left open");
}

}  // namespace ondex::trial
