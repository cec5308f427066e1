// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "appkit/NSStringDrawing.h"
#include "capsule_colors.h"
#include "drawing/KV_Ondex_Button_View.h"
#include "gestures.h"
#include "recording_host.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::distance;
using test::DrawnView;
using test::Pixel;
using test::RecordingHost;

constexpr NSRect label_frame = {{0, 0}, {80, 14}};

class Label : public KV_Ondex_Label_View {
 public:
  using KV_Ondex_Label_View::_info_color;
  using KV_Ondex_Label_View::_info_string_attributes;
  using KV_Ondex_Label_View::KV_Ondex_Label_View;
};

class Button : public KV_Ondex_Button_View {
 public:
  using KV_Ondex_Button_View::_info_color;
  using KV_Ondex_Button_View::_info_string_attributes;
  using KV_Ondex_Button_View::KV_Ondex_Button_View;
};

template <typename T>
const T* attribute(const NSMutableDictionary& attributes, std::string_view key) {
  return dynamic_cast<const T*>(attributes.objectForKey(key));
}

Ref<NSColor> device_color(double red, double green, double blue) {
  return NSColor::colorWithDeviceRed_green_blue_alpha(static_cast<CGFloat>(red), static_cast<CGFloat>(green),
                                                      static_cast<CGFloat>(blue), 1);
}

/// The columns, in points from the left, where the view has a pixel of mostly that colour.
struct Extent {
  double left = 1e9;
  double right = -1e9;
};
template <typename IsInk>
Extent ink_of(const DrawnView& drawn, double scale, IsInk is_ink) {
  Extent extent;
  for (int row = 0; row < drawn.height(); ++row) {
    for (int column = 0; column < drawn.width(); ++column) {
      if (is_ink(drawn.pixel(column, row)))
        extent = {std::min(extent.left, column / scale), std::max(extent.right, (column + 1) / scale)};
    }
  }
  return extent;
}

TEST(Label, AFreshOneShowsThreeDashesInBlueInTheCentre) {
  const auto label = make<Label>(label_frame);
  EXPECT_EQ(label->description()->view(), "---");
  EXPECT_TRUE(label->_info_color->isEqual(NSColor::blueColor().get()));
  constexpr double scale = 4;
  const Extent ink =
      ink_of(DrawnView(*label, scale), scale, [](const Pixel& p) { return p.blue > p.red + 0.5; });
  EXPECT_GT(ink.right - ink.left, 4);
  EXPECT_NEAR((ink.left + ink.right) / 2, 40, 0.5);
}

TEST(Label, TextAttributesAreACentredCaption) {
  const auto label = make<Label>(label_frame);
  const NSMutableDictionary& attributes = *label->_info_string_attributes;
  EXPECT_EQ(attributes.count(), 3U);
  EXPECT_EQ(attribute<NSFont>(attributes, NSFontAttributeName)->pointSize(), 9);
  EXPECT_FALSE(attribute<NSFont>(attributes, NSFontAttributeName)->isBold());
  EXPECT_EQ(attribute<NSMutableParagraphStyle>(attributes, NSParagraphStyleAttributeName)->alignment(),
            NSCenterTextAlignment);
  EXPECT_EQ(attributes.objectForKey(NSForegroundColorAttributeName), label->_info_color.get());
}

TEST(Button, TextAttributesAreACentredTitle) {
  const auto button = make<Button>(label_frame);
  const NSMutableDictionary& attributes = *button->_info_string_attributes;
  EXPECT_EQ(attribute<NSFont>(attributes, NSFontAttributeName)->pointSize(), 12);
  EXPECT_TRUE(attribute<NSFont>(attributes, NSFontAttributeName)->isBold());
  EXPECT_EQ(attribute<NSMutableParagraphStyle>(attributes, NSParagraphStyleAttributeName)->alignment(),
            NSCenterTextAlignment);
}

TEST(Label, NullTextAndNullColorAreIgnored) {
  const auto label = make<Label>(label_frame);
  const auto color = device_color(1, 0, 0);
  label->set_description(make<NSString>("Left").get());
  label->set_colors_for_info(color.get());
  label->set_description(nullptr);
  label->set_colors_for_info(nullptr);
  EXPECT_EQ(label->description()->view(), "Left");
  EXPECT_EQ(label->_info_color, color.get());
}

TEST(Label, KeepsTheTextAndColorItIsGivenAndReleasesThem) {
  const auto text = make<NSString>("Right");
  const auto color = device_color(1, 0, 0);
  {
    const auto label = make<Label>(label_frame);
    label->set_description(text.get());
    label->set_colors_for_info(color.get());
    EXPECT_EQ(text->retainCount(), 2U);
    EXPECT_EQ(color->retainCount(), 3U) << "by the field and by the attributes";
    label->set_description(make<NSString>("Left").get());
    label->set_colors_for_info(device_color(0, 1, 0).get());
    EXPECT_EQ(text->retainCount(), 1U);
    EXPECT_EQ(color->retainCount(), 1U);
    label->set_description(text.get());
    label->set_colors_for_info(color.get());
  }
  EXPECT_EQ(text->retainCount(), 1U);
  EXPECT_EQ(color->retainCount(), 1U);
}

TEST(Label, ANewColorReplacesNothingButTheForeground) {
  const auto label = make<Label>(label_frame);
  const NSObject* style = label->_info_string_attributes->objectForKey(NSParagraphStyleAttributeName);
  const auto color = device_color(1, 0, 0);
  label->set_colors_for_info(color.get());
  EXPECT_EQ(label->_info_string_attributes->objectForKey(NSForegroundColorAttributeName), color.get());
  EXPECT_EQ(label->_info_string_attributes->objectForKey(NSParagraphStyleAttributeName), style);
  EXPECT_EQ(label->_info_string_attributes->count(), 3U);
}

TEST(Label, TheGlassLiesOverTheLetters) {
  const auto red = device_color(1, 0, 0);
  for (const double scale : {1.0, 2.0}) {
    const auto label = make<Label>(label_frame);
    label->set_colors_for_info(red.get());
    label->set_description(make<NSString>("\u2588\u2588\u2588").get());  // full blocks: ink without gaps
    const DrawnView drawn(*label, scale);
    const Pixel expected = over(test::shine(drawn.centre(7.2), 14), {1, 0, 0, 1});
    EXPECT_GT(expected.green, 0.1);
    EXPECT_LE(distance(drawn.at(40.2, 7.2), expected), 1.5) << drawn.at(40.2, 7.2);
  }
}

/// Its middle lies further out than any whole number of pixels.
TEST(Label, OfFourThousandMillionPointsHasALeftEnd) {
  constexpr CGFloat most = 4e9;
  for (const double scale : {1.0, 2.0, 4.0}) {
    const DrawnView drawn(NSMakeSize(40, 14), scale,
                          [](CGContextRef) { make<Label>(NSMakeRect(0, 0, most, 14))->drawRect({}); });
    EXPECT_EQ(drawn, DrawnView(NSMakeSize(40, 14), scale,
                               [](CGContextRef) { make<Label>(NSMakeRect(0, 0, 4000, 14))->drawRect({}); }));
  }
}

TEST(Label, APressNeverDragsTheWindow) {
  EXPECT_FALSE(make<Label>(label_frame)->mouseDownCanMoveWindow());
  EXPECT_FALSE(make<Button>(label_frame)->mouseDownCanMoveWindow());
}

TEST(Label, IsMadeByItsClass) {
  const Ref<NSObject> label = KV_Ondex_Label_View::class_.initWithFrame(label_frame);
  const Ref<NSObject> button = KV_Ondex_Button_View::class_.initWithFrame(label_frame);
  EXPECT_EQ(&label->isa(), &KV_Ondex_Label_View::class_);
  EXPECT_EQ(&button->isa(), &KV_Ondex_Button_View::class_);
  EXPECT_EQ(label->isa().name, "KV_Ondex_Label_View");
  EXPECT_EQ(button->isa().name, "KV_Ondex_Button_View");
  EXPECT_TRUE(button->isKindOfClass(NSView::class_));
}

// The button's action

TEST(Button, WithoutAHostAPressIsIgnored) {
  test::press(*make<Button>(label_frame), 1);
}

TEST(Button, ReportsOncePerPressWhereverTheMouseIsReleased) {
  const auto button = make<Button>(label_frame);
  const auto host = make<RecordingHost>();
  button->set_callback_onObject(test::edited_selector, host.get());
  test::press(*button, 1, 5, 5);
  EXPECT_EQ(host->edited, std::vector<NSObject*>{button.get()}) << "at once, not when the mouse is released";
  test::drag_to(*button, 500, 500);
  test::lift(*button);
  EXPECT_EQ(host->edited.size(), 1U);
  test::press(*button, 2, 5, 5);
  EXPECT_EQ(host->edited.size(), 2U);
}

TEST(Button, ANullSelectorOrHostKeepsThePreviousPair) {
  const auto button = make<Button>(label_frame);
  const auto host = make<RecordingHost>();
  const auto other = make<RecordingHost>();
  button->set_callback_onObject(test::edited_selector, host.get());
  button->set_callback_onObject(SEL(), other.get());
  button->set_callback_onObject(test::selected_selector, nullptr);
  test::press(*button, 1);
  EXPECT_EQ(host->edited.size(), 1U);
  EXPECT_TRUE(other->edited.empty());
}

TEST(Button, RetainsItsHostUntilItIsReplacedOrTheButtonGoes) {
  const auto first = make<RecordingHost>();
  const auto second = make<RecordingHost>();
  auto button = make<Button>(label_frame);
  button->set_callback_onObject(test::edited_selector, first.get());
  EXPECT_EQ(first->retainCount(), 2U);
  button->set_callback_onObject(test::edited_selector, second.get());
  EXPECT_EQ(first->retainCount(), 1U);
  EXPECT_EQ(second->retainCount(), 2U);
  button = nullptr;
  EXPECT_EQ(second->retainCount(), 1U);
}

TEST(Button, MayGoWhileItsActionRuns) {
  auto button = make<Button>(label_frame);
  const auto host = make<RecordingHost>();
  Button* pressed = button.get();
  host->on_edited = [&button] { button = nullptr; };
  pressed->set_callback_onObject(test::edited_selector, host.get());
  test::press(*pressed, 1);
  EXPECT_EQ(host->edited.size(), 1U);
  EXPECT_EQ(host->retainCount(), 1U);
}

}  // namespace
}  // namespace ondex
