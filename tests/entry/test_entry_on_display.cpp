// SPDX-License-Identifier: MIT
#include "entry_on_display.h"

namespace ondex::test {
namespace {

/// With openbox, and where no window manager runs.
class Entry : public EntryOnDisplay, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    EntryOnDisplay::SetUp();
    if (GetParam())
      start_manager();
    show_editor();
    writes.clear();
    open_entry();
  }
};
INSTANTIATE_TEST_SUITE_P(WindowManager, Entry, testing::Values(false, true),
                         [](const auto& test) { return test.param ? "Openbox" : "None"; });

TEST_P(Entry, TypingAndReturnWriteTheParameterOnce) {
  EXPECT_EQ(field().editedText().selectedText(), "0");
  type("7.5");
  user.type_key(key::enter);
  EXPECT_TRUE(closes());
  EXPECT_EQ(writes, (std::vector<Write>{{0, 7.5F}}));
}

TEST_P(Entry, ACommaIsADecimalPoint) {
  type("2,25");
  user.type_key(key::keypad_enter);
  EXPECT_TRUE(closes());
  EXPECT_EQ(writes, (std::vector<Write>{{0, 2.25F}}));
}

TEST_P(Entry, ANumberOutsideTheRangeIsBroughtInside) {
  type("99");
  user.type_key(key::enter);
  EXPECT_TRUE(closes());
  EXPECT_EQ(writes, (std::vector<Write>{{0, 20.0F}}));
}

TEST_P(Entry, TextThatIsNoNumberIsRefusedAndCanBeCorrected) {
  type("5x");
  user.type_key(key::enter);
  EXPECT_TRUE(until([this] { return field().isRefused(); }));
  EXPECT_TRUE(panel());
  EXPECT_TRUE(writes.empty());
  user.type_key(key::backspace);
  user.type_key(key::enter);
  EXPECT_TRUE(closes());
  EXPECT_EQ(writes, (std::vector<Write>{{0, 5.0F}}));
}

TEST_P(Entry, EscapeCancels) {
  type("7.5");
  user.type_key(key::escape);
  EXPECT_TRUE(closes());
  EXPECT_TRUE(writes.empty());
}

TEST_P(Entry, AClickInTheEditorCancels) {
  type("7.5");
  point_at(10, 10);
  user.click(1);
  EXPECT_TRUE(closes());
  EXPECT_TRUE(writes.empty());
}

TEST_P(Entry, AClickOnTheKnobCancelsAndLeavesTheKnobAlone) {
  type("7.5");
  ASSERT_TRUE(until([this] { return typed() == "7.5"; }));
  // The middle of the window, in the knob, a good way from where its pointer is.
  point_at(430, 236);
  user.press(1);
  ASSERT_TRUE(closes());
  point_at(470, 200);
  user.release(1);
  user.sync();
  pass();
  EXPECT_TRUE(writes.empty());
  point_at(430, 236);
  user.click(1);
  EXPECT_TRUE(until([this] { return !writes.empty(); }));
}

TEST_P(Entry, OfTwoThatWereOpenedWhileNobodyLookedOneIsLeft) {
  user.type_key(key::escape);
  ASSERT_TRUE(closes());
  // So far apart that they are two double clicks and not one fourfold.
  for (const double x : {183, 153}) {
    point_at(x, 83);
    user.double_click();
  }
  user.sync();
  ASSERT_TRUE(until([this] { return panel() && panel()->isKeyWindow(); }));
  EXPECT_EQ(window->childWindows().size(), 1U);
  EXPECT_EQ(user.focused(), panel_id());
  type("7.5");
  user.type_key(key::enter);
  EXPECT_TRUE(closes());
  EXPECT_TRUE(window->childWindows().empty());
  EXPECT_EQ(writes, (std::vector<Write>{{0, 7.5F}}));
}

TEST_P(Entry, AClickInAnotherProgramThatTakesNoKeysCancels) {
  const xcb_window_t other = user.make_window(1050, 20, 100, 100);
  user.map(other);
  type("7.5");
  user.point(1100, 70);
  user.click(1);
  EXPECT_TRUE(closes());
  EXPECT_TRUE(writes.empty());
}

TEST_P(Entry, AnotherProgramThatTakesTheKeysCancelsAndKeepsThem) {
  const xcb_window_t other = user.make_window(1050, 20, 100, 100);
  user.map(other);
  type("7.5");
  user.focus(other);
  EXPECT_TRUE(closes());
  EXPECT_TRUE(writes.empty());
  EXPECT_EQ(user.focused(), other);
}

TEST_P(Entry, TheWheelOverThePanelIsNoClickElsewhere) {
  type("7.5");
  user.click(4);
  ASSERT_TRUE(until([this] { return typed() == "7.5"; }));
  user.type_key(key::enter);
  EXPECT_TRUE(closes());
  EXPECT_EQ(writes, (std::vector<Write>{{0, 7.5F}}));
}

TEST_P(Entry, ThePanelLiesOnTheReadoutAndMovesWithTheEditor) {
  const auto before = user.geometry(panel_id());
  const auto editor_before = user.geometry(id());
  const cocoa::NSPoint corner = readouts()[0]->convertPoint_toView({0, 0}, nullptr);
  // The shadow takes 11 points around the panel.
  EXPECT_EQ(before.x, editor_before.x + static_cast<int>(corner.x) - 11);
  EXPECT_EQ(before.y + before.height, editor_before.y + 352 - static_cast<int>(corner.y) + 11);
  user.move(id(), 30, 200);
  EXPECT_TRUE(until([&] {
    const auto editor_now = user.geometry(id());
    const auto now = user.geometry(panel_id());
    return editor_now.x != editor_before.x && now.x - before.x == editor_now.x - editor_before.x &&
           now.y - before.y == editor_now.y - editor_before.y;
  }));
  EXPECT_TRUE(panel()->isKeyWindow());
}

TEST_P(Entry, AHostChangeLeavesWhatIsTyped) {
  type("7.5");
  ASSERT_TRUE(until([this] { return typed() == "7.5"; }));
  effect.setFromHost(0, 3);
  ASSERT_TRUE(until([this] { return readouts()[0]->current_value() == 3.0; }));
  EXPECT_EQ(typed(), "7.5");
  user.type_key(key::enter);
  EXPECT_TRUE(closes());
  EXPECT_EQ(writes.back(), (Write{0, 7.5F}));
}

TEST_P(Entry, TheEditorsWindowMayBeDestroyedMeanwhile) {
  type("7.5");
  user.destroy(id());
  EXPECT_TRUE(until([this] { return !window->isVisible(); }));
  window = nullptr;
  editor = nullptr;
  EXPECT_TRUE(writes.empty());
}

TEST_P(Entry, TheEditorMayBeClosedMeanwhile) {
  type("7.5");
  window->close();
  window = nullptr;
  pass();
  EXPECT_TRUE(writes.empty());
}

TEST_P(Entry, TheServerMayGoMeanwhile) {
  server.kill();
  EXPECT_TRUE(until([this] { return !system->connected(); }));
  window = nullptr;
  editor = nullptr;
}

TEST_P(Entry, TheMouseSelectsInTheField) {
  type("12.5");
  ASSERT_TRUE(until([this] { return typed() == "12.5"; }));
  const auto place = user.geometry(panel_id());
  user.point(place.x + place.width / 2, place.y + place.height / 2);
  user.click(1);
  ASSERT_TRUE(until([this] { return !field().editedText().hasSelection(); }));
  // So far away that it is no third click.
  user.point(place.x + place.width / 2 - 8, place.y + place.height / 2);
  user.double_click();
  EXPECT_TRUE(until([this] { return field().editedText().selectedText() == "12.5"; }));
}

TEST_P(Entry, OpensAgainOnAnotherReadout) {
  type("7.5");
  user.type_key(key::enter);
  ASSERT_TRUE(closes());
  point_at(420, 50);
  user.double_click();
  ASSERT_TRUE(until([this] { return panel() && panel()->isKeyWindow(); }));
  EXPECT_EQ(typed(), "0.5");
  type(".25");
  user.type_key(key::enter);
  EXPECT_TRUE(closes());
  EXPECT_EQ(writes.back(), (Write{2, 0.25F}));
}

}  // namespace
}  // namespace ondex::test
