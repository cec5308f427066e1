// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <optional>

#include "quartz/CGWindowLevel.h"
#include "window_fixture.h"

namespace cocoa {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OwnedWindowTest : public WindowFixture {
 protected:
  OwnedWindowTest() {
    owner->setWindowSystem(&system);
    owner->makeKeyAndOrderFront(nullptr);
    turn();
  }

  struct Closings : NSWindowDelegate {
    void windowWillClose(NSWindow* window) override { closed.push_back(window); }
    std::vector<NSWindow*> closed;
  };

  Ref<NSWindow> owner = make<NSWindow>(NSMakeRect(400, 300, 200, 100), NSTitledWindowMask);
  Ref<NSWindow> owned = make<NSWindow>(NSMakeRect(0, 0, 81, 40), NSTitledWindowMask);
  Closings closings;
};

TEST_F(OwnedWindowTest, IsShownByTheSameWindowSystemAsAPanelOfItsOwner) {
  owned->setOwnerWindow(owner.get());
  owned->orderFront(nullptr);
  turn();
  ASSERT_EQ(system.windows().size(), 2U);
  EXPECT_EQ(shown().kind(), WindowKind::panel);
  EXPECT_EQ(shown().parent(), owner->platformWindow());
  EXPECT_EQ(owned->ownerWindow(), owner.get());
  EXPECT_THAT(owner->ownedWindows(), ElementsAre(owned.get()));
  EXPECT_EQ(owned->retainCount(), 1U);
  EXPECT_EQ(owner->retainCount(), 1U);
}

TEST_F(OwnedWindowTest, FirstShowsOverTheMiddleOnWholePoints) {
  owned->setOwnerWindow(owner.get());
  owned->orderFront(nullptr);
  EXPECT_EQ(owned->frame(), NSMakeRect(459, 330, 81, 40));
}

TEST_F(OwnedWindowTest, FirstShowsWhereAnEmbeddedWindowIsOnTheScreen) {
  const auto embedded = make<NSWindow>(NSMakeRect(0, 0, 200, 100), NSBorderlessWindowMask);
  embedded->setWindowSystem(&system);
  embedded->setHostWindow(77);
  embedded->orderFront(nullptr);
  shown().setHostOrigin({700, 500});
  owned->setOwnerWindow(embedded.get());
  owned->orderFront(nullptr);
  EXPECT_EQ(owned->frame().origin, (NSPoint{759, 530}));
}

TEST_F(OwnedWindowTest, StaysOnTheScreen) {
  owner->setFrame_display(NSMakeRect(1250, -80, 200, 100), false);
  owned->setOwnerWindow(owner.get());
  owned->orderFront(nullptr);
  EXPECT_EQ(owned->frame().origin, (NSPoint{1280 - 81, 0}));
}

TEST_F(OwnedWindowTest, ReopensWhereTheUserHasPutIt) {
  owned->setOwnerWindow(owner.get());
  owned->orderFront(nullptr);
  turn();
  shown().move({20, 30});
  turn();
  owned->close();
  owned->orderFront(nullptr);
  EXPECT_EQ(owned->frame().origin, (NSPoint{20, 30}));
  EXPECT_EQ(system.windows().size(), 2U);
}

TEST_F(OwnedWindowTest, DoesNotMoveWithItsOwner) {
  owned->setOwnerWindow(owner.get());
  owned->orderFront(nullptr);
  owner->setFrame_display(NSMakeRect(0, 0, 200, 100), false);
  EXPECT_EQ(owned->frame().origin, (NSPoint{459, 330}));
}

TEST_F(OwnedWindowTest, ClosesWithItsOwnerButNotTheOtherWayRound) {
  owned->setOwnerWindow(owner.get());
  owned->setDelegate(&closings);
  owned->orderFront(nullptr);
  owned->close();
  EXPECT_TRUE(owner->isVisible());
  owned->orderFront(nullptr);
  owner->close();
  EXPECT_FALSE(owned->isVisible());
  EXPECT_THAT(closings.closed, ElementsAre(owned.get(), owned.get()));
}

TEST_F(OwnedWindowTest, AWindowOfAnOwnedOneClosesWithBoth) {
  const auto second = make<NSWindow>(NSMakeRect(0, 0, 30, 30), NSTitledWindowMask);
  owned->setOwnerWindow(owner.get());
  second->setOwnerWindow(owned.get());
  owned->orderFront(nullptr);
  second->orderFront(nullptr);
  EXPECT_EQ(system.windows().size(), 3U);
  owner->close();
  EXPECT_FALSE(second->isVisible());
  EXPECT_FALSE(owned->isVisible());
}

TEST_F(OwnedWindowTest, LosesItsPlaceWhenItsOwnerGoes) {
  owned->setOwnerWindow(owner.get());
  owned->orderFront(nullptr);
  turn();
  owner = nullptr;
  EXPECT_FALSE(owned->isVisible());
  EXPECT_EQ(owned->ownerWindow(), nullptr);
  EXPECT_EQ(owned->platformWindow(), nullptr);
  EXPECT_THAT(system.windows(), IsEmpty());
  owned->orderFront(nullptr);
  EXPECT_FALSE(owned->isVisible()) << "nobody can show it now";
}

TEST_F(OwnedWindowTest, SoDoesAWindowThatItOwns) {
  const auto second = make<NSWindow>(NSMakeRect(0, 0, 30, 30), NSTitledWindowMask);
  owned->setOwnerWindow(owner.get());
  second->setOwnerWindow(owned.get());
  owned->orderFront(nullptr);
  second->orderFront(nullptr);
  owner = nullptr;
  EXPECT_EQ(second->platformWindow(), nullptr);
  EXPECT_EQ(second->ownerWindow(), owned.get());
  EXPECT_THAT(system.windows(), IsEmpty());
}

TEST_F(OwnedWindowTest, MayGoFirst) {
  owned->setOwnerWindow(owner.get());
  owned->orderFront(nullptr);
  owned = nullptr;
  EXPECT_THAT(owner->ownedWindows(), IsEmpty());
  EXPECT_EQ(system.windows().size(), 1U);
  owner->close();
}

TEST_F(OwnedWindowTest, ClosingMayLetGoOfIt) {
  struct LetGo : NSWindowDelegate {
    explicit LetGo(Ref<NSWindow>& its) : window(its) {}
    void windowWillClose(NSWindow*) override { window = nullptr; }
    Ref<NSWindow>& window;
  } delegate(owned);
  const auto second = make<NSWindow>(NSMakeRect(0, 0, 30, 30), NSTitledWindowMask);
  owned->setOwnerWindow(owner.get());
  second->setOwnerWindow(owner.get());
  owned->setDelegate(&delegate);
  owned->orderFront(nullptr);
  second->orderFront(nullptr);
  owner = nullptr;
  EXPECT_FALSE(owned);
  EXPECT_FALSE(second->isVisible());
}

TEST_F(OwnedWindowTest, MovesToTheWindowSystemOfAnotherOwner) {
  HeadlessWindowSystem other_system;
  {
    const auto other = make<NSWindow>(NSMakeRect(0, 0, 200, 100), NSTitledWindowMask);
    other->setWindowSystem(&other_system);
    other->orderFront(nullptr);
    owned->setOwnerWindow(owner.get());
    owned->orderFront(nullptr);
    owned->setOwnerWindow(other.get());
    EXPECT_FALSE(owned->isVisible());
    EXPECT_EQ(system.windows().size(), 1U);
    owned->orderFront(nullptr);
    EXPECT_EQ(other_system.windows().size(), 2U);
    EXPECT_THAT(owner->ownedWindows(), IsEmpty());
  }
  EXPECT_FALSE(owned->isVisible());
}

TEST_F(OwnedWindowTest, CannotOwnItselfOrItsOwner) {
  owned->setOwnerWindow(owned.get());
  EXPECT_EQ(owned->ownerWindow(), nullptr);
  owned->setOwnerWindow(owner.get());
  owner->setOwnerWindow(owned.get());
  EXPECT_EQ(owner->ownerWindow(), nullptr);
}

TEST_F(OwnedWindowTest, ClosesWhenItsOwnerIsDestroyedFromOutside) {
  owned->setOwnerWindow(owner.get());
  owned->orderFront(nullptr);
  turn();
  system.windows()[0]->destroyFromOutside();
  turn();
  EXPECT_FALSE(owned->isVisible());
}

TEST_F(OwnedWindowTest, DestroyedFromOutsideItShowsInANewWindow) {
  owned->setOwnerWindow(owner.get());
  owned->orderFront(nullptr);
  turn();
  shown().destroyFromOutside();
  turn();
  EXPECT_FALSE(owned->isVisible());
  EXPECT_TRUE(owner->isVisible());
  owned->orderFront(nullptr);
  turn();
  EXPECT_TRUE(owned->isVisible());
  EXPECT_TRUE(shown().viewable());
  EXPECT_FALSE(shown().presented().empty());
}

TEST_F(OwnedWindowTest, SurvivesTheLossOfTheConnection) {
  owned->setOwnerWindow(owner.get());
  owned->orderFront(nullptr);
  turn();
  system.loseConnection();
  turn();
  EXPECT_FALSE(owned->isVisible());
  EXPECT_FALSE(owner->isVisible());
  owned->orderFront(nullptr);
  EXPECT_FALSE(owned->isVisible());
}

TEST(WindowLevel, OrdersWindowsAsTheSystemDoes) {
  EXPECT_EQ(CGWindowLevelForKey(kCGNormalWindowLevelKey), 0);
  EXPECT_EQ(CGWindowLevelForKey(kCGFloatingWindowLevelKey), 3);
  EXPECT_EQ(CGWindowLevelForKey(kCGStatusWindowLevelKey), 25);
  EXPECT_EQ(CGWindowLevelForKey(kCGPopUpMenuWindowLevelKey), 101);
}

TEST_F(OwnedWindowTest, AWindowOfAHigherLevelIsAPanelToo) {
  owned->setWindowSystem(&system);
  owned->setLevel(CGWindowLevelForKey(kCGStatusWindowLevelKey));
  owned->orderFront(nullptr);
  EXPECT_EQ(shown().kind(), WindowKind::panel);
}

}  // namespace
}  // namespace cocoa
