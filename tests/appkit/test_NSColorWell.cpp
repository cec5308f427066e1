// SPDX-License-Identifier: MIT
#include <xkbcommon/xkbcommon-keysyms.h>

#include <gmock/gmock.h>

#include "appkit/NSColorWell.h"
#include "appkit/private/NSColorPanel.h"
#include "color_components.h"
#include "drawn_view.h"
#include "window_fixture.h"

namespace cocoa {
namespace {

using ondex::test::DrawnView;
using ondex::test::Pixel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class Listener : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  void changed(NSObject* sender) {
    colors.push_back(components(*dynamic_cast<NSColorWell*>(sender)->color()));
    was_picking.push_back(dynamic_cast<NSColorWell*>(sender)->isPicking());
    if (then)
      then();
  }
  void ended(NSObject*) { ends.push_back(colors.size()); }
  std::vector<std::vector<double>> colors;
  std::vector<size_t> ends;  ///< the number of changes before each
  std::vector<bool> was_picking;
  std::function<void()> then;
};

constexpr SEL changed_selector("changed:");
constexpr SEL ended_selector("ended:");
constexpr Action listener_actions[] = {{changed_selector, MethodAction<&Listener::changed>::perform},
                                       {ended_selector, MethodAction<&Listener::ended>::perform}};
const Class Listener::class_ = {
    .name = "Listener", .superclass = &NSObject::class_, .actions = listener_actions};

// Places in the panel, in points: the square is at (16, 16), 192 × 192, the strip at (220, 16), 20 × 192, the
// comparison at (256, 166), 90 × 42.

class ColorWellTest : public WindowFixture {
 protected:
  ColorWellTest() {
    window->setWindowSystem(&system);
    window->contentView()->addSubview(well.get());
    window->contentView()->addSubview(second.get());
    window->orderFront(nullptr);
    turn();
    well->setTarget_action(listener.get(), changed_selector);
    second->setTarget_action(listener.get(), changed_selector);
    well->setEndAction(ended_selector);
    second->setEndAction(ended_selector);
  }
  void click(HeadlessWindow& where, NSPoint point) {
    where.press(point);
    where.release();
    turn();
  }
  HeadlessWindow& host() { return *system.windows()[0]; }
  HeadlessWindow& opened() { return *system.windows()[1]; }
  NSColorPanel& panel() { return *dynamic_cast<NSColorPanel*>(window->ownedWindows().at(0)); }
  void activate() {
    click(host(), {20, 20});
    ASSERT_THAT(system.windows(), SizeIs(2));
  }
  /// Into the entry at that place of the panel, from an empty field on.
  void type(NSPoint place, std::string_view text, bool confirm = true) {
    click(opened(), place);
    opened().key_down('a', "\x01", modifier_control);
    opened().type(text);
    if (confirm)
      opened().key_down(XKB_KEY_Return, "\r");
    turn();
  }
  static constexpr NSPoint red_entry = {310, 117};
  static constexpr NSPoint blue_entry = {310, 61};
  static constexpr NSPoint hex_entry = {310, 27};

  Ref<NSWindow> window = make<NSWindow>(NSMakeRect(300, 300, 200, 100), NSTitledWindowMask);
  Ref<NSColorWell> well = make<NSColorWell>(NSMakeRect(10, 10, 40, 30));
  Ref<NSColorWell> second = make<NSColorWell>(NSMakeRect(60, 10, 40, 30));
  Ref<Listener> listener = make<Listener>();
};

TEST_F(ColorWellTest, IsBlackAtFirstAndTakesAColorWithoutAnAction) {
  expect_color(*well->color(), 0, 0, 0);
  well->setColor(rgb(1, 0.5, 0).get());
  expect_color(*well->color(), 1, 0.5, 0);
  well->setColor(nullptr);
  expect_color(*well->color(), 1, 0.5, 0);
  EXPECT_THAT(listener->colors, IsEmpty());
}

TEST_F(ColorWellTest, ShowsItsColor) {
  well->setColor(rgb(0.2, 0.4, 0.6).get());
  EXPECT_EQ(DrawnView(*well, 1).at(20, 15), (Pixel{0.2, 0.4, 0.6, 1}));
  // What shows through a translucent one is white above and black below.
  well->setColor(NSColor::colorWithDeviceRed_green_blue_alpha(1, 0, 0, 0).get());
  EXPECT_EQ(DrawnView(*well, 1).at(20, 20), (Pixel{1, 1, 1, 1}));
  EXPECT_EQ(DrawnView(*well, 1).at(20, 10), (Pixel{0, 0, 0, 1}));
}

TEST_F(ColorWellTest, AClickOpensAPanelWithItsColor) {
  well->setColor(rgb(0.2, 0.4, 0.6).get());
  activate();
  EXPECT_TRUE(well->isActive());
  EXPECT_EQ(opened().kind(), WindowKind::panel);
  EXPECT_EQ(opened().title(), "Colour");
  EXPECT_TRUE(panel().isKeyWindow());
  expect_color(*panel().color(), 0.2, 0.4, 0.6);
  expect_color(*panel().previousColor(), 0.2, 0.4, 0.6);
  // Beside the well's window, tops aligned.
  EXPECT_EQ(panel().frame().origin, (NSPoint{516, 400 - 224}));
  EXPECT_THAT(listener->colors, IsEmpty());
}

TEST_F(ColorWellTest, ThePanelGoesToTheLeftWhereThereIsNoRoom) {
  window->setFrame_display(NSMakeRect(1000, 300, 200, 100), false);
  activate();
  EXPECT_EQ(panel().frame().origin.x, static_cast<CGFloat>(1000 - 16 - 362));
}

TEST_F(ColorWellTest, OnlyAReleaseOverItActivatesIt) {
  host().press({20, 20});
  host().drag_to({5, 90});
  host().release();
  turn();
  EXPECT_FALSE(well->isActive());
  host().press({20, 20});
  host().drag_to({5, 90});
  host().drag_to({30, 30});
  host().release();
  turn();
  EXPECT_TRUE(well->isActive());
}

TEST_F(ColorWellTest, FollowsTheSquareWhileTheMouseMoves) {
  well->setColor(rgb(1, 0, 0).get());
  activate();
  opened().press({16, 207});  // no saturation, all the brightness
  turn();
  opened().drag_to({400, 400});  // beyond the corner of the pure hue
  turn();
  opened().drag_to({16, -50});
  opened().release();
  turn();
  EXPECT_THAT(listener->colors,
              ElementsAre(ElementsAre(1, 1, 1), ElementsAre(1, 0, 0), ElementsAre(0, 0, 0)));
}

TEST_F(ColorWellTest, FollowsTheStripOfHuesAndKeepsTheHueOfBlack) {
  well->setColor(rgb(1, 0, 0).get());
  activate();
  // 191 points above its lower end is the upper one: a third of them, 63.667, is green.
  opened().press({230, 16 + CGFloat(191.0 / 3)});
  opened().release();
  turn();
  expect_color(*well->color(), 0, 1, 0);
  click(opened(), {16, 16});
  expect_color(*well->color(), 0, 0, 0);
  click(opened(), {207, 207});
  expect_color(*well->color(), 0, 1, 0);
}

TEST_F(ColorWellTest, SendsItsActionOnlyForAnotherColor) {
  well->setColor(rgb(1, 1, 1).get());
  activate();
  click(opened(), {16, 207});
  EXPECT_THAT(listener->colors, IsEmpty()) << "it is white already";
}

TEST_F(ColorWellTest, TellsWhenTheChangesOfADragHaveEnded) {
  activate();
  opened().press({16, 207});
  opened().drag_to({100, 100});
  turn();
  EXPECT_TRUE(well->isPicking());
  EXPECT_THAT(listener->ends, IsEmpty());
  opened().release();
  turn();
  EXPECT_FALSE(well->isPicking());
  EXPECT_THAT(listener->ends, ElementsAre(2));
  click(opened(), {230, 100});
  EXPECT_THAT(listener->ends, ElementsAre(2, 3));
  click(opened(), {230, 100});
  EXPECT_THAT(listener->ends, ElementsAre(2, 3)) << "nothing has changed";
  type(red_entry, "7");
  click(opened(), {340, 180});
  EXPECT_THAT(listener->was_picking, ElementsAre(true, true, true, false, false));
  EXPECT_THAT(listener->ends, ElementsAre(2, 3));
}

TEST_F(ColorWellTest, ADragThatIsCutOffHasEndedToo) {
  activate();
  opened().press({16, 207});
  turn();
  opened().requestClose();
  turn();
  EXPECT_FALSE(well->isPicking());
  EXPECT_THAT(listener->ends, ElementsAre(1));
  activate();
  opened().press({100, 100});
  turn();
  second->activate();
  EXPECT_THAT(listener->ends, ElementsAre(1, 2));
  EXPECT_FALSE(well->isPicking());
}

TEST_F(ColorWellTest, AClickOnThePreviousColorBringsItBackExactly) {
  const Ref<NSColor> odd = rgb(0.123456, 0.6543, 0.9);
  well->setColor(odd.get());
  activate();
  click(opened(), {100, 100});
  EXPECT_FALSE(well->color()->isEqual(odd.get()));
  click(opened(), {260, 180});  // the current one is only shown
  EXPECT_FALSE(well->color()->isEqual(odd.get()));
  click(opened(), {340, 180});
  EXPECT_TRUE(well->color()->isEqual(odd.get()));
  EXPECT_THAT(listener->colors, SizeIs(2));
}

TEST_F(ColorWellTest, TypedNumbersChangeOneComponent) {
  well->setColor(rgb(0.1, 0.2, 0.3).get());
  activate();
  type(red_entry, "255");
  expect_color(*well->color(), 1, 0.2, 0.3);
  type(blue_entry, "0");
  expect_color(*well->color(), 1, 0.2, 0);
  EXPECT_THAT(listener->colors, SizeIs(2));
}

TEST_F(ColorWellTest, ConfirmingWhatShowsDoesNotRound) {
  well->setColor(rgb(0.1234, 0.2, 0.3).get());
  activate();
  click(opened(), red_entry);
  opened().key_down(XKB_KEY_Return, "\r");
  click(opened(), hex_entry);
  opened().key_down(XKB_KEY_Return, "\r");
  turn();
  EXPECT_THAT(listener->colors, IsEmpty());
  expect_color(*well->color(), 0.1234, 0.2, 0.3);
}

TEST_F(ColorWellTest, TypedHexadecimalIsTheColor) {
  activate();
  type(hex_entry, "#0026cc");
  expect_color(*well->color(), 0, 38 / 255.0, 0.8);
  EXPECT_EQ(panel().entry(NSColorPanel::hexadecimal)->editedText().text(), "#0026CC");
  EXPECT_NEAR(panel().entry(NSColorPanel::green)->doubleValue(), 38, 255 * rounding);
}

TEST_F(ColorWellTest, WhatIsNoNumberIsRefusedAndWritesNothing) {
  activate();
  type(hex_entry, "blue");
  EXPECT_TRUE(panel().entry(NSColorPanel::hexadecimal)->isRefused());
  EXPECT_THAT(listener->colors, IsEmpty());
  opened().key_down(XKB_KEY_Escape, "\x1b");
  turn();
  EXPECT_FALSE(panel().entry(NSColorPanel::hexadecimal)->isRefused());
  EXPECT_TRUE(panel().isVisible());
  type(red_entry, "256");
  EXPECT_TRUE(panel().entry(NSColorPanel::red)->isRefused());
  EXPECT_THAT(listener->colors, IsEmpty());
}

TEST_F(ColorWellTest, EscapeWithNothingTypedClosesThePanel) {
  activate();
  click(opened(), hex_entry);
  opened().key_down(XKB_KEY_Escape, "\x1b");
  turn();
  EXPECT_FALSE(panel().isVisible());
  EXPECT_FALSE(well->isActive());
}

TEST_F(ColorWellTest, LeavingAnEntryTakesWhatWasTyped) {
  activate();
  type(red_entry, "51", false);
  click(opened(), blue_entry);
  expect_color(*well->color(), 0.2, 0, 0);
}

TEST_F(ColorWellTest, APickWhileSomethingIsTypedCountsAndTheEntryCanBeUsedAgain) {
  activate();
  type(red_entry, "9", false);
  click(opened(), {16, 207});
  expect_color(*well->color(), 1, 1, 1);
  type(red_entry, "0");
  expect_color(*well->color(), 0, 1, 1);
}

TEST_F(ColorWellTest, OfTwoWellsOneIsActive) {
  second->setColor(rgb(0, 0, 1).get());
  activate();
  click(host(), {70, 20});
  EXPECT_FALSE(well->isActive());
  EXPECT_TRUE(second->isActive());
  EXPECT_THAT(system.windows(), SizeIs(2)) << "they share the panel";
  expect_color(*panel().previousColor(), 0, 0, 1);
  click(opened(), {16, 207});
  expect_color(*second->color(), 1, 1, 1);
  expect_color(*well->color(), 0, 0, 0);
}

TEST_F(ColorWellTest, SettingAnActiveWellShowsInThePanel) {
  activate();
  well->setColor(rgb(0, 1, 0).get());
  expect_color(*panel().color(), 0, 1, 0);
  expect_color(*panel().previousColor(), 0, 0, 0);
  EXPECT_THAT(listener->colors, IsEmpty());
}

TEST_F(ColorWellTest, DeactivatedItNoLongerFollows) {
  activate();
  well->deactivate();
  click(opened(), {16, 207});
  expect_color(*well->color(), 0, 0, 0);
  click(host(), {20, 20});
  EXPECT_TRUE(well->isActive());
}

TEST_F(ColorWellTest, WithoutAWindowItOpensNothing) {
  well->removeFromSuperview();
  well->activate();
  EXPECT_FALSE(well->isActive());
  EXPECT_THAT(system.windows(), SizeIs(1));
}

TEST_F(ColorWellTest, ThePanelGoesWithTheLastWellOfItsWindow) {
  activate();
  well->removeFromSuperview();
  EXPECT_FALSE(well->isActive());
  EXPECT_THAT(system.windows(), SizeIs(1));
  EXPECT_THAT(window->ownedWindows(), IsEmpty());
}

TEST_F(ColorWellTest, ThePanelGoesWithItsWindow) {
  activate();
  window = nullptr;
  EXPECT_THAT(system.windows(), IsEmpty());
  EXPECT_FALSE(well->isActive());
}

TEST_F(ColorWellTest, ItsActionMayMakeEverythingGo) {
  activate();
  listener->then = [this] {
    well->removeFromSuperview();
    well = nullptr;
    window = nullptr;
  };
  opened().press({16, 207});
  turn();
  EXPECT_THAT(listener->colors, SizeIs(1));
  EXPECT_THAT(system.windows(), IsEmpty());
}

TEST_F(ColorWellTest, ATargetThatHasGoneIsNoTarget) {
  activate();
  listener = nullptr;
  click(opened(), {16, 207});
  expect_color(*well->color(), 1, 1, 1);
}

// What the panel shows

TEST_F(ColorWellTest, TheSquareShowsTheColorThatAPointStandsFor) {
  well->setColor(rgb(1, 0, 0).get());
  activate();
  const DrawnView drawn(*panel().contentView(), 1);
  for (const NSPoint point : {NSPoint{60, 60}, {150, 40}, {111, 111}, {30, 190}}) {
    click(opened(), point);
    const std::vector<double> picked = components(*well->color());
    const Pixel shown = drawn.at(static_cast<double>(point.x), static_cast<double>(point.y));
    EXPECT_LE(ondex::test::distance(shown, {picked[0], picked[1], picked[2], 1}), 1.5) << shown;
  }
}

TEST_F(ColorWellTest, TheComparisonShowsBothColors) {
  well->setColor(rgb(0.2, 0.4, 0.6).get());
  activate();
  click(opened(), {16, 207});
  const DrawnView drawn(*panel().contentView(), 2);
  EXPECT_EQ(drawn.at(280, 187), (Pixel{1, 1, 1, 1}));
  EXPECT_EQ(drawn.at(320, 187), (Pixel{0.2, 0.4, 0.6, 1}));
}

}  // namespace
}  // namespace cocoa
