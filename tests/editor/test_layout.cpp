// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "drawn_view.h"
#include "editor/parameter_table.h"
#include "editor_fixture.h"

namespace ondex::test {
namespace {

using namespace cocoa;

class LayoutTest : public EditorFixture {
 protected:
  LayoutTest() { open(); }
  NSRect in_editor(const NSView* view) const {
    return view->convertRect_toView(view->bounds(), editor.get());
  }
};

struct Row {
  const char* description;
  double minimum, maximum, default_value;
  int scale_type;
  double value;
};

TEST_F(LayoutTest, EveryReadoutIsConfiguredFromItsRow) {
  const Row rows[] = {
      {"Left Tremolo Rate", 0, 20, 0, 0, 0},      {"Right Tremolo Rate", 0, 20, 0, 0, 0},
      {"Tremolo Depth", 0, 1, 0.5, 0, 0.5},       {"Left Tremolo Mod Factor", 0, 20, 0, 2, 0},
      {"Left Tremolo Mod Index", 0, 20, 0, 2, 0}, {"Right Tremolo Mod Factor", 0, 20, 0, 2, 0},
      {"Right Tremolo Mod Index", 0, 20, 0, 2, 0}};
  const auto views = readouts();
  for (size_t i = 0; i < views.size(); ++i) {
    SCOPED_TRACE(rows[i].description);
    EXPECT_TRUE(views[i]->description()->isEqualToString(rows[i].description));
    EXPECT_EQ(static_cast<size_t>(views[i]->parameter_number()), i);
    EXPECT_EQ(views[i]->minimum_value(), rows[i].minimum);
    EXPECT_EQ(views[i]->maximum_value(), rows[i].maximum);
    EXPECT_EQ(views[i]->default_value(), rows[i].default_value);
    EXPECT_EQ(views[i]->scale_type(), rows[i].scale_type);
    EXPECT_EQ(views[i]->current_value(), rows[i].value);
  }
}

TEST_F(LayoutTest, ExactlyTheDepthReadoutIsSelectedAndTheKnobEditsIt) {
  for (const auto* view : readouts())
    EXPECT_EQ(view->is_selected(), view == editor->_tremolo_depth_parameter);
  EXPECT_EQ(editor->_current_parameter_view, editor->_tremolo_depth_parameter);
  EXPECT_EQ(editor->_knob->current_value(), 0.5);
  EXPECT_EQ(editor->_knob->scale_type(), 0);
  editor->_knob->set_current_value(7);
  EXPECT_EQ(editor->_knob->current_value(), 1.0) << "the knob's range is the depth's";
}

TEST_F(LayoutTest, CaptionsAndTitleSayWhatTheyShould) {
  EXPECT_TRUE(editor->_main_title->description()->isEqualToString("KV Ondex"));
  EXPECT_TRUE(editor->_tremolo_label->description()->isEqualToString("Tremolo"));
  EXPECT_TRUE(editor->_left_label->description()->isEqualToString("Left"));
  EXPECT_TRUE(editor->_right_label->description()->isEqualToString("Right"));
}

TEST_F(LayoutTest, GraphsShowTwoPeriodsWithRoomAboveAndBelow) {
  for (const auto& graph :
       {editor->_vibrato_left_oscillator_response_view, editor->_vibrato_right_oscillator_response_view}) {
    const auto width = static_cast<float>(NSWidth(graph->bounds()));
    const auto height = static_cast<float>(NSHeight(graph->bounds()));
    EXPECT_NEAR(graph->x_for_location(5), 0.0F, 1e-6F);
    EXPECT_NEAR(graph->x_for_location(width - 5), 12.566371F, 1e-5F);
    EXPECT_NEAR(graph->y_for_location(5), -1.1F, 1e-6F);
    EXPECT_NEAR(graph->y_for_location(height - 5), 1.1F, 1e-6F);
  }
}

TEST_F(LayoutTest, TheBoxTheTitleAndTheKnobAreInFrontTheKnobTopmost) {
  const auto& views = editor->subviews();
  ASSERT_GE(views.size(), 3U);
  EXPECT_EQ(views[views.size() - 3], editor->_effect_box);
  EXPECT_EQ(views[views.size() - 2], editor->_main_title);
  EXPECT_EQ(views[views.size() - 1], editor->_knob);
}

TEST_F(LayoutTest, ClicksReachEveryControlThroughTheBox) {
  std::vector<NSView*> controls = {editor->_main_title, editor->_knob};
  for (auto* view : readouts())
    controls.push_back(view);
  for (NSView* view : controls) {
    const NSRect frame = in_editor(view);
    EXPECT_EQ(editor->hitTest({NSMinX(frame) + NSWidth(frame) / 2, NSMinY(frame) + NSHeight(frame) / 2}),
              view)
        << view->isa().name;
  }
}

TEST_F(LayoutTest, TheSidesAreMirroredAroundTheCentre) {
  const auto mirrored = [this](const NSView* left, const NSView* right) {
    const NSRect a = in_editor(left);
    const NSRect b = in_editor(right);
    EXPECT_EQ(NSMinX(a), NSWidth(editor->bounds()) - NSMaxX(b));
    EXPECT_EQ(NSMinY(a), NSMinY(b));
    EXPECT_EQ(a.size, b.size);
  };
  mirrored(editor->_left_label, editor->_right_label);
  mirrored(editor->_vibrato_left_oscillator_response_view, editor->_vibrato_right_oscillator_response_view);
  mirrored(editor->_tremolo_left_rate_parameter, editor->_tremolo_right_rate_parameter);
  // All but the two that are read one after the other, factor first.
  mirrored(editor->_tremolo_left_fm_mod_frequency_parameter, editor->_tremolo_right_fm_mod_index_parameter);
  mirrored(editor->_tremolo_left_fm_mod_index_parameter, editor->_tremolo_right_fm_mod_frequency_parameter);
  for (const NSView* centred : std::initializer_list<const NSView*>{
           editor->_knob, editor->_main_title, editor->_tremolo_label, editor->_tremolo_depth_parameter}) {
    mirrored(centred, centred);
  }
}

TEST_F(LayoutTest, BothSidesHaveTheSameOrder) {
  const auto left_of = [this](const NSView* first, const NSView* second) {
    EXPECT_LE(NSMaxX(in_editor(first)), NSMinX(in_editor(second)));
    EXPECT_EQ(NSMinY(in_editor(first)), NSMinY(in_editor(second)));
  };
  left_of(editor->_tremolo_left_fm_mod_frequency_parameter, editor->_tremolo_left_fm_mod_index_parameter);
  left_of(editor->_tremolo_right_fm_mod_frequency_parameter, editor->_tremolo_right_fm_mod_index_parameter);
}

TEST_F(LayoutTest, TheEntryPanelIsAsWideAsEveryReadout) {
  for (const auto* readout : readouts())
    EXPECT_EQ(NSWidth(readout->bounds()), NSWidth(editor->_text_entry_popup_view->bounds()));
}

TEST_F(LayoutTest, TheBoxKeepsClearOfTheSidebarsAndTheControlsOfTheBox) {
  // Its line runs 4.5 points inside, the sidebars are 20 wide.
  const CGFloat line = NSMinX(in_editor(editor->_effect_box)) + CGFloat(4.5);
  EXPECT_GE(line, 30);
  for (const NSView* control : std::initializer_list<const NSView*>{
           editor->_vibrato_left_oscillator_response_view, editor->_tremolo_left_fm_mod_frequency_parameter})
    EXPECT_GE(NSMinX(in_editor(control)), line + 8);
}

/// Rows of a view, in points from its upper and its lower edge to the nearest ink of that colour.
struct Margins {
  double above;
  double below;
};

Margins ink_margins(NSView& view, double scale, bool (*is_ink)(const Pixel&)) {
  const DrawnView drawn(view, scale);
  int lowest = drawn.height();
  int highest = -1;
  for (int y = 0; y < drawn.height(); ++y) {
    for (int x = static_cast<int>(7 * scale); x < drawn.width() - static_cast<int>(7 * scale); ++x) {
      if (is_ink(drawn.pixel(x, y))) {
        lowest = std::min(lowest, y);
        highest = std::max(highest, y);
      }
    }
  }
  return {(drawn.height() - 1 - highest) / scale, lowest / scale};
}

TEST_F(LayoutTest, TextsStandInTheMiddleOfTheirCapsules) {
  for (const double scale : {1.0, 2.0}) {
    const auto is_light = [](const Pixel& p) { return std::min({p.red, p.green, p.blue}) > 0.42; };
    const Margins title = ink_margins(*editor->_main_title, scale, is_light);
    EXPECT_NEAR(title.above, title.below, 1.01) << scale;
    const auto is_blue = [](const Pixel& p) { return p.blue > p.red + 0.25; };
    for (KV_Ondex_Label_View* label : {editor->_left_label, editor->_tremolo_label, editor->_right_label}) {
      const Margins margins = ink_margins(*label, scale, is_blue);
      // A letter that reaches below the line takes two points of what the others leave.
      EXPECT_NEAR(margins.above, margins.below, 2.01) << scale;
      EXPECT_GE(margins.below, 0.5) << "nothing is cut off";
    }
  }
}

TEST_F(LayoutTest, NoControlOverlapsAnother) {
  std::vector<NSView*> controls = {editor->_knob,
                                   editor->_main_title,
                                   editor->_tremolo_label,
                                   editor->_left_label,
                                   editor->_right_label,
                                   editor->_vibrato_left_oscillator_response_view,
                                   editor->_vibrato_right_oscillator_response_view};
  for (auto* view : readouts())
    controls.push_back(view);
  for (size_t i = 0; i < controls.size(); ++i) {
    EXPECT_TRUE(NSPointInRect(in_editor(controls[i]).origin, editor->bounds()));
    for (size_t j = i + 1; j < controls.size(); ++j) {
      EXPECT_FALSE(NSIntersectsRect(in_editor(controls[i]), in_editor(controls[j]))) << i << " and " << j;
    }
  }
}

}  // namespace
}  // namespace ondex::test
