// SPDX-License-Identifier: MIT
#include "entry_on_display.h"

namespace ondex::test {
namespace {

class EntryPasteboard : public EntryOnDisplay {
 protected:
  void SetUp() override {
    EntryOnDisplay::SetUp();
    show_editor();
    writes.clear();
    open_entry();
  }
  std::string ask(const std::string& selection) {
    // The server serves its clients in any order: that the editor owns it must have reached it.
    EXPECT_TRUE(until([&] { return program.owner(selection) != XCB_WINDOW_NONE; }));
    program.ask(selection, "UTF8_STRING");
    EXPECT_TRUE(until([this] { return program.answered(); }));
    return program.bytes();
  }
};

TEST_F(EntryPasteboard, AnotherProgramPastesWhatWasCopied) {
  type("12.5");
  type_with(key::control, 'a');
  type_with(key::control, 'c');
  EXPECT_EQ(ask("CLIPBOARD"), "12.5");
}

TEST_F(EntryPasteboard, CuttingCopiesAndRemoves) {
  type("12.5");
  type_with(key::control, 'a');
  type_with(key::control, 'x');
  ASSERT_TRUE(until([this] { return typed().empty(); }));
  EXPECT_EQ(ask("CLIPBOARD"), "12.5");
}

TEST_F(EntryPasteboard, WhatAnotherProgramCopiedIsPastedAndCommitted) {
  program.own_text("CLIPBOARD", "3,25\n");
  type_with(key::control, 'v');
  ASSERT_TRUE(until([this] { return typed() == "3,25"; }));
  user.type_key(key::enter);
  ASSERT_TRUE(closes());
  EXPECT_EQ(writes, (std::vector<Write>{{0, 3.25F}}));
}

TEST_F(EntryPasteboard, OpeningTakesNoSelectionAwayAndTheMiddleButtonPutsItIn) {
  program.own_text("PRIMARY", "4.5");
  type("1");
  ASSERT_TRUE(until([this] { return typed() == "1"; }));
  EXPECT_TRUE(program.owns("PRIMARY"));
  const auto place = user.geometry(panel_id());
  user.point(place.x + place.width / 2 + 30, place.y + place.height / 2);
  user.click(2);
  EXPECT_TRUE(until([this] { return typed() == "14.5"; }));
}

TEST_F(EntryPasteboard, SelectingWithTheKeyboardOffersTheSelection) {
  type("12.5");
  type_with(key::shift, key::left);
  type_with(key::shift, key::left);
  ASSERT_TRUE(until([this] { return field().editedText().selectedText() == ".5"; }));
  EXPECT_EQ(ask("PRIMARY"), ".5");
}

TEST_F(EntryPasteboard, ReturnWaitsForTheTextOfASlowProgram) {
  program.own_text("CLIPBOARD", "3.25");
  type("9");
  ASSERT_TRUE(until([this] { return typed() == "9"; }));
  type_with(key::control, 'a');
  type_with(key::control, 'v');
  user.type_key(key::enter);
  user.sync();
  program_answers = false;
  for (int turns = 0; turns < 20; ++turns)
    pass();
  EXPECT_TRUE(panel());
  EXPECT_TRUE(writes.empty());
  program_answers = true;
  ASSERT_TRUE(closes());
  EXPECT_EQ(writes, (std::vector<Write>{{0, 3.25F}}));
}

TEST_F(EntryPasteboard, ATextThatComesAfterThePanelHasClosedIsDropped) {
  program.own("CLIPBOARD", [](const std::string&) { return std::nullopt; });
  type_with(key::control, 'v');
  user.type_key(key::escape);
  ASSERT_TRUE(closes());
  pass();
  EXPECT_TRUE(writes.empty());
}

}  // namespace
}  // namespace ondex::test
