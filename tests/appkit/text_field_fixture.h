// SPDX-License-Identifier: MIT
#pragma once

#include <xkbcommon/xkbcommon-keysyms.h>

#include <string>
#include <vector>

#include "appkit/NSTextField.h"
#include "manual_clock.h"
#include "window_fixture.h"

namespace cocoa {

/// X keysyms that tests press.
namespace key {
inline constexpr uint32_t enter = XKB_KEY_Return, keypad_enter = XKB_KEY_KP_Enter, escape = XKB_KEY_Escape,
                          backspace = XKB_KEY_BackSpace;
inline constexpr uint32_t tab = XKB_KEY_Tab, left_tab = XKB_KEY_ISO_Left_Tab, left = XKB_KEY_Left,
                          right = XKB_KEY_Right, home = XKB_KEY_Home;
inline constexpr uint32_t end = XKB_KEY_End, forward_delete = XKB_KEY_Delete, insert = XKB_KEY_Insert;
inline constexpr uint32_t keypad_separator = XKB_KEY_KP_Separator, keypad_decimal = XKB_KEY_KP_Decimal,
                          keypad_7 = XKB_KEY_KP_7;
}  // namespace key

/// Receives "entered:" and notes what the sender's value was.
class EntryTarget : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  void entered(NSTextField* sender) { values.push_back(sender->doubleValue()); }
  std::vector<double> values;

 private:
  static const Action actions_[1];
};
inline const Action EntryTarget::actions_[1] = {
    {SEL("entered:"), MethodAction<&EntryTarget::entered>::perform}};
inline const Class EntryTarget::class_ = {
    .name = "EntryTarget", .superclass = &NSObject::class_, .actions = actions_};

/// Counts the Escapes that come through to it.
class EscapeView : public NSView {
 public:
  using NSView::NSView;
  void cancelOperation(NSObject*) override { ++cancelled; }
  void keyDown(NSEvent*) override { ++keys; }
  int cancelled = 0;
  int keys = 0;
};

/// A field of numbers in the key window, being edited.
class TextFieldFixture : public WindowFixture {
 protected:
  TextFieldFixture() {
    CFRunLoopGetCurrent()->setClock(&clock);
    HeadlessWindowSystem::clearPasteboards();
    formatter->setMaximumFractionDigits(9);
    field->setFormatter(formatter.get());
    field->setTarget_action(target.get(), SEL("entered:"));
    field->setDoubleValue(12.5);
    window->setContentView(content.get());
    content->addSubview(field.get());
    window->setInitialFirstResponder(field.get());
    window->setWindowSystem(&system);
    window->makeKeyAndOrderFront(nullptr);
    turn();
  }
  ~TextFieldFixture() override {
    window = nullptr;
    CFRunLoopGetCurrent()->setClock(nullptr);
  }

  void press(uint32_t keysym, uint32_t modifiers = 0) {
    shown().key_down(keysym, "", modifiers);
    turn();
  }
  void type(std::string_view text) {
    shown().type(text);
    turn();
  }
  void control(char letter, uint32_t modifiers = 0) {
    press(static_cast<uint32_t>(letter), modifier_control | modifiers);
  }
  std::string text() const { return field->editedText().text(); }
  std::string selected() const { return std::string(field->editedText().selectedText()); }

  ondex::test::ManualClock clock;
  Ref<NSNumberFormatter> formatter = make<NSNumberFormatter>();
  Ref<EntryTarget> target = make<EntryTarget>();
  Ref<NSWindow> window = make<NSWindow>(NSMakeRect(100, 100, 200, 60), NSTitledWindowMask);
  Ref<EscapeView> content = make<EscapeView>(NSMakeRect(0, 0, 200, 60));
  Ref<NSTextField> field = make<NSTextField>(NSMakeRect(20, 20, 160, 20));
};

}  // namespace cocoa
