// SPDX-License-Identifier: MIT
#include "editor/KVOndexView.h"
#include "foundation/NSLog.h"

namespace ondex {

using namespace cocoa;

namespace {

using Knob = KV_Ondex_Big_Knob_View;
using Graph = KV_FM_Oscillator_Response_View;

}  // namespace

void KVOndexView::set_au_parameter_to_value(int parameter, float value) {
  const AudioUnitParameter record = {mAU, static_cast<AudioUnitParameterID>(parameter),
                                     kAudioUnitScope_Global, 0};
  // Named as the sender, the editor is told nothing of its own change; everybody else is.
  AUParameterSet(mAUEventListener, this, &record, value, 0);
}

void KVOndexView::knob_callback(NSObject* sender) {
  if (!_knob || sender != _knob || !_current_parameter_view)
    return;
  // What the knob holds is written, even where the readout's own range is narrower.
  const double value = _knob->current_value();
  const auto parameter = _current_parameter_view->parameter_number();
  _current_parameter_view->set_current_value(_knob->current_value());
  update_graph(_current_parameter_view, static_cast<float>(_knob->current_value()));
  set_au_parameter_to_value(static_cast<int>(parameter), static_cast<float>(value));
}

void KVOndexView::parameter_view_value_edited(NSObject* sender) {
  auto* edited = dynamic_cast<KV_Ondex_Parameter_Control_View*>(sender);
  if (!edited)
    return;
  if (edited == _current_parameter_view)
    send(_knob, &Knob::set_current_value, edited->current_value());
  const auto value = static_cast<float>(edited->current_value());
  update_graph(edited, value);
  set_au_parameter_to_value(static_cast<int>(edited->parameter_number()), value);
}

void KVOndexView::parameter_view_selected(NSObject* sender) {
  auto* selected = dynamic_cast<KV_Ondex_Parameter_Control_View*>(sender);
  if (!selected)
    return;
  if (_current_parameter_view)
    _current_parameter_view->set_selected(false);
  _current_parameter_view = selected;
  point_knob_at(selected);
}

void KVOndexView::sync_big_knob() {
  if (_current_parameter_view)
    point_knob_at(_current_parameter_view);
}

void KVOndexView::point_knob_at(KV_Ondex_Parameter_Control_View* shown) {
  const double minimum = shown->minimum_value();
  const double maximum = shown->maximum_value();
  const double default_value = shown->default_value();
  const double value = shown->current_value();
  const int scale_type = shown->scale_type();
  send(_knob, &Knob::set_values_minimum_maximum_default_value_scale_type, minimum, maximum, default_value,
       scale_type);
  send(_knob, &Knob::set_current_value, value);
}

/// Modulation factors and indices shape a graph; rates and depth do not.
void KVOndexView::update_graph(const KV_Ondex_Parameter_Control_View* changed, float value) {
  if (changed == _tremolo_left_fm_mod_frequency_parameter) {
    send(_vibrato_left_oscillator_response_view, &Graph::set_modulation_factor, value);
  } else if (changed == _tremolo_left_fm_mod_index_parameter) {
    send(_vibrato_left_oscillator_response_view, &Graph::set_modulation_index, value);
  } else if (changed == _tremolo_right_fm_mod_frequency_parameter) {
    send(_vibrato_right_oscillator_response_view, &Graph::set_modulation_factor, value);
  } else if (changed == _tremolo_right_fm_mod_index_parameter) {
    send(_vibrato_right_oscillator_response_view, &Graph::set_modulation_index, value);
  }
}

void KVOndexView::_eventListener_event_value(void*, const AudioUnitEvent* event, float value) {
  if (event->mEventType == kAudioUnitEvent_PropertyChange)
    return;
  if (event->mEventType != kAudioUnitEvent_ParameterValueChange) {
    NSLog("Error: Got an update for an unknown parameter.");
    return;
  }
  const AudioUnitParameterID parameter = event->mArgument.mParameter.mParameterID;
  if (KV_Ondex_Parameter_Control_View* changed = readout(parameter)) {
    changed->set_current_value(static_cast<double>(value));
    update_graph(changed, value);
  }
  // The knob follows the selected readout, whether or not the change concerned that one.
  sync_big_knob();
}

void KVOndexView::menu_callback(NSObject*) {}

}  // namespace ondex
