// SPDX-License-Identifier: MIT
#include "appkit/NSEvent.h"
#include "editor_fixture.h"

namespace ondex::test {
namespace {

using namespace cocoa;

class BindingTest : public EditorFixture {
 protected:
  BindingTest() { open(); }
  void press(KV_Ondex_Parameter_Control_View* readout) {
    WindowEvent event;
    event.type = WindowEventType::mouse_down;
    event.click_count = 1;
    readout->mouseDown(make<NSEvent>(event, nullptr).get());
  }
  void drag(KV_Ondex_Parameter_Control_View* readout, CGFloat delta_y) {
    WindowEvent event;
    event.type = WindowEventType::mouse_dragged;
    event.delta_y = delta_y;
    readout->mouseDragged(make<NSEvent>(event, nullptr).get());
  }
  AudioUnitEvent event_of(AudioUnitEventType type, AudioUnitParameterID id) const {
    AudioUnitEvent event = {};
    event.mEventType = type;
    event.mArgument.mParameter = {effect.audio_unit(), id, kAudioUnitScope_Global, 0};
    return event;
  }
};

TEST_F(BindingTest, AHostChangeReachesReadoutGraphAndKnob) {
  press(editor->_tremolo_left_fm_mod_frequency_parameter);
  effect.setFromHost(3, 2.0F);
  effect.setFromHost(4, 1.0F);
  settle();
  EXPECT_EQ(editor->_tremolo_left_fm_mod_frequency_parameter->current_value(), 2.0);
  EXPECT_EQ(editor->_tremolo_left_fm_mod_index_parameter->current_value(), 1.0);
  EXPECT_NEAR(editor->_knob->current_value(), 2.0, 1e-12);
  // sin(1 + 1 sin(2 × 1)) = sin(1.909297)
  EXPECT_NEAR(editor->_vibrato_left_oscillator_response_view->response_for_value(1.0F), 0.943253F, 1e-6F);
  // The right side keeps the effect's defaults, factor 0 and index 0: sin(1).
  EXPECT_NEAR(editor->_vibrato_right_oscillator_response_view->response_for_value(1.0F), 0.841471F, 1e-6F);
  EXPECT_TRUE(writes.empty());
}

TEST_F(BindingTest, EachParameterReachesItsOwnReadout) {
  for (unsigned id = 0; id < 7; ++id)
    effect.setFromHost(id, static_cast<float>(id + 1) / 10);
  settle();
  const auto views = readouts();
  for (unsigned id = 0; id < 7; ++id) {
    EXPECT_EQ(views[id]->current_value(), static_cast<double>(static_cast<float>(id + 1) / 10)) << id;
  }
}

TEST_F(BindingTest, TheKnobWritesTheSelectedParameterAndNobodyEchoesIt) {
  editor->_knob->set_current_value(0.75);
  editor->knob_callback(editor->_knob);
  EXPECT_EQ(writes, (std::vector<Write>{{2, 0.75F}}));
  EXPECT_EQ(effect.value(2), 0.75F);
  EXPECT_EQ(editor->_tremolo_depth_parameter->current_value(), 0.75);
  editor->_tremolo_depth_parameter->set_current_value(0.1);
  settle();
  EXPECT_EQ(editor->_tremolo_depth_parameter->current_value(), 0.1) << "its own change does not come back";
}

TEST_F(BindingTest, TheKnobDrivesTheGraphOfASelectedModIndex) {
  press(editor->_tremolo_right_fm_mod_index_parameter);
  effect.setFromHost(5, 1.0F);
  settle();
  editor->_knob->set_current_value(1.0);
  editor->knob_callback(editor->_knob);
  ASSERT_EQ(writes.size(), 1U);
  EXPECT_EQ(writes[0].id, 6U);
  // sin(1 + sin(1))
  EXPECT_NEAR(editor->_vibrato_right_oscillator_response_view->response_for_value(1.0F), 0.963590F, 1e-6F);
}

TEST_F(BindingTest, ACallbackFromAnotherSenderIsIgnored) {
  editor->knob_callback(editor->_main_title);
  editor->knob_callback(nullptr);
  EXPECT_TRUE(writes.empty());
}

TEST_F(BindingTest, EditingTheSelectedReadoutMovesTheKnob) {
  drag(editor->_tremolo_depth_parameter, -10);
  EXPECT_NEAR(editor->_knob->current_value(), 0.55, 1e-12);
  EXPECT_EQ(writes, (std::vector<Write>{{2, 0.55F}}));
}

TEST_F(BindingTest, EditingAnotherReadoutLeavesTheKnobAndStillWrites) {
  drag(editor->_tremolo_left_rate_parameter, -10);
  EXPECT_EQ(editor->_knob->current_value(), 0.5);
  EXPECT_EQ(writes, (std::vector<Write>{{0, 1.0F}})) << "10 points are 0.05 of a range of 20";
}

TEST_F(BindingTest, SelectingMovesTheKnobAndWritesNothing) {
  effect.setFromHost(4, 6.25F);
  settle();
  press(editor->_tremolo_left_fm_mod_index_parameter);
  EXPECT_FALSE(editor->_tremolo_depth_parameter->is_selected());
  EXPECT_TRUE(editor->_tremolo_left_fm_mod_index_parameter->is_selected());
  EXPECT_EQ(editor->_knob->scale_type(), 2);
  EXPECT_NEAR(editor->_knob->current_value(), 6.25, 1e-12);
  EXPECT_TRUE(writes.empty());
}

TEST_F(BindingTest, SelectingTheSelectedReadoutAgainLeavesTheKnobAsItIs) {
  editor->_knob->set_current_value(0.9);
  press(editor->_tremolo_depth_parameter);
  EXPECT_NEAR(editor->_knob->current_value(), 0.9, 1e-12);
}

TEST_F(BindingTest, AnEventForAnUnknownParameterOnlyRefreshesTheKnob) {
  editor->_knob->set_current_value(0.9);
  const AudioUnitEvent event = event_of(kAudioUnitEvent_ParameterValueChange, 9);
  editor->_eventListener_event_value(nullptr, &event, 3.0F);
  EXPECT_EQ(editor->_knob->current_value(), 0.5);
  EXPECT_TRUE(log.empty());
  for (const auto* view : readouts())
    EXPECT_NE(view->current_value(), 3.0);
}

TEST_F(BindingTest, GesturesAreLoggedAndPropertyChangesAreNot) {
  for (const auto type :
       {kAudioUnitEvent_BeginParameterChangeGesture, kAudioUnitEvent_EndParameterChangeGesture}) {
    const AudioUnitEvent event = event_of(type, 2);
    editor->_eventListener_event_value(nullptr, &event, 0.9F);
  }
  EXPECT_EQ(log, std::vector<std::string>(2, "Error: Got an update for an unknown parameter."));
  log.clear();
  const AudioUnitEvent event = event_of(kAudioUnitEvent_PropertyChange, 2);
  editor->_eventListener_event_value(nullptr, &event, 0.9F);
  EXPECT_TRUE(log.empty());
  EXPECT_EQ(editor->_tremolo_depth_parameter->current_value(), 0.5);
}

TEST_F(BindingTest, AValueOutsideTheRangeIsShownAsTheNearestBound) {
  effect.setFromHost(2, 7.0F);
  settle();
  EXPECT_EQ(editor->_tremolo_depth_parameter->current_value(), 1.0);
  EXPECT_EQ(editor->_knob->current_value(), 1.0);
  EXPECT_TRUE(writes.empty());
}

TEST_F(BindingTest, TheSelectionSurvivesHostChangesAndReattaching) {
  press(editor->_tremolo_left_rate_parameter);
  editor->setAU(effect.audio_unit());
  effect.setFromHost(0, 5.0F);
  settle();
  EXPECT_EQ(editor->_current_parameter_view, editor->_tremolo_left_rate_parameter);
  EXPECT_EQ(editor->_knob->current_value(), 5.0);
}

TEST_F(BindingTest, TheMenuActionIsThereAndDoesNothing) {
  EXPECT_TRUE(editor->isa().action("menu_callback:"));
  editor->performSelector_withObject(SEL("menu_callback:"), nullptr);
  EXPECT_TRUE(writes.empty());
  EXPECT_TRUE(log.empty());
}

}  // namespace
}  // namespace ondex::test
