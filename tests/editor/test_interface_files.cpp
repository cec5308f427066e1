// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "interface_file_fixture.h"

/// Interface files that leave out, misplace or connect wrongly what the editor and its preferences ask for.

namespace ondex::test {
namespace {

using namespace cocoa;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* outlet_names[] = {"_main_title",
                                        "_knob",
                                        "_tremolo_label",
                                        "_left_label",
                                        "_right_label",
                                        "_tremolo_left_rate_parameter",
                                        "_tremolo_right_rate_parameter",
                                        "_tremolo_depth_parameter",
                                        "_tremolo_left_fm_mod_frequency_parameter",
                                        "_tremolo_left_fm_mod_index_parameter",
                                        "_tremolo_right_fm_mod_frequency_parameter",
                                        "_tremolo_right_fm_mod_index_parameter",
                                        "_vibrato_left_oscillator_response_view",
                                        "_vibrato_right_oscillator_response_view",
                                        "_text_entry_popup_view",
                                        "_effect_box"};

std::string missing(const std::string& outlet) {
  return "KVOndexView: outlet " + outlet + " is not connected.";
}

/// Without one of the editor's outlets.
class MissingOutlet : public InterfaceFileTest, public testing::WithParamInterface<const char*> {};

TEST_P(MissingOutlet, IsNamedInTheLogAndItsStepsAreSkipped) {
  view_file.remove(view_file.outlet(GetParam()));
  open_changed();
  ASSERT_TRUE(editor);
  EXPECT_THAT(log, ElementsAre(missing(GetParam())));
  log.clear();
  use();
  EXPECT_THAT(log, IsEmpty());
  EXPECT_TRUE(close());
}

INSTANTIATE_TEST_SUITE_P(EveryOne, MissingOutlet, testing::ValuesIn(outlet_names),
                         [](const auto& test) { return std::string(test.param).substr(1); });

class InterfaceFiles : public InterfaceFileTest {
 protected:
  KV_Ondex_Preference_Controller& preferences_window() {
    editor->do_preferences_panel(nullptr);
    serve();
    return *editor->_preferences_controller;
  }
  /// The editor's file is refused with one line that holds this.
  void expect_refused(const std::string& cause) {
    open_changed();
    EXPECT_FALSE(editor);
    ASSERT_THAT(log, ElementsAre(HasSubstr(cause), "Ondex: Unable to load nib for view."));
  }
};

TEST_F(InterfaceFiles, WithNoOutletAtAllAreNamedOutletByOutlet) {
  view_file.remove(view_file.element("editor").child("connections"));
  open_changed();
  ASSERT_TRUE(editor);
  ASSERT_EQ(log.size(), std::size(outlet_names));
  for (const char* name : outlet_names)
    EXPECT_THAT(log, testing::Contains(missing(name)));
  use();
  EXPECT_TRUE(close());
}

TEST_F(InterfaceFiles, WhatIsThereStaysInStepWithoutTheKnob) {
  view_file.remove(view_file.outlet("_knob"));
  open_changed();
  show();
  effect.setFromHost(4, 3.0F);
  serve();
  EXPECT_EQ(editor->_tremolo_left_fm_mod_index_parameter->current_value(), 3.0);
  writes.clear();
  editor->_tremolo_left_rate_parameter->set_current_value(5);
  editor->parameter_view_value_edited(editor->_tremolo_left_rate_parameter);
  EXPECT_THAT(writes, ElementsAre(Write{0, 5.0F}));
}

TEST_F(InterfaceFiles, AKnobThatIsMissingIsNoSender) {
  view_file.remove(view_file.outlet("_knob"));
  open_changed();
  editor->knob_callback(nullptr);
  EXPECT_THAT(writes, IsEmpty());
}

TEST_F(InterfaceFiles, AViewThatNobodyKeepsIsForgottenWhenItGoes) {
  view_file.move("right-graph", view_file.objects());
  open_changed();
  ASSERT_TRUE(editor);
  EXPECT_THAT(log,
              ElementsAre("KVOndexView: outlet _vibrato_right_oscillator_response_view is connected to a "
                          "view outside the editor, which does not keep it."));
  EXPECT_FALSE(editor->_vibrato_right_oscillator_response_view);
  EXPECT_TRUE(editor->_vibrato_left_oscillator_response_view);
  use();
  EXPECT_TRUE(close());
}

TEST_F(InterfaceFiles, AReadoutThatNobodyKeepsIsForgottenWhenItGoes) {
  view_file.move("depth", view_file.objects());
  open_changed();
  ASSERT_TRUE(editor);
  EXPECT_FALSE(editor->_tremolo_depth_parameter);
  EXPECT_FALSE(editor->_current_parameter_view) << "it was the one that is selected at first";
  use();
  EXPECT_TRUE(close());
}

TEST_F(InterfaceFiles, ABoxOutsideIsTakenIn) {
  view_file.move("box", view_file.objects());
  open_changed();
  ASSERT_TRUE(editor);
  EXPECT_THAT(log, IsEmpty());
  EXPECT_EQ(editor->_effect_box->superview(), editor.get());
  use();
}

TEST_F(InterfaceFiles, AViewRemovedFromTheEditorLaterIsForgottenToo) {
  open_changed();
  editor->_knob->removeFromSuperview();
  EXPECT_FALSE(editor->_knob);
  use();
}

/// As children cannot hold their parents, the editor is moved into a new view of that class.
TEST_F(InterfaceFiles, AControlAroundTheEditorIsNoneOfIts) {
  std::string inside = "editor";
  for (const auto& [class_name, outlet] : {std::pair("KV_Ondex_Big_Knob_View", "_knob"),
                                           std::pair("KV_Ondex_Pop_Up_View", "_text_entry_popup_view")}) {
    pugi::xml_node around = view_file.objects().append_child("customView");
    around.append_attribute("id") = outlet;
    around.append_attribute("customClass") = class_name;
    around.append_copy(view_file.element("editor").child("rect"));
    view_file.move(inside, File::subviews_of(around));
    view_file.outlet(outlet).attribute("destination") = outlet;
    inside = outlet;
  }
  open_changed();
  ASSERT_TRUE(editor);
  EXPECT_THAT(log,
              ElementsAre("KV_Ondex_Pop_Up_View: outlet _entry_field is not connected.",
                          "KVOndexView: outlet _knob is connected to a view around the editor, which cannot "
                          "be a control.",
                          "KVOndexView: outlet _text_entry_popup_view is connected to a view around the "
                          "editor, which cannot be a control."));
  EXPECT_FALSE(editor->_knob);
  EXPECT_FALSE(editor->_text_entry_popup_view);
  use();
  EXPECT_TRUE(close());
}

TEST_F(InterfaceFiles, AReadoutInTheNumericEntryIsNone) {
  view_file.move("left-rate", view_file.element("entry").child("subviews"));
  open_changed();
  ASSERT_TRUE(editor);
  EXPECT_THAT(log,
              ElementsAre("KVOndexView: outlet _tremolo_left_rate_parameter is connected to a view in the "
                          "numeric entry, which cannot be a control."));
  EXPECT_FALSE(editor->_tremolo_left_rate_parameter);
  const WeakRef<KV_Ondex_Pop_Up_View> panel(editor->_text_entry_popup_view);
  use();
  EXPECT_TRUE(close());
  EXPECT_FALSE(panel);
}

TEST_F(InterfaceFiles, APanelWithoutItsFieldOpensAndCloses) {
  view_file.remove(view_file.outlet("_entry_field"));
  open_changed();
  ASSERT_TRUE(editor);
  EXPECT_THAT(log, ElementsAre("KV_Ondex_Pop_Up_View: outlet _entry_field is not connected."));
  use();
  EXPECT_TRUE(close());
}

TEST_F(InterfaceFiles, AFieldThatNobodyKeepsIsForgottenWhenItGoes) {
  view_file.move("entry-field", view_file.objects());
  open_changed();
  ASSERT_TRUE(editor);
  EXPECT_FALSE(editor->_text_entry_popup_view->_entry_field);
  use();
  EXPECT_TRUE(close());
}

TEST_F(InterfaceFiles, OfThePreferencesNameEachOutletThatIsMissing) {
  for (const char* name : {"panel_view", "_info_color_well", "_readout_color_well"})
    preferences_file.remove(preferences_file.outlet(name));
  open_changed();
  show();
  KV_Ondex_Preference_Controller& controller = preferences_window();
  EXPECT_TRUE(controller.isWindowLoaded());
  EXPECT_THAT(log, ElementsAre("KV_Ondex_Preference_Controller: outlet _info_color_well is not connected.",
                               "KV_Ondex_Preference_Controller: outlet _readout_color_well is not connected.",
                               "KV_Ondex_Preference_Controller: outlet panel_view is not connected."));
  controller.changeColor(nullptr);
  EXPECT_TRUE(close());
}

TEST_F(InterfaceFiles, AWellThatNobodyKeepsIsForgottenWhenItGoes) {
  preferences_file.move("info-well", preferences_file.objects());
  open_changed();
  show();
  KV_Ondex_Preference_Controller& controller = preferences_window();
  EXPECT_FALSE(controller._info_color_well);
  ASSERT_TRUE(controller._readout_color_well);
  EXPECT_THAT(log, ElementsAre("KV_Ondex_Preference_Controller: outlet _info_color_well is not connected."));
  controller.changeColor(nullptr);
  controller.changeColor(controller._readout_color_well);
  EXPECT_TRUE(close());
}

TEST_F(InterfaceFiles, PreferencesWithoutAWindowAreNotShown) {
  preferences_file.remove(preferences_file.outlet("window"));
  open_changed();
  show();
  EXPECT_FALSE(preferences_window().isWindowLoaded());
  EXPECT_THAT(log, ElementsAre(HasSubstr("KV_Ondex_Preferences.xib: connects no window to its owner.")));
  EXPECT_TRUE(close());
}

TEST_F(InterfaceFiles, AnEditorOfAnUnreasonableSizeIsRefused) {
  File::set_size(view_file.element("editor"), "1000000", "1000000");
  expect_refused(R"(="1000000" is not a length in reach)");
}

TEST_F(InterfaceFiles, AControlOfAnUnreasonableSizeIsRefused) {
  File::set_size(view_file.element("left-graph"), "286", "8193");
  expect_refused(R"(in <customView id="left-graph">: height="8193" is not a length in reach)");
}

}  // namespace
}  // namespace ondex::test
