// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "open_graph.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::editor_graph;
using test::OpenGraph;

constexpr NSRect frame = {{3, 4}, {210, 98}};
constexpr bool wide = sizeof(CGFloat) == sizeof(double);

Ref<OpenGraph> modulated(float m, float beta) {
  auto graph = make<OpenGraph>(frame);
  graph->set_modulation_index(m);
  graph->set_modulation_factor(beta);
  return graph;
}

TEST(Response, IsASineWithoutModulation) {
  const auto graph = make<OpenGraph>(frame);
  for (const double x : {-3.0, 0.0, 0.1, 1.0, 2.5, 6.28, 12.5}) {
    const auto narrowed = static_cast<float>(x);
    EXPECT_NEAR(static_cast<double>(graph->response_for_value(narrowed)),
                std::sin(static_cast<double>(narrowed)), 6e-8);
  }
}

TEST(Response, OfNothingIsNothing) {
  for (const float m : {0.0F, 1.0F, -2.5F, 100.0F}) {
    for (const float beta : {0.0F, 1.0F, 0.01F, 100.0F})
      EXPECT_EQ(modulated(m, beta)->response_for_value(0), 0.0F);
  }
}

TEST(Response, AtAQuarterPeriodWithEqualFrequenciesIsTheCosineOfOne) {
  EXPECT_NEAR(modulated(1, 1)->response_for_value(1.5707964F), 0.5403023F, 2e-7F);
}

/// Worked out with every narrowing to single precision: of beta x and of x + m a, and of both sines.
struct Sample {
  float x, m, beta, response;
};
constexpr Sample samples[] = {
    {0.5F, 0, 1, 0.47942555F},
    {2.0F, 1, 1, 0.230211675F},
    {11.3F, 0.75F, 97.3F, -0.967920959F},  // -0.967932056 with the whole of double precision
    {3.3F, 2.5F, 0.25F, -0.911458731F},
    {-1.25F, 1.5F, 2, -0.838151038F},
    {9.0F, 100, 100, 0.922850132F},
};

TEST(Response, TakesItsSinesInSinglePrecision) {
  for (const Sample& s : samples) {
    const float response = modulated(s.m, s.beta)->response_for_value(s.x);
    // In the 32-bit layout the sum itself is rounded too, by up to 8e-6 near 100.
    EXPECT_NEAR(response, s.response, wide ? 1.2e-7F : 8e-6F) << s.x << ' ' << s.m << ' ' << s.beta;
  }
}

TEST(Response, OfWhatIsNotANumberIsNotANumber) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float infinity = std::numeric_limits<float>::infinity();
  EXPECT_TRUE(std::isnan(make<OpenGraph>(frame)->response_for_value(nan)));
  EXPECT_TRUE(std::isnan(make<OpenGraph>(frame)->response_for_value(infinity)));
  EXPECT_TRUE(std::isnan(modulated(nan, 1)->response_for_value(1)));
}

// The axes

TEST(GraphAxes, AFreshGraphShowsOnePeriodOfTheWholeAmplitude) {
  const auto graph = make<OpenGraph>(frame);
  EXPECT_EQ(graph->location_for_x(0), 5);
  EXPECT_NEAR(graph->location_for_x(6.2831855F), 205, 2e-5F);
  EXPECT_EQ(graph->location_for_y(-1), 5);
  EXPECT_NEAR(graph->location_for_y(1), 93, 1e-5F);
  EXPECT_NEAR(graph->location_for_y(0), 49, 1e-5F);
}

TEST(GraphAxes, TheEndsOfTheRangesLieOnTheEdgesOfTheFrame) {
  const auto graph = editor_graph();
  graph->set_x_minimum_maximum(-2, 6);
  EXPECT_EQ(graph->location_for_x(-2), 5);
  EXPECT_EQ(graph->location_for_x(6), 205);
  EXPECT_EQ(graph->location_for_x(0), 55);
  EXPECT_EQ(graph->location_for_y(-1.1F), 5);
  EXPECT_NEAR(graph->location_for_y(1.1F), 93, 1e-5F);
  EXPECT_NEAR(graph->location_for_y(0.5F), 69, 1e-5F);
}

TEST(GraphAxes, LocationsAndValuesAreInverse) {
  const auto graph = editor_graph();
  for (const float x : {0.0F, 0.25F, 3.0F, 9.5F, test::four_pi})
    EXPECT_NEAR(graph->x_for_location(graph->location_for_x(x)), x, 2e-6F);
  for (const float y : {-1.1F, -0.3F, 0.0F, 0.7F, 1.1F})
    EXPECT_NEAR(graph->y_for_location(graph->location_for_y(y)), y, 4e-7F);
  EXPECT_NEAR(graph->x_for_location(105), 6.2831855F, 1e-6F);
  EXPECT_NEAR(graph->y_for_location(69), 0.5F, 2e-7F);
}

TEST(GraphAxes, NeedNotBeginAtZero) {
  const auto graph = make<OpenGraph>(NSMakeRect(0, 0, 210, 98));
  graph->set_x_minimum_maximum(3, 7);   // 200 points from 5 on
  graph->set_y_minimum_maximum(-2, 6);  // 88 points from 5 on
  EXPECT_FLOAT_EQ(graph->location_for_x(4), 55);
  EXPECT_FLOAT_EQ(graph->x_for_location(55), 4);
  EXPECT_FLOAT_EQ(graph->location_for_y(0), 27);
  EXPECT_FLOAT_EQ(graph->y_for_location(27), 0);
}

TEST(GraphAxes, AnEmptyRangeDoesNotStopTheGraph) {
  const auto graph = editor_graph();
  graph->set_x_minimum_maximum(1, 1);
  graph->set_y_minimum_maximum(2, 2);
  graph->set_modulation_index(1);
  EXPECT_FALSE(std::isfinite(graph->location_for_x(2)));
}

}  // namespace
}  // namespace ondex
