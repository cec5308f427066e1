// SPDX-License-Identifier: MIT
#include "appkit/NSWindow.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include "editor_fixture.h"
#include "windows/headless.h"

namespace ondex::test {
namespace {

using namespace cocoa;

constexpr uint32_t enter_key = XKB_KEY_Return;

/// The editor in a window, and a user.
class NumericEntry : public EditorFixture {
 protected:
  NumericEntry() {
    open();
    window = make<NSWindow>(NSRect{{120, 120}, editor->frame().size}, NSTitledWindowMask);
    window->setWindowSystem(&system);
    window->setContentView(editor.get());
    window->makeKeyAndOrderFront(nullptr);
    pass();
    writes.clear();
  }
  ~NumericEntry() override { window = nullptr; }
  void pass() {
    const NSAutoreleasePool cycle;
    system.dispatch();
    turn();
  }
  void open_entry(const KV_Ondex_Parameter_Control_View& readout) {
    clock.advance(10);
    for (int click = 0; click < 2; ++click) {
      system.windows().front()->press(readout.convertPoint_toView({20, 13}, nullptr));
      system.windows().front()->release();
    }
    pass();
  }
  NSTextField& field() { return *editor->_text_entry_popup_view->_entry_field; }

  HeadlessWindowSystem system{clock};
  Ref<NSWindow> window;
};

TEST_F(NumericEntry, EveryReadoutOpensTheOnePanelOverItself) {
  for (const auto* readout : readouts()) {
    SCOPED_TRACE(readout->description()->UTF8String());
    open_entry(*readout);
    const NSWindow* panel = editor->_text_entry_popup_view->window();
    ASSERT_TRUE(panel);
    const NSPoint corner = readout->convertPoint_toView({0, 0}, nullptr);
    EXPECT_EQ(panel->frame().origin, (NSPoint{120 + corner.x, 120 + corner.y}));
    EXPECT_EQ(field().formatter()->minimum(), readout->minimum_value());
    EXPECT_EQ(field().formatter()->maximum(), readout->maximum_value());
    EXPECT_EQ(static_cast<double>(field().floatValue()), readout->current_value());
    system.newestWindow()->key_down(XKB_KEY_Escape, "");
    pass();
  }
  EXPECT_TRUE(writes.empty());
}

TEST_F(NumericEntry, ATypedNumberReachesEffectKnobAndReadout) {
  auto* rate = editor->_tremolo_left_rate_parameter.get();
  open_entry(*rate);
  EXPECT_TRUE(rate->is_selected());
  system.newestWindow()->type("7,5");
  system.newestWindow()->key_down(enter_key, "");
  pass();
  EXPECT_EQ(writes, (std::vector<Write>{{0, 7.5F}}));
  EXPECT_EQ(rate->current_value(), 7.5);
  EXPECT_EQ(editor->_knob->current_value(), 7.5);
  EXPECT_FALSE(editor->_text_entry_popup_view->window());
}

TEST_F(NumericEntry, TheFieldShowsEveryDigitOfASinglePrecisionValue) {
  effect.setFromHost(0, 3.3333333F);
  settle();
  open_entry(*editor->_tremolo_left_rate_parameter);
  EXPECT_EQ(field().editedText().selectedText(), "3.3333333");
}

TEST_F(NumericEntry, TheEditorMayGoWhileThePanelIsOpen) {
  open_entry(*editor->_tremolo_left_rate_parameter);
  window->close();
  window = nullptr;
  editor = nullptr;
  pass();
  EXPECT_TRUE(system.windows().empty());
}

TEST_F(NumericEntry, GoesWithoutAWriteWhenItsWindowIsHidden) {
  open_entry(*editor->_tremolo_left_rate_parameter);
  HeadlessWindow& panel = *system.newestWindow();
  panel.type("7");
  pass();
  system.windows().front()->setHidden(true);
  pass();
  EXPECT_FALSE(editor->_text_entry_popup_view->window());
  EXPECT_EQ(system.windows().size(), 1U);
  system.windows().front()->setHidden(false);
  pass();
  EXPECT_EQ(system.windows().size(), 1U);
  EXPECT_TRUE(writes.empty());
}

TEST_F(NumericEntry, TheClickThatClosesItLeavesTheKnobAlone) {
  open_entry(*editor->_tremolo_left_rate_parameter);
  system.newestWindow()->type("7,5");
  clock.advance(10);
  HeadlessWindow& window_of_editor = *system.windows().front();
  const NSPoint on_knob = editor->_knob->convertPoint_toView({100, 20}, nullptr);
  window_of_editor.press(on_knob);
  window_of_editor.drag_to({on_knob.x + 40, on_knob.y + 40});
  window_of_editor.release();
  pass();
  EXPECT_FALSE(editor->_text_entry_popup_view->window());
  EXPECT_TRUE(writes.empty());
  window_of_editor.press(on_knob);
  window_of_editor.release();
  pass();
  EXPECT_EQ(writes.size(), 1U);
}

TEST_F(NumericEntry, TheHostMayTakeTheEditorAwayWhileThePanelIsOpen) {
  open_entry(*editor->_tremolo_left_rate_parameter);
  system.newestWindow()->type("7,5");
  pass();
  system.newestWindow()->key_down(enter_key, "");
  window->setContentView(make<NSView>(NSMakeRect(0, 0, 10, 10)).get());
  EXPECT_FALSE(editor->_text_entry_popup_view->window());
  pass();
  EXPECT_TRUE(writes.empty());
  editor = nullptr;
  window->orderOut(nullptr);
  pass();
  EXPECT_EQ(system.windows().size(), 1U);
}

TEST_F(NumericEntry, TheHostMayTakeOnlyTheBoxAway) {
  open_entry(*editor->_tremolo_left_rate_parameter);
  const Ref<NSView> box(editor->_effect_box);
  box->removeFromSuperview();
  pass();
  EXPECT_EQ(system.windows().size(), 1U);
  window->orderOut(nullptr);
  pass();
}

TEST_F(NumericEntry, TheHostMayTakeTheEditorAwayFromInsideTheWriteOfTheNumber) {
  effect.onWrite([this](unsigned id, float value) {
    writes.push_back({id, value});
    window->contentView()->removeFromSuperview();
    editor = nullptr;
  });
  open_entry(*editor->_tremolo_left_rate_parameter);
  const WeakRef<KVOndexView> gone(editor.get());
  system.newestWindow()->type("7,5");
  system.newestWindow()->key_down(enter_key, "");
  pass();
  EXPECT_EQ(writes, (std::vector<Write>{{0, 7.5F}}));
  EXPECT_FALSE(gone);
  EXPECT_EQ(system.windows().size(), 1U);
  window->orderOut(nullptr);
  pass();
}

TEST_F(NumericEntry, TwoEditorsHavePanelsOfTheirOwn) {
  const auto second = make_editor();
  EXPECT_NE(second->_text_entry_popup_view, editor->_text_entry_popup_view);
}

}  // namespace
}  // namespace ondex::test
