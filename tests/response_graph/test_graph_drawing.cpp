// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "capsule_colors.h"
#include "drawing/capsule.h"
#include "drawn_view.h"
#include "open_graph.h"
#include "redisplay.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::device_color;
using test::distance;
using test::DrawnView;
using test::editor_graph;
using test::glass;
using test::grey;
using test::inner_share;
using test::OpenGraph;
using test::over;
using test::Pixel;
using test::tri;

constexpr double height = 98;

/// The graph's glass reaches further than that of other capsules, and fades out.
Pixel shine(double y) {
  const double t = y / height;
  return {tri(t), tri(t), tri(t), t >= 0.15 && t <= 0.85 ? std::max(0.0, glass(t)) : 0};
}

Pixel panel(double y) {
  return grey(0.1 * tri(y / height));
}

void expect_pixel(const Pixel& actual, const Pixel& expected) {
  EXPECT_LE(distance(actual, expected), 1.5) << actual << " is not " << expected;
}

class GraphDrawing : public testing::TestWithParam<double> {};
INSTANTIATE_TEST_SUITE_P(Scales, GraphDrawing, testing::Values(1.0, 2.0));

TEST(Graph, LaysItselfOutInTheBoundsItIsMadeWith) {
  const auto graph = editor_graph();
  EXPECT_EQ(graph->_body_rect, NSMakeRect(0, 0, 210, 98));
  EXPECT_EQ(graph->_left_rect, NSMakeRect(0, 0, 5, 98));
  EXPECT_EQ(graph->_right_rect, NSMakeRect(205, 0, 5, 98));
  EXPECT_EQ(graph->_body_panel_rect, NSMakeRect(5, 0, 200, 98));
  EXPECT_EQ(graph->_control_rect, NSMakeRect(5, 5, 200, 88));
  EXPECT_EQ(graph->_graph_frame, graph->_control_rect);
}

TEST_P(GraphDrawing, BeforeAnyModulationShowsOnlyTheCapsuleUnderASoftBand) {
  const DrawnView drawn(*editor_graph(), GetParam());
  // The band fades in at t = 0.2, 19.6 points, and out at 0.8.
  for (const double y : {0.2, 10.0, 15.2, 19.0, 22.0, 30.0, 49.0, 76.0, 79.0, 83.0, 97.7}) {
    for (const double x : {6.0, 105.0, 204.0}) {
      SCOPED_TRACE(testing::Message() << x << ", " << y);
      expect_pixel(drawn.at(x, y), over(shine(drawn.centre(y)), panel(drawn.centre(y))));
    }
  }
}

TEST_P(GraphDrawing, CapsFadeFromBlackToGreyTips) {
  const DrawnView drawn(*editor_graph(), GetParam());
  const double y = drawn.centre(49);
  for (const double x : {1.6, 3.2, 206.7, 208.2}) {
    const double t = x < 5 ? (5 - drawn.centre(x)) / 5 : (drawn.centre(x) - 205) / 5;
    expect_pixel(drawn.at(x, 49), over(shine(y), grey(0.25 * (1 - inner_share(t)))));
  }
  EXPECT_EQ(drawn.at(0.2, 0.2), Pixel{});
}

TEST_P(GraphDrawing, APureSineIsItsOwnMirrorImage) {
  const auto graph = editor_graph();
  const auto warm = device_color(0.9, 0.62, 0.5, 0.666);
  graph->set_curve_color_fill_color(warm.get(), warm.get());
  graph->set_modulation_index(0);
  const DrawnView drawn(*graph, GetParam());
  const auto turned = [&drawn](int x, int y) {
    return drawn.pixel(drawn.width() - 1 - x, drawn.height() - 1 - y);
  };
  // Edges fall between the steps of smoothing on both sides of a half turn.
  constexpr double smoothing = 255.0 / 15;
  for (int y = 0; y < drawn.height(); ++y) {
    for (int x = 0; x < drawn.width(); ++x)
      EXPECT_LE(distance(drawn.pixel(x, y), turned(x, y)), smoothing) << x << ", " << y;
  }
}

TEST_P(GraphDrawing, FillsTheCurveToItsChordThenStrokesItUnderTheShine) {
  const auto graph = editor_graph();
  const auto stroke = device_color(0, 1, 0, 0.5);
  const auto fill = device_color(1, 0, 0, 0.25);
  graph->set_curve_color_fill_color(stroke.get(), fill.get());
  graph->set_modulation_factor(1);
  const DrawnView drawn(*graph, GetParam());
  const auto under_glass = [&](double y, double filled, bool stroked) {
    Pixel p = over({1, 0, 0, 0.25 * filled}, panel(drawn.centre(y)));
    if (stroked)
      p = over({0, 1, 0, 0.5}, p);
    return over(shine(drawn.centre(y)), p);
  };
  // Crests at 30 and 130 points, troughs at 80 and 180, 40 points from the mid-line at 49.
  for (const double y : {60.0, 75.0})
    expect_pixel(drawn.at(30, y), under_glass(y, 1, false));
  expect_pixel(drawn.at(80, 30), under_glass(30, 1, false));
  expect_pixel(drawn.at(30, 30), under_glass(30, 0, false));
  expect_pixel(drawn.at(80, 60), under_glass(60, 0, false));
  // The stroke reaches a point to either side of the crest, which runs at 88.92107 there: of the pixel above
  // 88 the fill covers all but the top.
  const double filled = std::min(1.0, 0.92107 * GetParam());
  expect_pixel(drawn.at(30, 88.2), under_glass(88.2, filled, true));
  expect_pixel(drawn.at(30, 91), under_glass(91, 0, false));
}

TEST_P(GraphDrawing, WithoutAFillColorTheAreaIsTranslucentBlueWithoutStroke) {
  const auto graph = editor_graph();
  graph->set_curve_color_fill_color(device_color(0, 1, 0, 1).get(), nullptr);
  graph->set_modulation_factor(1);
  const DrawnView drawn(*graph, GetParam());
  const auto at = [&](double y, bool filled) {
    const Pixel p = panel(drawn.centre(y));
    return over(shine(drawn.centre(y)), filled ? over({0, 0, 1, 0.4}, p) : p);
  };
  expect_pixel(drawn.at(30, 75), at(75, true));
  expect_pixel(drawn.at(30, 60), at(60, true));
  expect_pixel(drawn.at(30, 91), at(91, false));
}

TEST(Graph, AFreshOneGetsATranslucentBlackCurveAndNoFill) {
  const auto graph = make<OpenGraph>(NSMakeRect(0, 0, 100, 50));
  graph->set_curve_color_fill_color(nullptr, nullptr);
  graph->set_modulation_index(0);
  EXPECT_EQ(graph->_curve_color->redComponent(), 0);
  EXPECT_EQ(graph->_curve_color->greenComponent(), 0);
  EXPECT_EQ(graph->_curve_color->blueComponent(), 0);
  EXPECT_EQ(graph->_curve_color->alphaComponent(), CGFloat(0.3));
  EXPECT_FALSE(graph->_fill_color);
}

TEST(Graph, TheCurveIsClippedToItsFrame) {
  const auto graph = editor_graph();
  const auto green = device_color(0, 1, 0, 1);
  graph->set_curve_color_fill_color(green.get(), green.get());
  graph->set_y_minimum_maximum(-0.5F, 0.5F);
  graph->set_modulation_factor(1);
  const DrawnView drawn(*graph, 2);
  EXPECT_GT(drawn.at(30, 92.7).green, 0.9);
  expect_pixel(drawn.at(30, 93.2), panel(drawn.centre(93.2)));
  EXPECT_GT(drawn.at(80, 5.2).green, 0.9);
  expect_pixel(drawn.at(80, 4.7), panel(drawn.centre(4.7)));
}

TEST(Graph, KeepsColorsUntilOthersComeAndReleasesThem) {
  const auto curve = device_color(1, 0, 0, 1);
  const auto fill = device_color(0, 1, 0, 1);
  const auto text = device_color(0, 0, 1, 1);
  {
    const auto graph = editor_graph();
    graph->set_curve_color_fill_color(curve.get(), fill.get());
    graph->set_text_color(text.get());
    graph->set_curve_color_fill_color(nullptr, nullptr);
    graph->set_text_color(nullptr);
    EXPECT_EQ(graph->_curve_color, curve.get());
    EXPECT_EQ(graph->_fill_color, fill.get());
    EXPECT_EQ(graph->_text_color, text.get());
    EXPECT_EQ(curve->retainCount(), 2U);
    graph->set_curve_color_fill_color(fill.get(), nullptr);
    EXPECT_EQ(curve->retainCount(), 1U);
    EXPECT_EQ(fill->retainCount(), 3U);
  }
  EXPECT_EQ(fill->retainCount(), 1U);
  EXPECT_EQ(text->retainCount(), 1U);
}

TEST(Graph, StartsWithABlackTextColor) {
  const auto graph = editor_graph();
  EXPECT_TRUE(graph->_text_color->isEqual(device_color(0, 0, 0, 1).get()));
}

TEST(Graph, TheTextColorChangesNothingThatIsDrawn) {
  const auto graph = editor_graph();
  graph->set_modulation_index(1);
  const DrawnView before(*graph, 1);
  graph->set_text_color(device_color(1, 1, 1, 1).get());
  graph->awakeFromNib();
  graph->draw_background();
  EXPECT_EQ(DrawnView(*graph, 1), before);
}

TEST(Graph, IsMadeByItsClassAndKeepsOneColorSpace) {
  const Ref<NSObject> made = KV_FM_Oscillator_Response_View::class_.initWithFrame(NSMakeRect(0, 0, 20, 20));
  EXPECT_EQ(&made->isa(), &KV_FM_Oscillator_Response_View::class_);
  EXPECT_EQ(made->isa().name, "KV_FM_Oscillator_Response_View");
  EXPECT_EQ(editor_graph()->get_RGB_color_space(), editor_graph()->get_RGB_color_space());
}

using GraphRedisplay = test::Redisplay<KV_FM_Oscillator_Response_View>;

TEST_F(GraphRedisplay, ComesWithEachModulationAndTextColor) {
  EXPECT_EQ(drawn_after([this] { view->set_modulation_index(2); }), all_of_it);
  EXPECT_EQ(drawn_after([this] { view->set_modulation_factor(3); }), all_of_it);
  EXPECT_EQ(drawn_after([this] { view->set_text_color(NSColor::blueColor().get()); }), all_of_it);
  EXPECT_EQ(drawn_after([this] { view->set_text_color(nullptr); }), all_of_it);
}

TEST_F(GraphRedisplay, DoesNotComeWithRangesAndCurveColors) {
  EXPECT_EQ(drawn_after([this] { view->set_x_minimum_maximum(0, 1); }), nothing);
  EXPECT_EQ(drawn_after([this] { view->set_y_minimum_maximum(0, 1); }), nothing);
  EXPECT_EQ(drawn_after([this] {
              view->set_curve_color_fill_color(NSColor::blueColor().get(), NSColor::blueColor().get());
            }),
            nothing);
}

}  // namespace
}  // namespace ondex
