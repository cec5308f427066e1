// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "appkit/NSFont.h"
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"
#include "recording_host.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::edited_selector;
using test::RecordingHost;
using test::selected_selector;

constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

/// Opens the fields to the tests.
class OpenReadout : public KV_Ondex_Parameter_Control_View {
 public:
  OpenReadout() : KV_Ondex_Parameter_Control_View(NSMakeRect(40, 30, 132, 36)) {}
  using KV_Ondex_Parameter_Control_View::_body_rect;
  using KV_Ondex_Parameter_Control_View::_control_rect;
  using KV_Ondex_Parameter_Control_View::_info_color;
  using KV_Ondex_Parameter_Control_View::_info_rect;
  using KV_Ondex_Parameter_Control_View::_info_string_attributes;
  using KV_Ondex_Parameter_Control_View::_left_rect;
  using KV_Ondex_Parameter_Control_View::_readout_color;
  using KV_Ondex_Parameter_Control_View::_readout_rect;
  using KV_Ondex_Parameter_Control_View::_readout_string_attributes;
  using KV_Ondex_Parameter_Control_View::_right_rect;
};

void set_range(KV_Ondex_Parameter_Control_View& readout, double minimum, double maximum, double value) {
  readout.set_values_minimum_maximum_default_value_scale_type(minimum, maximum, value, 0);
}

TEST(Readout, AFreshOneIsALinearUnitRangeAtZero) {
  const auto readout = make<OpenReadout>();
  EXPECT_EQ(readout->current_value(), 0.0);
  EXPECT_EQ(readout->minimum_value(), 0.0);
  EXPECT_EQ(readout->maximum_value(), 1.0);
  EXPECT_EQ(readout->default_value(), 0.0);
  EXPECT_EQ(readout->scale_type(), 0);
  EXPECT_EQ(readout->parameter_number(), 0);
  EXPECT_FALSE(readout->is_selected());
  EXPECT_EQ(readout->description()->view(), "---");
  EXPECT_TRUE(readout->_readout_color->isEqual(NSColor::yellowColor().get()));
  EXPECT_TRUE(readout->_info_color->isEqual(NSColor::blueColor().get()));
}

TEST(Readout, IsDividedIntoEndCapsAndTwoHalves) {
  const auto readout = make<OpenReadout>();
  EXPECT_EQ(readout->_body_rect, NSMakeRect(0, 0, 132, 36));
  EXPECT_EQ(readout->_left_rect, NSMakeRect(0, 0, 5, 36));
  EXPECT_EQ(readout->_right_rect, NSMakeRect(127, 0, 5, 36));
  EXPECT_EQ(readout->_control_rect, NSMakeRect(5, 0, 122, 36));
  EXPECT_EQ(readout->_readout_rect, NSMakeRect(5, 0, 122, 18));
  EXPECT_EQ(readout->_info_rect, NSMakeRect(5, 18, 122, 18));
}

TEST(Readout, KeepsItsLayoutWhenItsFrameChanges) {
  const auto readout = make<OpenReadout>();
  readout->setFrame(NSMakeRect(0, 0, 300, 100));
  EXPECT_EQ(readout->_body_rect, NSMakeRect(0, 0, 132, 36));
  EXPECT_EQ(readout->_right_rect, NSMakeRect(127, 0, 5, 36));
}

TEST(Readout, SetsBothTextsCentredInTheSystemFontAtNinePoints) {
  const auto readout = make<OpenReadout>();
  for (const NSMutableDictionary* attributes :
       {readout->_readout_string_attributes.get(), readout->_info_string_attributes.get()}) {
    const auto* font = dynamic_cast<NSFont*>(attributes->objectForKey(NSFontAttributeName));
    ASSERT_TRUE(font);
    EXPECT_EQ(font->pointSize(), 9);
    EXPECT_FALSE(font->isBold());
    const auto* style =
        dynamic_cast<NSMutableParagraphStyle*>(attributes->objectForKey(NSParagraphStyleAttributeName));
    ASSERT_TRUE(style);
    EXPECT_EQ(style->alignment(), NSCenterTextAlignment);
  }
  EXPECT_EQ(readout->_readout_string_attributes->objectForKey(NSForegroundColorAttributeName),
            readout->_readout_color.get());
  EXPECT_EQ(readout->_info_string_attributes->objectForKey(NSForegroundColorAttributeName),
            readout->_info_color.get());
}

TEST(Readout, IsMadeFromItsClassWithAFrame) {
  const Ref<NSObject> object = KV_Ondex_Parameter_Control_View::class_.initWithFrame(NSMakeRect(1, 2, 3, 4));
  const auto* readout = dynamic_cast<KV_Ondex_Parameter_Control_View*>(object.get());
  ASSERT_TRUE(readout);
  EXPECT_EQ(readout->frame(), NSMakeRect(1, 2, 3, 4));
  EXPECT_EQ(object->retainCount(), 1U);
}

TEST(Readout, AMaximumBelowTheMinimumCollapsesTheRangeOntoTheMaximum) {
  const auto readout = make<OpenReadout>();
  set_range(*readout, 5, 2, 9);
  EXPECT_EQ(readout->minimum_value(), 2.0);
  EXPECT_EQ(readout->maximum_value(), 2.0);
  EXPECT_EQ(readout->default_value(), 2.0);
  EXPECT_EQ(readout->current_value(), 2.0);
}

TEST(Readout, ANewRangeBringsDefaultAndValueInside) {
  const auto readout = make<OpenReadout>();
  readout->set_current_value(0.75);
  set_range(*readout, -4, 0.5, -9);
  EXPECT_EQ(readout->default_value(), -4.0);
  EXPECT_EQ(readout->current_value(), 0.5);
  set_range(*readout, 2, 3, not_a_number);
  EXPECT_EQ(readout->default_value(), 2.0);
  EXPECT_EQ(readout->current_value(), 2.0);
}

TEST(Readout, AMaximumThatIsNotANumberTakesTheMinimumWithIt) {
  const auto readout = make<OpenReadout>();
  set_range(*readout, 1, not_a_number, 3);
  EXPECT_TRUE(std::isnan(readout->minimum_value()));
  EXPECT_TRUE(std::isnan(readout->maximum_value()));
}

TEST(Readout, ValuesOutsideTheRangeAreStoredAsTheNearestBound) {
  const auto readout = make<OpenReadout>();
  set_range(*readout, -2, 3, 0);
  readout->set_current_value(3.5);
  EXPECT_EQ(readout->current_value(), 3.0);
  readout->set_current_value(-2.5);
  EXPECT_EQ(readout->current_value(), -2.0);
  readout->set_current_value(1.25);
  EXPECT_EQ(readout->current_value(), 1.25);
  readout->set_current_value(not_a_number);
  EXPECT_EQ(readout->current_value(), -2.0);
  readout->set_current_value(std::numeric_limits<double>::infinity());
  EXPECT_EQ(readout->current_value(), 3.0);
}

TEST(Readout, KeepsWhateverScaleTypeAndParameterNumberItIsGiven) {
  const auto readout = make<OpenReadout>();
  readout->set_values_minimum_maximum_default_value_scale_type(0, 1, 0, 7);
  EXPECT_EQ(readout->scale_type(), 7);
  readout->set_parameter_number(6);
  EXPECT_EQ(readout->parameter_number(), 6);
}

TEST(Readout, RetainsItsDescriptionAndIgnoresNull) {
  const auto readout = make<OpenReadout>();
  const auto text = make<NSString>("Tremolo Depth");
  readout->set_description(text.get());
  EXPECT_EQ(text->retainCount(), 2U);
  readout->set_description(nullptr);
  EXPECT_EQ(readout->description().get(), text.get());
  readout->set_description(make<NSString>("Left Tremolo Rate").get());
  EXPECT_EQ(text->retainCount(), 1U);
  EXPECT_EQ(readout->description()->view(), "Left Tremolo Rate");
}

TEST(Readout, ANullColourLeavesTheOtherToChangeAlone) {
  const auto readout = make<OpenReadout>();
  const auto red = NSColor::colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1);
  const auto green = NSColor::colorWithDeviceRed_green_blue_alpha(0, 1, 0, 1);
  const Ref<NSColor> info = readout->_info_color;
  readout->set_colors_for_readout_info(red.get(), nullptr);
  EXPECT_EQ(readout->_readout_color, red);
  EXPECT_EQ(readout->_readout_string_attributes->objectForKey(NSForegroundColorAttributeName), red.get());
  EXPECT_EQ(readout->_info_color, info);
  EXPECT_EQ(readout->_info_string_attributes->objectForKey(NSForegroundColorAttributeName), info.get());

  readout->set_colors_for_readout_info(nullptr, green.get());
  EXPECT_EQ(readout->_readout_color, red);
  EXPECT_EQ(readout->_info_color, green);
  EXPECT_EQ(readout->_info_string_attributes->objectForKey(NSForegroundColorAttributeName), green.get());
}

TEST(Readout, SettersSendNothing) {
  const auto readout = make<OpenReadout>();
  const auto host = make<RecordingHost>();
  readout->set_callback_onObject(edited_selector, host.get());
  readout->set_selection_callback_onObject(selected_selector, host.get());
  readout->set_current_value(0.5);
  set_range(*readout, 0, 2, 1);
  readout->set_selected(true);
  EXPECT_TRUE(readout->is_selected());
  readout->set_selected(false);
  EXPECT_FALSE(readout->is_selected());
  readout->awakeFromNib();
  EXPECT_TRUE(host->edited.empty());
  EXPECT_TRUE(host->selected.empty());
}

TEST(Readout, NeverLetsADragMoveTheWindow) {
  EXPECT_FALSE(make<OpenReadout>()->mouseDownCanMoveWindow());
}

TEST(Readout, LetsGoOfEverythingItHolds) {
  const auto host = make<RecordingHost>();
  const auto other = make<RecordingHost>();
  const auto text = make<NSString>("Tremolo Depth");
  const auto colour = NSColor::colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1);
  const unsigned colour_count = colour->retainCount();
  {
    const auto readout = make<OpenReadout>();
    readout->set_callback_onObject(edited_selector, host.get());
    readout->set_selection_callback_onObject(selected_selector, host.get());
    EXPECT_EQ(host->retainCount(), 3U);
    readout->set_callback_onObject(edited_selector, other.get());
    EXPECT_EQ(host->retainCount(), 2U);
    EXPECT_EQ(other->retainCount(), 2U);
    readout->set_description(text.get());
    readout->set_colors_for_readout_info(colour.get(), colour.get());
  }
  EXPECT_EQ(host->retainCount(), 1U);
  EXPECT_EQ(other->retainCount(), 1U);
  EXPECT_EQ(text->retainCount(), 1U);
  EXPECT_EQ(colour->retainCount(), colour_count);
}

TEST(Readout, DoesNotKeepTheViewThatItLiesIn) {
  WeakRef<NSObject> gone;
  {
    class HostView : public NSView {
     public:
      using NSView::NSView;
    };
    const auto host = make<HostView>(NSMakeRect(0, 0, 200, 100));
    const auto readout = make<OpenReadout>();
    host->addSubview(readout.get());
    readout->set_callback_onObject(edited_selector, host.get());
    gone = WeakRef<NSObject>(host.get());
    EXPECT_EQ(host->retainCount(), 1U);
  }
  EXPECT_FALSE(gone);
}

}  // namespace
}  // namespace ondex
