// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "appkit/NSWindow.h"
#include "canvas.h"
#include "windows/headless.h"

namespace cocoa {
namespace {

class ChildWindowTest : public testing::Test {
 protected:
  ChildWindowTest() {
    parent->setWindowSystem(&system);
    parent->makeKeyAndOrderFront(nullptr);
    system.dispatch();
  }

  NSAutoreleasePool pool;
  HeadlessWindowSystem system;
  Ref<NSWindow> parent = make<NSWindow>(NSMakeRect(100, 100, 200, 100), NSTitledWindowMask);
  Ref<NSWindow> child = make<NSWindow>(NSMakeRect(110, 120, 50, 30), NSBorderlessWindowMask);
};

TEST_F(ChildWindowTest, ShowsWithItsParentAsAPopup) {
  parent->addChildWindow_ordered(child.get(), NSWindowAbove);
  EXPECT_TRUE(child->isVisible());
  ASSERT_EQ(system.windows().size(), 2U);
  EXPECT_EQ(system.windows()[1]->kind(), WindowKind::popup);
  EXPECT_EQ(child->parentWindow(), parent.get());
  EXPECT_EQ(child->retainCount(), 2U);
}

TEST_F(ChildWindowTest, MovesWithItsParentButNotTheParentWithIt) {
  parent->addChildWindow_ordered(child.get(), NSWindowAbove);
  system.windows()[0]->move({130, 90});
  system.dispatch();
  EXPECT_EQ(child->frame(), NSMakeRect(140, 110, 50, 30));
  child->setFrame_display(NSMakeRect(0, 0, 50, 30), false);
  EXPECT_EQ(parent->frame().origin, (NSPoint{130, 90}));
}

TEST_F(ChildWindowTest, RemovingReleasesItButLeavesItOnTheScreen) {
  parent->addChildWindow_ordered(child.get(), NSWindowAbove);
  parent->removeChildWindow(child.get());
  EXPECT_EQ(child->parentWindow(), nullptr);
  EXPECT_EQ(child->retainCount(), 1U);
  EXPECT_TRUE(child->isVisible());
}

TEST_F(ChildWindowTest, ReleasingTheLastReferenceTakesItOffTheScreen) {
  parent->addChildWindow_ordered(child.get(), NSWindowAbove);
  parent->removeChildWindow(child.get());
  child = nullptr;
  EXPECT_EQ(system.windows().size(), 1U);
}

TEST_F(ChildWindowTest, GoesOffTheScreenWithItsParentWhoeverStillHoldsIt) {
  parent->addChildWindow_ordered(child.get(), NSWindowAbove);
  parent = nullptr;
  EXPECT_EQ(child->parentWindow(), nullptr);
  EXPECT_FALSE(child->isVisible());
  EXPECT_TRUE(system.windows().empty());
}

TEST_F(ChildWindowTest, GetsAWindowOfItsOwnAgainWithAParentThatWasDestroyed) {
  parent->addChildWindow_ordered(child.get(), NSWindowAbove);
  system.windows()[0]->destroyFromOutside();
  system.dispatch();
  EXPECT_FALSE(child->isVisible());
  parent->orderFront(nullptr);
  system.dispatch();
  ASSERT_EQ(system.windows().size(), 2U);
  EXPECT_EQ(system.windows()[1]->parent(), parent->platformWindow());
  EXPECT_TRUE(system.windows()[1]->viewable());
}

TEST_F(ChildWindowTest, LeavesTheWindowSystemWithAParentThatIsShownByAnother) {
  HeadlessWindowSystem other;
  const auto owner = make<NSWindow>(NSMakeRect(0, 0, 50, 50), NSTitledWindowMask);
  owner->setWindowSystem(&other);
  parent->addChildWindow_ordered(child.get(), NSWindowAbove);
  parent->setOwnerWindow(owner.get());
  EXPECT_TRUE(system.windows().empty());
  EXPECT_FALSE(child->isVisible());
}

TEST_F(ChildWindowTest, AViewThatMovedToANewerWindowStaysThere) {
  const auto panel = make<NSView>(NSMakeRect(0, 0, 50, 30));
  child->setContentView(panel.get());
  const auto newer = make<NSWindow>(NSMakeRect(0, 0, 50, 30), NSBorderlessWindowMask);
  newer->setContentView(panel.get());
  child = nullptr;
  EXPECT_EQ(panel->window(), newer.get());
}

TEST_F(ChildWindowTest, ADelegateMayRemoveAChildWhileItsParentGoes) {
  struct Remover : NSWindowDelegate {
    void windowDidResignKey(NSWindow* window) override {
      if (window->parentWindow())
        window->parentWindow()->removeChildWindow(window);
    }
  } remover;
  child = make<NSWindow>(NSMakeRect(0, 0, 50, 30), NSTitledWindowMask);
  child->setDelegate(&remover);
  parent->addChildWindow_ordered(child.get(), NSWindowAbove);
  child->makeKeyAndOrderFront(nullptr);
  system.dispatch();
  ASSERT_TRUE(child->isKeyWindow());
  parent = nullptr;
  EXPECT_EQ(child->parentWindow(), nullptr);
  child->setDelegate(nullptr);
}

TEST_F(ChildWindowTest, TakesItsContentFromTheWindowThatHadIt) {
  const auto panel = make<NSView>(NSMakeRect(0, 0, 50, 30));
  child->setContentView(panel.get());
  const auto newer = make<NSWindow>(NSMakeRect(0, 0, 60, 40), NSBorderlessWindowMask);
  newer->setContentView(panel.get());
  EXPECT_NE(child->contentView(), panel.get());
  EXPECT_EQ(child->contentView()->window(), child.get());
  EXPECT_EQ(child->contentView()->frame(), NSMakeRect(0, 0, 50, 30));
  parent->contentView()->addSubview(panel.get());
  EXPECT_NE(newer->contentView(), panel.get());
  EXPECT_EQ(panel->window(), parent.get());
}

TEST_F(ChildWindowTest, ContentThatIsRemovedLeavesTheWindow) {
  const auto panel = make<NSView>(NSMakeRect(0, 0, 50, 30));
  child->setContentView(panel.get());
  panel->removeFromSuperview();
  EXPECT_EQ(panel->window(), nullptr);
  EXPECT_EQ(panel->retainCount(), 1U);
  ASSERT_TRUE(child->contentView());
  EXPECT_NE(child->contentView(), panel.get());
}

TEST_F(ChildWindowTest, IsNeverItsOwnAncestor) {
  parent->addChildWindow_ordered(child.get(), NSWindowAbove);
  child->addChildWindow_ordered(parent.get(), NSWindowAbove);
  EXPECT_EQ(parent->parentWindow(), nullptr);
}

TEST_F(ChildWindowTest, BorderlessWindowsTakeNoKeys) {
  EXPECT_FALSE(child->canBecomeKeyWindow());
  parent->addChildWindow_ordered(child.get(), NSWindowAbove);
  child->makeKeyAndOrderFront(nullptr);
  system.dispatch();
  EXPECT_TRUE(parent->isKeyWindow());
  EXPECT_FALSE(child->isKeyWindow());
}

}  // namespace
}  // namespace cocoa
