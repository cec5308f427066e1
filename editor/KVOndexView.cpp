// SPDX-License-Identifier: MIT
#include "editor/KVOndexView.h"

#include "editor/parameter_table.h"
#include "editor/private/color_preferences.h"
#include "foundation/CFRunLoop.h"
#include "foundation/NSLog.h"

namespace ondex {

using namespace cocoa;

namespace {

using Title = KV_Ondex_Button_View;
using Knob = KV_Ondex_Big_Knob_View;
using Label = KV_Ondex_Label_View;
using Readout = KV_Ondex_Parameter_Control_View;
using Graph = KV_FM_Oscillator_Response_View;

constexpr WeakOutlet weak_outlets[] = {
    weak_outlet<&KVOndexView::_main_title>("_main_title"),
    weak_outlet<&KVOndexView::_knob>("_knob"),
    weak_outlet<&KVOndexView::_tremolo_label>("_tremolo_label"),
    weak_outlet<&KVOndexView::_left_label>("_left_label"),
    weak_outlet<&KVOndexView::_right_label>("_right_label"),
    weak_outlet<&KVOndexView::_tremolo_left_rate_parameter>("_tremolo_left_rate_parameter"),
    weak_outlet<&KVOndexView::_tremolo_right_rate_parameter>("_tremolo_right_rate_parameter"),
    weak_outlet<&KVOndexView::_tremolo_depth_parameter>("_tremolo_depth_parameter"),
    weak_outlet<&KVOndexView::_tremolo_left_fm_mod_frequency_parameter>(
        "_tremolo_left_fm_mod_frequency_parameter"),
    weak_outlet<&KVOndexView::_tremolo_left_fm_mod_index_parameter>("_tremolo_left_fm_mod_index_parameter"),
    weak_outlet<&KVOndexView::_tremolo_right_fm_mod_frequency_parameter>(
        "_tremolo_right_fm_mod_frequency_parameter"),
    weak_outlet<&KVOndexView::_tremolo_right_fm_mod_index_parameter>("_tremolo_right_fm_mod_index_parameter"),
    weak_outlet<&KVOndexView::_vibrato_left_oscillator_response_view>(
        "_vibrato_left_oscillator_response_view"),
    weak_outlet<&KVOndexView::_vibrato_right_oscillator_response_view>(
        "_vibrato_right_oscillator_response_view"),
    weak_outlet<&KVOndexView::_text_entry_popup_view>("_text_entry_popup_view"),
    weak_outlet<&KVOndexView::_effect_box>("_effect_box"),
};
constexpr auto outlets = outlets_of(weak_outlets);

constexpr SEL knob_callback_selector("knob_callback:");
constexpr SEL value_edited_selector("parameter_view_value_edited:");
constexpr SEL selected_selector("parameter_view_selected:");

constexpr SEL preferences_selector("do_preferences_panel:");

constexpr Action actions[] = {
    {knob_callback_selector, MethodAction<&KVOndexView::knob_callback>::perform},
    {value_edited_selector, MethodAction<&KVOndexView::parameter_view_value_edited>::perform},
    {selected_selector, MethodAction<&KVOndexView::parameter_view_selected>::perform},
    {preferences_selector, MethodAction<&KVOndexView::do_preferences_panel>::perform},
    {SEL("menu_callback:"), MethodAction<&KVOndexView::menu_callback>::perform},
};

/// Shortest time between two rounds of events, and the time within which two changes of one parameter are
/// one.
constexpr Float32 notification_interval = 0.05F;
constexpr Float32 value_change_granularity = 0.05F;

void log_outlet(const WeakOutlet& logged, const char* finding) {
  NSLog("KVOndexView: outlet %s %s", std::string(logged.outlet.name).c_str(), finding);
}

Ref<NSColor> device_rgb(double red, double green, double blue, double alpha) {
  return NSColor::colorWithDeviceRed_green_blue_alpha(static_cast<CGFloat>(red), static_cast<CGFloat>(green),
                                                      static_cast<CGFloat>(blue),
                                                      static_cast<CGFloat>(alpha));
}

AudioUnitParameter global_parameter(AudioUnit unit, uint32_t number) {
  return {unit, number, kAudioUnitScope_Global, 0};
}

AudioUnitEvent value_change_event(AudioUnit unit, uint32_t number) {
  AudioUnitEvent event = {};
  event.mEventType = kAudioUnitEvent_ParameterValueChange;
  event.mArgument.mParameter = global_parameter(unit, number);
  return event;
}

}  // namespace

const Class KVOndexView::class_ = {
    .name = "KVOndexView",
    .superclass = &NSView::class_,
    .initWithFrame = [](NSRect frame) { return Ref<NSObject>(make<KVOndexView>(frame)); },
    .outlets = outlets,
    .actions = actions};

KVOndexView::KVOndexView(NSRect frame) : NSView(frame), seeding_(&seed_empty_color_preferences) {
  constexpr double until_next_try = 0.2;
  if (!seed_color_preferences())
    seeding_.tryWithin(until_next_try);
}

KVOndexView::~KVOndexView() {
  _removeListeners();
}

void KVOndexView::awakeFromNib() {
  check_outlets();
  const Ref<NSColor> info_color = preferred_color(info_color_preference);
  const Ref<NSColor> readout_color = preferred_color(readout_color_preference);
  const Ref<NSColor> title_color = device_rgb(0.95, 0.95, 0.95, 0.67);
  const Ref<NSColor> curve_color = device_rgb(0.9, 0.62, 0.5, 0.666);

  send(_main_title, &Title::set_callback_onObject, preferences_selector, this);
  send(_main_title, &Title::set_colors_for_info, title_color.get());
  send(_main_title, &Title::set_description, make<NSString>("KV Ondex").get());

  configure_graph(_vibrato_left_oscillator_response_view, readout_color.get(), curve_color.get());
  configure_graph(_vibrato_right_oscillator_response_view, readout_color.get(), curve_color.get());

  send(_knob, &Knob::set_callback_onObject, knob_callback_selector, this);
  send(_knob, &Knob::set_values_minimum_maximum_default_value_scale_type, 0.0, 20.0, 0.0, scale_type_linear);
  send(_knob, &Knob::set_current_value, 0.0);

  configure_label(_tremolo_label, "Tremolo", info_color.get());
  configure_label(_left_label, "Left", info_color.get());
  configure_label(_right_label, "Right", info_color.get());

  for (const ParameterDescription& parameter : parameter_table) {
    configure_readout(parameter, readout_color.get(), info_color.get());
    if (parameter.initially_selected)
      parameter_view_selected(readout(parameter.number));
  }

  // Adding again restacks: the box above everything else that the interface file placed, the knob on top.
  addSubview(_effect_box);
  addSubview(_main_title);
  addSubview(_knob);
  report_outlets_outside();
  setNeedsDisplay(true);
}

void KVOndexView::check_outlets() {
  log_missing_outlets(*this, weak_outlets);
  disconnect_where([this](const NSView* view) { return isDescendantOf(view); },
                   "is connected to a view around the editor, which cannot be a control.");
  // The readouts keep the entry, and a control outside the editor keeps the editor.
  const NSView* entry = _text_entry_popup_view;
  disconnect_where(
      [entry](const NSView* view) { return entry && view != entry && view->isDescendantOf(entry); },
      "is connected to a view in the numeric entry, which cannot be a control.");
}

template <typename Condition>
void KVOndexView::disconnect_where(const Condition& condition, const char* finding) {
  for (const WeakOutlet& each : weak_outlets) {
    const auto* view = dynamic_cast<const NSView*>(each.get(*this));
    if (!view || !condition(view))
      continue;
    log_outlet(each, finding);
    each.outlet.set(*this, nullptr);
  }
}

void KVOndexView::report_outlets_outside() const {
  for (const WeakOutlet& each : weak_outlets) {
    const auto* view = dynamic_cast<const NSView*>(each.get(*this));
    // The readouts keep the panel, which lies in no view.
    if (view && view != _text_entry_popup_view && !view->isDescendantOf(this))
      log_outlet(each, "is connected to a view outside the editor, which does not keep it.");
  }
}

void KVOndexView::configure_graph(KV_FM_Oscillator_Response_View* graph, NSColor* text, NSColor* curve) {
  constexpr float two_periods = 12.566371F;  // 4 pi
  send(graph, &Graph::set_text_color, text);
  send(graph, &Graph::set_curve_color_fill_color, curve, curve);
  send(graph, &Graph::set_y_minimum_maximum, -1.1F, 1.1F);
  send(graph, &Graph::set_x_minimum_maximum, 0.0F, two_periods);
}

void KVOndexView::configure_label(KV_Ondex_Label_View* label, const char* text, NSColor* color) {
  send(label, &Label::set_colors_for_info, color);
  send(label, &Label::set_description, make<NSString>(text).get());
}

void KVOndexView::configure_readout(const ParameterDescription& parameter, NSColor* readout_color,
                                    NSColor* info_color) {
  Readout* const view = readout(parameter.number);
  send(view, &Readout::set_parameter_number, static_cast<int32_t>(parameter.number));
  send(view, &Readout::set_colors_for_readout_info, readout_color, info_color);
  send(view, &Readout::set_values_minimum_maximum_default_value_scale_type, parameter.minimum,
       parameter.maximum, parameter.default_value, parameter.scale_type);
  send(view, &Readout::set_current_value, parameter.initial_value);
  send(view, &Readout::set_callback_onObject, value_edited_selector, this);
  send(view, &Readout::set_selection_callback_onObject, selected_selector, this);
  send(view, &Readout::set_description, make<NSString>(parameter.name).get());
  send(view, &Readout::set_selected, parameter.initially_selected);
  send(view, &Readout::set_pop_up_view, _text_entry_popup_view.get());
}

void KVOndexView::setAU(AudioUnit unit) {
  if (mAU)
    _removeListeners();
  mAU = unit;
  // The synchronisation reaches the controls through the listener only, so that must exist first.
  _addListeners();
  _synchronizeUIWithParameterValues();
}

void KVOndexView::_addListeners() {
  if (!mAU)
    return;
  AUEventListenerCreate(EventListenerDispatcher, this, CFRunLoopGetCurrent(), kCFRunLoopDefaultMode,
                        notification_interval, value_change_granularity, &mAUEventListener);
  for (const ParameterDescription& parameter : parameter_table) {
    const AudioUnitEvent event = value_change_event(mAU, parameter.number);
    AUEventListenerAddEventType(mAUEventListener, this, &event);
  }
}

void KVOndexView::_removeListeners() {
  if (mAUEventListener)
    AUListenerDispose(mAUEventListener);
  mAUEventListener = nullptr;
  mAU = nullptr;
}

void KVOndexView::_synchronizeUIWithParameterValues() {
  for (const ParameterDescription& parameter : parameter_table) {
    // Reading makes an effect that computes its values on demand compute them; the event brings the value.
    AudioUnitParameterValue value = 0;
    AudioUnitGetParameter(mAU, parameter.number, kAudioUnitScope_Global, 0, &value);
    const AudioUnitEvent event = value_change_event(mAU, parameter.number);
    AUEventListenerNotify(nullptr, nullptr, &event);
  }
}

void KVOndexView::viewDidMoveToWindow() {
  window();
}

void KVOndexView::do_preferences_panel(NSObject*) {
  if (!_preferences_controller)
    _preferences_controller = make<KV_Ondex_Preference_Controller>();
  _preferences_controller->showWindow(this);
}

KV_Ondex_Parameter_Control_View* KVOndexView::readout(uint32_t parameter) const {
  switch (parameter) {
    case 0:
      return _tremolo_left_rate_parameter;
    case 1:
      return _tremolo_right_rate_parameter;
    case 2:
      return _tremolo_depth_parameter;
    case 3:
      return _tremolo_left_fm_mod_frequency_parameter;
    case 4:
      return _tremolo_left_fm_mod_index_parameter;
    case 5:
      return _tremolo_right_fm_mod_frequency_parameter;
    case 6:
      return _tremolo_right_fm_mod_index_parameter;
    default:
      return nullptr;
  }
}

void EventListenerDispatcher(void* refcon, void* object, const AudioUnitEvent* event, uint64_t, float value) {
  static_cast<KVOndexView*>(refcon)->_eventListener_event_value(object, event, value);
}

}  // namespace ondex
