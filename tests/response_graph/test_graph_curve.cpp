// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "foundation/NSLog.h"
#include "open_graph.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::curve_height;
using test::editor_graph;
using test::OpenGraph;

NSPoint point(double x, double y) {
  return {static_cast<CGFloat>(x), static_cast<CGFloat>(y)};
}

bool contains(const OpenGraph& graph, NSPoint where) {
  return CGPathContainsPoint(graph._curve_path->CGPath(), nullptr, where, false);
}

/// Every sample lies where the formula says: just inside it, seen from the chord that closes the curve, the
/// path has area, and just outside it has none.
void expect_curve(const OpenGraph& graph, double m, double beta) {
  constexpr double margin = 0.02;
  const double first = curve_height(5, m, beta);
  const double last = curve_height(205, m, beta);
  for (int i = 1; i < 100; ++i) {
    const double x = 5 + 2.0 * i;
    const double y = curve_height(x, m, beta);
    const double chord = first + (last - first) * i / 100;
    if (std::abs(y - chord) < 1)
      continue;
    const double inwards = y > chord ? -margin : margin;
    EXPECT_TRUE(contains(graph, point(x, y + inwards))) << "sample " << i;
    EXPECT_FALSE(contains(graph, point(x, y - inwards))) << "sample " << i;
  }
}

TEST(GraphCurve, FollowsTheFormulaAtEverySample) {
  const auto graph = editor_graph();
  for (const auto& [m, beta] :
       {std::pair{0.0F, 1.0F}, {1.0F, 1.0F}, {2.5F, 0.3F}, {0.8F, 3.0F}, {5.0F, 7.5F}}) {
    graph->set_modulation_index(m);
    graph->set_modulation_factor(beta);
    SCOPED_TRACE(testing::Message() << "m " << m << ", beta " << beta);
    expect_curve(*graph, static_cast<double>(m), static_cast<double>(beta));
  }
}

TEST(GraphCurve, WithoutModulationIsTwoPeriodsThatStartAndEndOnTheMidLine) {
  const auto graph = editor_graph();
  graph->set_modulation_factor(1);
  const CGRect box = CGPathGetBoundingBox(graph->_curve_path->CGPath());
  EXPECT_NEAR(static_cast<double>(NSMinX(box)), 5, 1e-9);
  EXPECT_NEAR(static_cast<double>(NSMaxX(box)), 205, 1e-3);
  // Crests and troughs lie half way between two samples: 40 cos(pi / 50) from the mid-line.
  EXPECT_NEAR(static_cast<double>(NSMinY(box)), 9.07893, 1e-4);
  EXPECT_NEAR(static_cast<double>(NSMaxY(box)), 88.92107, 1e-4);
  const CGPoint end = CGPathGetCurrentPoint(graph->_curve_path->CGPath());
  EXPECT_NEAR(static_cast<double>(end.x), 205, 1e-3);
  EXPECT_NEAR(static_cast<double>(end.y), 49, 1e-3);
  expect_curve(*graph, 0, 1);
}

TEST(GraphCurve, IsTwoPointsWideAndKeptForTheNextValue) {
  const auto graph = editor_graph();
  EXPECT_FALSE(graph->_curve_path);
  graph->set_modulation_index(1);
  const Ref<NSBezierPath> path = graph->_curve_path;
  EXPECT_EQ(path->lineWidth(), 2);
  graph->set_modulation_index(2);
  graph->set_modulation_factor(3);
  EXPECT_EQ(graph->_curve_path, path);
  expect_curve(*graph, 2, 3);
}

TEST(GraphCurve, NewRangesShowWithTheNextModulationValue) {
  const auto graph = editor_graph();
  graph->set_modulation_index(1);
  graph->set_x_minimum_maximum(0, 1);
  graph->set_y_minimum_maximum(-10, 10);
  expect_curve(*graph, 1, 1);
  graph->set_modulation_index(1);
  const CGRect box = CGPathGetBoundingBox(graph->_curve_path->CGPath());
  EXPECT_NEAR(static_cast<double>(NSMinY(box)), 49, 1e-4);
  EXPECT_NEAR(static_cast<double>(NSMaxY(box)), 53.4, 1e-3);
  const CGPoint end = CGPathGetCurrentPoint(graph->_curve_path->CGPath());
  EXPECT_NEAR(static_cast<double>(end.y), 53.2397992, 1e-4) << "49 + 4.4 sin(1 + sin(1))";
}

TEST(GraphCurve, AModulationThatIsNotANumberLeavesNoCurveAndTheNextOneBringsItBack) {
  const auto graph = editor_graph();
  int lines = 0;
  const NSLogHook hook([&lines](std::string_view) { ++lines; });
  for (const float value :
       {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
    graph->set_modulation_index(value);
    EXPECT_TRUE(graph->_curve_path->isEmpty());
    graph->set_modulation_index(1);
    graph->set_modulation_factor(value);
    EXPECT_TRUE(graph->_curve_path->isEmpty());
    graph->set_modulation_factor(1);
  }
  EXPECT_EQ(lines, 0);
  graph->set_modulation_index(1);
  expect_curve(*graph, 1, 1);
}

TEST(GraphCurve, AFrameOfTenPointsHasACurveWithoutArea) {
  const auto graph = make<OpenGraph>(NSMakeRect(0, 0, 10, 10));
  graph->set_modulation_index(1);
  EXPECT_EQ(graph->_graph_frame, NSMakeRect(5, 5, 0, 0));
}

}  // namespace
}  // namespace ondex
