// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "appkit/private/NSColorPanel.h"
#include "preferences_fixture.h"

/// When what the user picks comes to disk, and what is there already stays.

namespace ondex::test {
namespace {

using namespace cocoa;
using testing::HasSubstr;
using testing::IsEmpty;

// Places in the colour panel's square, whose colours are certain.
constexpr NSPoint on_black = {16, 16};
constexpr NSPoint on_white = {16, 207};

/// Another process, as far as the store's lock can tell, that is writing.
class LockHolder {
 public:
  LockHolder()
      : descriptor_(
            open((preferences_file().string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    EXPECT_EQ(flock(descriptor_, LOCK_EX), 0);
  }
  ~LockHolder() { close(descriptor_); }
  LockHolder(const LockHolder&) = delete;
  LockHolder& operator=(const LockHolder&) = delete;

 private:
  int descriptor_;
};

class PreferencesWriting : public PreferencesTest {
 protected:
  PreferencesWriting() : controller(&open_preferences()) {
    controller->_info_color_well->activate();
    both_turn();
  }
  HeadlessWindow& preferences_window() { return *system.windows()[1]; }
  HeadlessWindow& panel() { return *system.windows()[2]; }
  void press(NSPoint place) {
    panel().press(place);
    both_turn();
  }
  void drag_to(NSPoint place) {
    panel().drag_to(place);
    both_turn();
  }
  void pass(double seconds) {
    clock.advance(seconds);
    both_turn();
  }
  static PropertyListValue grey(double white) { return archived(*rgb(white, white, white)); }

  KV_Ondex_Preference_Controller* controller;
  const PropertyListValue unchanged = archived(*default_color(info_color_preference));
};

TEST_F(PreferencesWriting, MotionsAreWrittenTogetherWithinAFifthOfASecond) {
  press(on_black);
  drag_to(on_white);
  EXPECT_EQ(on_disk(info_color_preference), unchanged);
  expect_color(*preferred_color(info_color_preference), 1, 1, 1);
  pass(0.1);
  drag_to(on_black);
  EXPECT_EQ(on_disk(info_color_preference), unchanged);
  // 0.2 s after the first, whatever has come since, with an idle call of a slow host between.
  pass(0.051);
  EXPECT_EQ(on_disk(info_color_preference), grey(0));
  drag_to(on_white);
  EXPECT_EQ(on_disk(info_color_preference), grey(0));
  pass(0.2);
  EXPECT_EQ(on_disk(info_color_preference), grey(1));
  EXPECT_EQ(on_disk(readout_color_preference), archived(*default_color(readout_color_preference)));
}

TEST_F(PreferencesWriting, TheReleaseWritesAtOnce) {
  press(on_black);
  drag_to(on_white);
  panel().release();
  both_turn();
  EXPECT_EQ(on_disk(info_color_preference), grey(1));
}

TEST_F(PreferencesWriting, ClosingThePanelInADragWrites) {
  press(on_white);
  panel().requestClose();
  both_turn();
  EXPECT_EQ(on_disk(info_color_preference), grey(1));
}

TEST_F(PreferencesWriting, ClosingThePreferencesInADragWrites) {
  press(on_white);
  preferences_window().requestClose();
  both_turn();
  EXPECT_EQ(on_disk(info_color_preference), grey(1));
}

TEST_F(PreferencesWriting, TheEditorThatGoesInADragWrites) {
  press(on_white);
  window->setContentView(make<NSView>(NSRect{}).get());
  editor = nullptr;
  EXPECT_EQ(on_disk(info_color_preference), grey(1));
}

TEST_F(PreferencesWriting, OfTwoEditorsDraggedAtOnceNothingIsLost) {
  const Ref<KVOndexView> second = make_editor();
  const Ref<NSWindow> second_window = show(second.get());
  click_title(*second);
  second->_preferences_controller->_readout_color_well->activate();
  both_turn();
  HeadlessWindow& second_panel = newest();
  press(on_black);
  second_panel.press(on_white);
  both_turn();
  drag_to(on_white);
  second_panel.drag_to(on_black);
  pass(0.2);
  EXPECT_EQ(on_disk(info_color_preference), grey(1));
  EXPECT_EQ(on_disk(readout_color_preference), grey(0));
  drag_to(on_black);
  second_panel.drag_to(on_white);
  panel().release();
  second_panel.release();
  both_turn();
  EXPECT_EQ(on_disk(info_color_preference), grey(0));
  EXPECT_EQ(on_disk(readout_color_preference), grey(1));
}

TEST_F(PreferencesWriting, WhileAnotherProcessWritesItIsTriedAgain) {
  {
    const LockHolder other;
    press(on_black);
    pass(0.2);
    drag_to(on_white);
    panel().release();
    both_turn();
    EXPECT_EQ(on_disk(info_color_preference), unchanged);
    expect_color(*preferred_color(info_color_preference), 1, 1, 1);
  }
  // Nothing more happens but that time passes.
  pass(1);
  EXPECT_EQ(on_disk(info_color_preference), grey(1));
}

TEST_F(PreferencesWriting, WhatIsNotWrittenWhenTheEditorGoesIsTakenAlongByTheNext) {
  {
    const LockHolder other;
    change(*controller, controller->_info_color_well, rgb(1, 0, 0).get());
    window->setContentView(make<NSView>(NSRect{}).get());
    editor = nullptr;
    EXPECT_EQ(on_disk(info_color_preference), unchanged);
  }
  make_editor();
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(1, 0, 0)));
}

TEST_F(PreferencesWriting, ADiskThatCanBeWrittenToAgainIsWrittenTo) {
  const std::string folder = getenv("XDG_CONFIG_HOME");
  setenv("XDG_CONFIG_HOME", "/proc/ondex", 1);
  change(*controller, controller->_info_color_well, rgb(1, 0, 0).get());
  for (int seconds = 0; seconds < 60; ++seconds)
    pass(1);
  EXPECT_THAT(log, testing::ElementsAre(HasSubstr("cannot be written"))) << "told once";
  setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  pass(10);
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(1, 0, 0)));
}

// What others store

TEST_F(PreferencesWriting, AChangeBackToWhatWasReadIsWrittenOverWhatAnotherProcessStored) {
  change(*controller, controller->_info_color_well, rgb(0, 1, 0).get());
  PreferenceStore other_process(&preferences_file);
  other_process.setValue(info_color_preference.key, archived(*rgb(0, 0, 1)));
  ASSERT_TRUE(other_process.synchronize());
  change(*controller, controller->_info_color_well, rgb(0, 1, 0).get());
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(0, 1, 0)));
}

// What is no colour

void put_store(const std::string& info, const std::string& readout) {
  std::ofstream(preferences_file()) << "<plist version=\"1.0\"><dict><key>" << info_color_preference.key
                                    << "</key>" << info << "<key>" << readout_color_preference.key << "</key>"
                                    << readout << "</dict></plist>";
}

std::string element_of(const NSColor& color) {
  return "<data>" + base64_from_bytes(std::get<std::vector<uint8_t>>(archived(color))) + "</data>";
}

std::string contents_of_store() {
  std::ifstream stream(preferences_file(), std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST_F(PreferencesTest, AValueOfAnotherKindFallsBackForItselfAloneAndStays) {
  for (const char* other :
       {"<integer>1</integer>", "<real>0.5</real>", "<true/>", "<date>2009-02-13T23:31:30Z</date>",
        "<array/>", "<dict><key>k</key><false/></dict>", "<data>***</data>", "<data>Zm9v</data>",
        "<string>blue</string>"}) {
    SCOPED_TRACE(other);
    put_store(other, element_of(*rgb(1, 0, 0)));
    const std::string before = contents_of_store();
    const Ref<KVOndexView> one = make_editor();
    expect_color(*preferred_color(info_color_preference), 0.0, 0.15, 0.8);
    expect_color(*preferred_color(readout_color_preference), 1, 0, 0);
    EXPECT_EQ(contents_of_store(), before);

    put_store(element_of(*rgb(1, 0, 0)), other);
    make_editor();
    expect_color(*preferred_color(info_color_preference), 1, 0, 0);
    expect_color(*preferred_color(readout_color_preference), 0.8, 0.65, 0.2);
  }
}

TEST_F(PreferencesTest, InksAreShownAsTheColourThatTheyPrint) {
  // Device inks (0, 1, 1, 0, 1): red.
  put_store(
      "<data>BAtzdHJlYW10eXBlZIHoA4QBQISEhAdOU0NvbG9yAISECE5TT2JqZWN0AIWEAWMFhAVmZmZmZgABAQABhg==</data>",
      element_of(*rgb(0, 0, 1)));
  make_editor();
  expect_color(*preferred_color(info_color_preference), 1, 0, 0);
  EXPECT_THAT(log, IsEmpty());
}

// Seeding

class SeedingTest : public PreferencesTest {
 protected:
  SeedingTest() {
    editor = nullptr;
    window->setContentView(make<NSView>(NSRect{}).get());
    std::filesystem::remove(preferences_file());
  }
};

TEST_F(SeedingTest, IsTriedAgainWhileAnotherProcessWrites) {
  {
    const LockHolder other;
    editor = make_editor();
    EXPECT_EQ(on_disk(info_color_preference), std::nullopt);
    expect_color(*preferred_color(info_color_preference), 0.0, 0.15, 0.8);
  }
  clock.advance(0.25);
  turn();
  EXPECT_EQ(on_disk(info_color_preference), archived(*default_color(info_color_preference)));
  EXPECT_EQ(on_disk(readout_color_preference), archived(*default_color(readout_color_preference)));
}

TEST_F(SeedingTest, DoesNotOverwriteWhatSomebodyHasStoredMeanwhile) {
  {
    const LockHolder other;
    editor = make_editor();
  }
  PreferenceStore other_process(&preferences_file);
  other_process.setValue(info_color_preference.key, archived(*rgb(1, 0, 0)));
  ASSERT_TRUE(other_process.synchronize());
  clock.advance(0.25);
  turn();
  synchronize();
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(1, 0, 0)));
  EXPECT_EQ(on_disk(readout_color_preference), std::nullopt);
}

}  // namespace
}  // namespace ondex::test
