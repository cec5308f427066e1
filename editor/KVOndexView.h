// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSBox.h"
#include "appkit/NSView.h"
#include "audio_unit/AUEventListener.h"
#include "audio_unit/AudioUnit.h"
#include "drawing/KV_Ondex_Button_View.h"
#include "drawing/KV_Ondex_Label_View.h"
#include "editor/KV_Ondex_Preference_Controller.h"
#include "editor/repeated_attempt.h"
#include "foundation/weak_outlets.h"
#include "knob/KV_Ondex_Big_Knob_View.h"
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"
#include "parameter_control/KV_Ondex_Pop_Up_View.h"
#include "response_graph/KV_FM_Oscillator_Response_View.h"

namespace ondex {

/// The editor: the hub between the controls and the effect.
///
/// Controls report to it by callback; it writes the effect's parameter and brings the other controls into
/// step. Changes made elsewhere arrive as parameter events. The controls are made by the interface file and
/// owned by the view hierarchy; the fields here do not own them. What a control that is missing would do is
/// left out. Main thread only.
class KVOndexView : public cocoa::NSView {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  /// initWithFrame: stores the default colours unless the user has both. While they cannot be written, as
  /// another process is writing, that is tried again, as long as there are none.
  explicit KVOndexView(cocoa::NSRect frame);
  ~KVOndexView() override;
  /// Configures every control and selects the depth readout. An outlet that the interface file does not
  /// connect is named in the log, and so is one to a view that encloses the editor or lies in the numeric
  /// entry, which is let go of, and one to a view elsewhere, which the editor does not keep.
  void awakeFromNib() override;

  /// Attaches the view to an effect instance, which is not retained and must outlive the attachment; null
  /// detaches it. Controls show the effect's values when the run loop that is current here delivers them.
  void setAU(cocoa::AudioUnit unit);
  void _addListeners();
  void _removeListeners();
  /// Posts one change event a parameter, so that every control gets its value on the same path as later
  /// changes.
  void _synchronizeUIWithParameterValues();
  void viewDidMoveToWindow() override;

  void _eventListener_event_value(void* object, const cocoa::AudioUnitEvent* event, float value);
  void set_au_parameter_to_value(int parameter, float value);
  void knob_callback(cocoa::NSObject* sender);
  void parameter_view_value_edited(cocoa::NSObject* sender);
  void parameter_view_selected(cocoa::NSObject* sender);
  void sync_big_knob();
  /// Shows the window in which the user picks the display colours, this editor's own.
  void do_preferences_panel(cocoa::NSObject* sender);
  /// An action for interface files to connect; does nothing.
  void menu_callback(cocoa::NSObject* sender);

  void drawRect(cocoa::NSRect dirty) override;
  /// Paints the background: a field brightest along the vertical centre line, a ridge 20 points wide at
  /// either side.
  void do_2d_bg_area(cocoa::CGContextRef context, cocoa::CGRect area);
  cocoa::CGColorSpaceRef get_RGB_color_space();

  cocoa::WeakPointer<KV_Ondex_Button_View> _main_title;
  cocoa::WeakPointer<KV_Ondex_Big_Knob_View> _knob;
  cocoa::WeakPointer<KV_Ondex_Label_View> _tremolo_label;
  cocoa::WeakPointer<KV_Ondex_Label_View> _left_label;
  cocoa::WeakPointer<KV_Ondex_Label_View> _right_label;
  /// The readout that the knob edits; null until the first selection.
  cocoa::WeakPointer<KV_Ondex_Parameter_Control_View> _current_parameter_view;
  cocoa::WeakPointer<KV_Ondex_Parameter_Control_View> _tremolo_left_rate_parameter;
  cocoa::WeakPointer<KV_Ondex_Parameter_Control_View> _tremolo_right_rate_parameter;
  cocoa::WeakPointer<KV_Ondex_Parameter_Control_View> _tremolo_depth_parameter;
  cocoa::WeakPointer<KV_Ondex_Parameter_Control_View> _tremolo_left_fm_mod_frequency_parameter;
  cocoa::WeakPointer<KV_Ondex_Parameter_Control_View> _tremolo_left_fm_mod_index_parameter;
  cocoa::WeakPointer<KV_Ondex_Parameter_Control_View> _tremolo_right_fm_mod_frequency_parameter;
  cocoa::WeakPointer<KV_Ondex_Parameter_Control_View> _tremolo_right_fm_mod_index_parameter;
  cocoa::WeakPointer<KV_FM_Oscillator_Response_View> _vibrato_left_oscillator_response_view;
  cocoa::WeakPointer<KV_FM_Oscillator_Response_View> _vibrato_right_oscillator_response_view;
  /// The panel that all readouts share, and own.
  cocoa::WeakPointer<KV_Ondex_Pop_Up_View> _text_entry_popup_view;
  cocoa::AudioUnit mAU = nullptr;
  cocoa::AUEventListenerRef mAUEventListener = nullptr;
  /// Made when it is first needed.
  cocoa::Ref<KV_Ondex_Preference_Controller> _preferences_controller;
  cocoa::WeakPointer<cocoa::NSBox> _effect_box;

 private:
  KV_Ondex_Parameter_Control_View* readout(uint32_t parameter) const;
  void check_outlets();
  template <typename Condition>
  void disconnect_where(const Condition& condition, const char* finding);
  void report_outlets_outside() const;
  void configure_graph(KV_FM_Oscillator_Response_View* graph, cocoa::NSColor* text, cocoa::NSColor* curve);
  void configure_label(KV_Ondex_Label_View* label, const char* text, cocoa::NSColor* color);
  void configure_readout(const struct ParameterDescription& parameter, cocoa::NSColor* readout_color,
                         cocoa::NSColor* info_color);
  void update_graph(const KV_Ondex_Parameter_Control_View* changed, float value);
  void point_knob_at(KV_Ondex_Parameter_Control_View* shown);

  RepeatedAttempt seeding_;
};

/// The event listener's callback: hands the event to the view that `refcon` is. The host time is not needed.
void EventListenerDispatcher(void* refcon, void* object, const cocoa::AudioUnitEvent* event,
                             uint64_t host_time, float value);

}  // namespace ondex
