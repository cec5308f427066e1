#include <gmock/gmock.h>

#include <optional>

#include "quartz/CGWindowLevel.h"
#include "window_fixture.h"

namespace cocoa {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ServantTest : public WindowFixture {
 protected:
  ServantTest() {
    served->setWindowSystem(&system);
    served->makeKeyAndOrderFront(nullptr);
    turn();
  }

  struct Closings : NSWindowDelegate {
    void windowWillClose(NSWindow* window) override { closed.push_back(window); }
    std::vector<NSWindow*> closed;
  };

  Ref<NSWindow> served = make<NSWindow>(NSMakeRect(400, 300, 200, 100), NSTitledWindowMask);
  Ref<NSWindow> servant = make<NSWindow>(NSMakeRect(0, 0, 81, 40), NSTitledWindowMask);
  Closings closings;
};

TEST_F(ServantTest, IsShownByTheSameWindowSystemAsAPanelOfTheServedWindow) {
  servant->setServedWindow(served.get());
  servant->orderFront(nullptr);
  turn();
  ASSERT_EQ(system.windows().size(), 2U);
  EXPECT_EQ(shown().kind(), WindowKind::panel);
  EXPECT_EQ(shown().parent(), served->platformWindow());
  EXPECT_EQ(servant->servedWindow(), served.get());
  EXPECT_THAT(served->servants(), ElementsAre(servant.get()));
  EXPECT_EQ(servant->retainCount(), 1U);
  EXPECT_EQ(served->retainCount(), 1U);
}

TEST_F(ServantTest, FirstShowsOverTheMiddleOnWholePoints) {
  servant->setServedWindow(served.get());
  servant->orderFront(nullptr);
  EXPECT_EQ(servant->frame(), NSMakeRect(459, 330, 81, 40));
}

TEST_F(ServantTest, FirstShowsWhereAnEmbeddedWindowIsOnTheScreen) {
  const auto embedded = make<NSWindow>(NSMakeRect(0, 0, 200, 100), NSBorderlessWindowMask);
  embedded->setWindowSystem(&system);
  embedded->setHostWindow(77);
  embedded->orderFront(nullptr);
  shown().setHostOrigin({700, 500});
  servant->setServedWindow(embedded.get());
  servant->orderFront(nullptr);
  EXPECT_EQ(servant->frame().origin, (NSPoint{759, 530}));
}

TEST_F(ServantTest, StaysOnTheScreen) {
  served->setFrame_display(NSMakeRect(1250, -80, 200, 100), false);
  servant->setServedWindow(served.get());
  servant->orderFront(nullptr);
  EXPECT_EQ(servant->frame().origin, (NSPoint{1280 - 81, 0}));
}

TEST_F(ServantTest, ReopensWhereTheUserHasPutIt) {
  servant->setServedWindow(served.get());
  servant->orderFront(nullptr);
  turn();
  shown().move({20, 30});
  turn();
  servant->close();
  servant->orderFront(nullptr);
  EXPECT_EQ(servant->frame().origin, (NSPoint{20, 30}));
  EXPECT_EQ(system.windows().size(), 2U);
}

TEST_F(ServantTest, DoesNotMoveWithTheServedWindow) {
  servant->setServedWindow(served.get());
  servant->orderFront(nullptr);
  served->setFrame_display(NSMakeRect(0, 0, 200, 100), false);
  EXPECT_EQ(servant->frame().origin, (NSPoint{459, 330}));
}

TEST_F(ServantTest, ClosesWithTheServedWindowButNotTheOtherWayRound) {
  servant->setServedWindow(served.get());
  servant->setDelegate(&closings);
  servant->orderFront(nullptr);
  servant->close();
  EXPECT_TRUE(served->isVisible());
  servant->orderFront(nullptr);
  served->close();
  EXPECT_FALSE(servant->isVisible());
  EXPECT_THAT(closings.closed, ElementsAre(servant.get(), servant.get()));
}

TEST_F(ServantTest, AWindowOfAServantClosesWithBoth) {
  const auto second = make<NSWindow>(NSMakeRect(0, 0, 30, 30), NSTitledWindowMask);
  servant->setServedWindow(served.get());
  second->setServedWindow(servant.get());
  servant->orderFront(nullptr);
  second->orderFront(nullptr);
  EXPECT_EQ(system.windows().size(), 3U);
  served->close();
  EXPECT_FALSE(second->isVisible());
  EXPECT_FALSE(servant->isVisible());
}

TEST_F(ServantTest, LosesItsPlaceWhenTheServedWindowGoes) {
  servant->setServedWindow(served.get());
  servant->orderFront(nullptr);
  turn();
  served = nullptr;
  EXPECT_FALSE(servant->isVisible());
  EXPECT_EQ(servant->servedWindow(), nullptr);
  EXPECT_EQ(servant->platformWindow(), nullptr);
  EXPECT_THAT(system.windows(), IsEmpty());
  servant->orderFront(nullptr);
  EXPECT_FALSE(servant->isVisible()) << "nobody can show it now";
}

TEST_F(ServantTest, SoDoesAWindowThatServesIt) {
  const auto second = make<NSWindow>(NSMakeRect(0, 0, 30, 30), NSTitledWindowMask);
  servant->setServedWindow(served.get());
  second->setServedWindow(servant.get());
  servant->orderFront(nullptr);
  second->orderFront(nullptr);
  served = nullptr;
  EXPECT_EQ(second->platformWindow(), nullptr);
  EXPECT_EQ(second->servedWindow(), servant.get());
  EXPECT_THAT(system.windows(), IsEmpty());
}

TEST_F(ServantTest, MayGoFirst) {
  servant->setServedWindow(served.get());
  servant->orderFront(nullptr);
  servant = nullptr;
  EXPECT_THAT(served->servants(), IsEmpty());
  EXPECT_EQ(system.windows().size(), 1U);
  served->close();
}

TEST_F(ServantTest, ClosingMayLetGoOfIt) {
  struct LetGo : NSWindowDelegate {
    explicit LetGo(Ref<NSWindow>& its) : window(its) {}
    void windowWillClose(NSWindow*) override { window = nullptr; }
    Ref<NSWindow>& window;
  } delegate(servant);
  const auto second = make<NSWindow>(NSMakeRect(0, 0, 30, 30), NSTitledWindowMask);
  servant->setServedWindow(served.get());
  second->setServedWindow(served.get());
  servant->setDelegate(&delegate);
  servant->orderFront(nullptr);
  second->orderFront(nullptr);
  served = nullptr;
  EXPECT_FALSE(servant);
  EXPECT_FALSE(second->isVisible());
}

TEST_F(ServantTest, MovesToTheWindowSystemOfAnotherServedWindow) {
  HeadlessWindowSystem other_system;
  {
    const auto other = make<NSWindow>(NSMakeRect(0, 0, 200, 100), NSTitledWindowMask);
    other->setWindowSystem(&other_system);
    other->orderFront(nullptr);
    servant->setServedWindow(served.get());
    servant->orderFront(nullptr);
    servant->setServedWindow(other.get());
    EXPECT_FALSE(servant->isVisible());
    EXPECT_EQ(system.windows().size(), 1U);
    servant->orderFront(nullptr);
    EXPECT_EQ(other_system.windows().size(), 2U);
    EXPECT_THAT(served->servants(), IsEmpty());
  }
  EXPECT_FALSE(servant->isVisible());
}

TEST_F(ServantTest, CannotServeItselfOrItsOwnServant) {
  servant->setServedWindow(servant.get());
  EXPECT_EQ(servant->servedWindow(), nullptr);
  servant->setServedWindow(served.get());
  served->setServedWindow(servant.get());
  EXPECT_EQ(served->servedWindow(), nullptr);
}

TEST_F(ServantTest, ClosesWhenTheServedWindowIsDestroyedFromOutside) {
  servant->setServedWindow(served.get());
  servant->orderFront(nullptr);
  turn();
  system.windows()[0]->destroyFromOutside();
  turn();
  EXPECT_FALSE(servant->isVisible());
}

TEST_F(ServantTest, DestroyedFromOutsideItShowsInANewWindow) {
  servant->setServedWindow(served.get());
  servant->orderFront(nullptr);
  turn();
  shown().destroyFromOutside();
  turn();
  EXPECT_FALSE(servant->isVisible());
  EXPECT_TRUE(served->isVisible());
  servant->orderFront(nullptr);
  turn();
  EXPECT_TRUE(servant->isVisible());
  EXPECT_TRUE(shown().viewable());
  EXPECT_FALSE(shown().presented().empty());
}

TEST_F(ServantTest, SurvivesTheLossOfTheConnection) {
  servant->setServedWindow(served.get());
  servant->orderFront(nullptr);
  turn();
  system.loseConnection();
  turn();
  EXPECT_FALSE(servant->isVisible());
  EXPECT_FALSE(served->isVisible());
  servant->orderFront(nullptr);
  EXPECT_FALSE(servant->isVisible());
}

TEST(WindowLevel, OrdersWindowsAsTheSystemDoes) {
  EXPECT_EQ(CGWindowLevelForKey(kCGNormalWindowLevelKey), 0);
  EXPECT_EQ(CGWindowLevelForKey(kCGFloatingWindowLevelKey), 3);
  EXPECT_EQ(CGWindowLevelForKey(kCGStatusWindowLevelKey), 25);
  EXPECT_EQ(CGWindowLevelForKey(kCGPopUpMenuWindowLevelKey), 101);
}

TEST_F(ServantTest, AWindowOfAHigherLevelIsAPanelToo) {
  servant->setWindowSystem(&system);
  servant->setLevel(CGWindowLevelForKey(kCGStatusWindowLevelKey));
  servant->orderFront(nullptr);
  EXPECT_EQ(shown().kind(), WindowKind::panel);
}

}  // namespace
}  // namespace cocoa
