// SPDX-License-Identifier: MIT
#include "appkit/NSView.h"

#include <gtest/gtest.h>

#include "appkit/NSEvent.h"
#include "canvas.h"

namespace cocoa {
namespace {

Ref<NSView> view_at(CGFloat x, CGFloat y, CGFloat w, CGFloat h) {
  return make<NSView>(NSMakeRect(x, y, w, h));
}

TEST(NSView, OwnsItsSubviewsAndForgetsThemWhenTheyGo) {
  const auto parent = view_at(0, 0, 100, 100);
  const auto child = view_at(0, 0, 10, 10);
  parent->addSubview(child.get());
  EXPECT_EQ(child->retainCount(), 2U);
  EXPECT_EQ(child->superview(), parent.get());
  child->removeFromSuperview();
  EXPECT_EQ(child->retainCount(), 1U);
  EXPECT_EQ(child->superview(), nullptr);
}

TEST(NSView, OutlivesItsSuperview) {
  auto parent = view_at(0, 0, 100, 100);
  const auto child = view_at(0, 0, 10, 10);
  parent->addSubview(child.get());
  parent = nullptr;
  EXPECT_EQ(child->superview(), nullptr);
}

TEST(NSView, AddingAgainBringsToTheFrontWithoutCountingTwice) {
  const auto parent = view_at(0, 0, 100, 100);
  const auto a = view_at(0, 0, 10, 10);
  const auto b = view_at(0, 0, 10, 10);
  parent->addSubview(a.get());
  parent->addSubview(b.get());
  parent->addSubview(a.get());
  ASSERT_EQ(parent->subviews().size(), 2U);
  EXPECT_EQ(parent->subviews().back(), a);
  EXPECT_EQ(a->retainCount(), 2U);
}

TEST(NSView, MovesBetweenParentsAndNeverIntoItself) {
  const auto a = view_at(0, 0, 100, 100);
  const auto b = view_at(0, 0, 100, 100);
  const auto child = view_at(0, 0, 10, 10);
  a->addSubview(child.get());
  b->addSubview(child.get());
  EXPECT_TRUE(a->subviews().empty());
  EXPECT_EQ(child->superview(), b.get());
  child->addSubview(b.get());
  EXPECT_EQ(b->superview(), nullptr);
}

TEST(NSView, HitTestFindsTheFrontMostViewAtAPointOfTheSuperview) {
  const auto root = view_at(10, 10, 100, 100);
  const auto back = view_at(20, 20, 40, 40);
  const auto front = view_at(40, 40, 40, 40);
  root->addSubview(back.get());
  root->addSubview(front.get());
  EXPECT_EQ(root->hitTest({10 + 45, 10 + 45}), front.get());
  EXPECT_EQ(root->hitTest({10 + 25, 10 + 25}), back.get());
  EXPECT_EQ(root->hitTest({10 + 5, 10 + 5}), root.get());
  EXPECT_EQ(root->hitTest({5, 5}), nullptr);
  front->setHidden(true);
  EXPECT_EQ(root->hitTest({10 + 45, 10 + 45}), back.get());
}

TEST(NSView, TheLowerLeftEdgeBelongsToAViewTheUpperRightDoesNot) {
  const auto root = view_at(0, 0, 10, 10);
  EXPECT_EQ(root->hitTest({0, 0}), root.get());
  EXPECT_EQ(root->hitTest({10, 5}), nullptr);
  EXPECT_EQ(root->hitTest({5, 10}), nullptr);
}

TEST(NSView, ConvertsBetweenViewsAndTheWindow) {
  const auto root = view_at(0, 0, 200, 200);
  const auto box = view_at(20, 30, 100, 100);
  const auto inner = view_at(5, 6, 50, 50);
  root->addSubview(box.get());
  box->addSubview(inner.get());
  EXPECT_EQ(inner->convertPoint_fromView({30, 40}, nullptr), (NSPoint{5, 4}));
  EXPECT_EQ(inner->convertPoint_toView({5, 4}, nullptr), (NSPoint{30, 40}));
  EXPECT_EQ(inner->convertPoint_toView({1, 1}, box.get()), (NSPoint{6, 7}));
}

TEST(NSView, SubviewsFollowAsTheirAutoresizingMasksSay) {
  const auto parent = view_at(0, 0, 100, 100);
  const auto fixed = view_at(10, 10, 20, 20);
  const auto right = view_at(70, 10, 20, 20);
  const auto wide = view_at(10, 40, 80, 20);
  const auto middle = view_at(40, 70, 20, 20);
  right->setAutoresizingMask(NSViewMinXMargin);
  wide->setAutoresizingMask(NSViewWidthSizable | NSViewMinYMargin);
  middle->setAutoresizingMask(NSViewMinXMargin | NSViewMaxXMargin);
  for (const auto& view : {fixed, right, wide, middle})
    parent->addSubview(view.get());
  parent->setFrameSize({140, 130});
  EXPECT_EQ(fixed->frame(), NSMakeRect(10, 10, 20, 20));
  EXPECT_EQ(right->frame(), NSMakeRect(110, 10, 20, 20));
  EXPECT_EQ(wide->frame(), NSMakeRect(10, 70, 120, 20));
  EXPECT_EQ(middle->frame(), NSMakeRect(60, 70, 20, 20));
}

class EventListener : public NSView {
 public:
  using NSView::NSView;
  void scrollWheel(NSEvent*) override { ++wheels; }
  int wheels = 0;
};

TEST(NSView, PassesOnWhatItDoesNotHandle) {
  const auto listener = make<EventListener>(NSMakeRect(0, 0, 10, 10));
  const auto child = view_at(0, 0, 10, 10);
  listener->addSubview(child.get());
  child->scrollWheel(make<NSEvent>(WindowEvent{}, nullptr).get());
  EXPECT_EQ(listener->wheels, 1);
}

TEST(NSView, PressesMoveTheWindowOnlyWhereItShinesThrough) {
  EXPECT_TRUE(view_at(0, 0, 1, 1)->mouseDownCanMoveWindow());
  EXPECT_FALSE(make<ColorView>(NSMakeRect(0, 0, 1, 1), red, true)->mouseDownCanMoveWindow());
}

}  // namespace
}  // namespace cocoa
