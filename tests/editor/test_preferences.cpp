#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "appkit/NSColorPanel.h"
#include "drawn_view.h"
#include "editor/color_preferences.h"
#include "editor_fixture.h"
#include "foundation/NSArchiver.h"
#include "foundation/preference_store.h"
#include "foundation/preferences_location.h"
#include "gestures.h"
#include "quartz/CGWindowLevel.h"
#include "windows/headless.h"

namespace ondex::test {
namespace {

using namespace cocoa;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

Ref<NSColor> rgb(double r, double g, double b) {
  return NSColor::colorWithDeviceRed_green_blue_alpha(static_cast<CGFloat>(r), static_cast<CGFloat>(g),
                                                      static_cast<CGFloat>(b), 1);
}

void expect_color(const NSColor& color, double r, double g, double b) {
  EXPECT_NEAR(static_cast<double>(color.redComponent()), r, 1e-6);
  EXPECT_NEAR(static_cast<double>(color.greenComponent()), g, 1e-6);
  EXPECT_NEAR(static_cast<double>(color.blueComponent()), b, 1e-6);
}

/// What a process that has read nothing yet finds.
std::optional<PropertyListValue> on_disk(const ColorPreference& preference) {
  PreferenceStore fresh(&preferences_file);
  return fresh.value(preference.key);
}

PropertyListValue archived(const NSColor& color) {
  const auto data = NSArchiver::archivedDataWithRootObject(color);
  return std::vector<uint8_t>(data->bytes().begin(), data->bytes().end());
}

class PreferencesTest : public EditorFixture {
 protected:
  PreferencesTest() {
    open();
    window = show(editor.get());
  }
  Ref<NSWindow> show(NSView* view) {
    auto made = make<NSWindow>(NSMakeRect(100, 100, 860, 352), NSTitledWindowMask);
    made->setWindowSystem(&system);
    made->setContentView(view);
    made->orderFront(nullptr);
    both_turn();
    return made;
  }
  void both_turn() {
    system.dispatch();
    turn();
  }
  static void click_title(KVOndexView& view) { press(*view._main_title, 1); }
  KV_Ondex_Preference_Controller& open_preferences() {
    click_title(*editor);
    both_turn();
    return *editor->_preferences_controller;
  }
  /// A change of a well, as its panel's user makes it.
  static void change(KV_Ondex_Preference_Controller& controller, NSColorWell* well, NSColor* color) {
    well->setColor(color);
    controller.changeColor(well);
  }
  HeadlessWindow& newest() { return *system.newestWindow(); }

  HeadlessWindowSystem system{clock};
  Ref<NSWindow> window;
};

// Opening

TEST_F(PreferencesTest, TheTitleOpensAWindowForTheEditor) {
  EXPECT_FALSE(editor->_preferences_controller);
  KV_Ondex_Preference_Controller& controller = open_preferences();
  EXPECT_THAT(system.windows(), SizeIs(2));
  EXPECT_EQ(newest().kind(), WindowKind::panel);
  EXPECT_EQ(newest().parent(), window->platformWindow());
  EXPECT_EQ(newest().title(), "KV Ondex Preferences");
  EXPECT_TRUE(newest().viewable());
  EXPECT_EQ(controller.windowNibName(), "KV_Ondex_Preferences");
  EXPECT_TRUE(controller._info_color_well && controller._readout_color_well && controller.panel_view);
  EXPECT_EQ(controller.window()->level(), CGWindowLevelForKey(kCGStatusWindowLevelKey));
  EXPECT_TRUE(controller.window()->isKeyWindow());
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(PreferencesTest, ASecondClickBringsTheSameWindowForward) {
  NSWindow* first = open_preferences().window();
  window->makeKeyAndOrderFront(nullptr);
  both_turn();
  EXPECT_FALSE(first->isKeyWindow());
  EXPECT_EQ(open_preferences().window(), first);
  EXPECT_TRUE(first->isKeyWindow());
  EXPECT_THAT(system.windows(), SizeIs(2));
}

TEST_F(PreferencesTest, WithoutAnyStoredColoursTheWellsShowTheDefaults) {
  for (const ColorPreference& preference : {info_color_preference, readout_color_preference}) {
    CFPreferencesSetValue(preference.key, nullptr, kCFPreferencesAnyApplication, kCFPreferencesCurrentUser,
                          kCFPreferencesCurrentHost);
  }
  synchronize();
  const KV_Ondex_Preference_Controller& controller = open_preferences();
  expect_color(*controller._info_color_well->color(), 0.0, 0.15, 0.8);
  expect_color(*controller._readout_color_well->color(), 0.8, 0.65, 0.2);
  EXPECT_EQ(on_disk(info_color_preference), std::nullopt) << "showing a default stores nothing";
}

TEST_F(PreferencesTest, WhatIsNoColourCountsAsMissingForItsWellOnly) {
  store_color(readout_color_preference, *rgb(1, 0, 0));
  CFPreferencesSetValue(info_color_preference.key, make<NSString>("blue").get(), kCFPreferencesAnyApplication,
                        kCFPreferencesCurrentUser, kCFPreferencesCurrentHost);
  const KV_Ondex_Preference_Controller& controller = open_preferences();
  expect_color(*controller._info_color_well->color(), 0.0, 0.15, 0.8);
  expect_color(*controller._readout_color_well->color(), 1, 0, 0);
}

TEST_F(PreferencesTest, WithoutItsInterfaceFileTheEditorGoesOn) {
  const TemporaryFolder empty;
  bundle = make<NSBundle>(empty.path().string(), bundle_classes());
  click_title(*editor);
  both_turn();
  EXPECT_THAT(log, testing::ElementsAre(HasSubstr("KV_Ondex_Preferences.xib")));
  EXPECT_THAT(system.windows(), SizeIs(1));
  bundle = make<NSBundle>(source_path("resources"), bundle_classes());
  open_preferences();
  EXPECT_THAT(system.windows(), SizeIs(2));
}

// Storing

TEST_F(PreferencesTest, ChangingOneWellWritesOnlyItsKeyAtOnce) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  const auto readout_before = on_disk(readout_color_preference);
  change(controller, controller._info_color_well, rgb(0.25, 0.5, 0.75).get());
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(0.25, 0.5, 0.75)));
  EXPECT_EQ(on_disk(readout_color_preference), readout_before);
  change(controller, controller._readout_color_well, rgb(1, 0, 0.5).get());
  EXPECT_EQ(on_disk(readout_color_preference), archived(*rgb(1, 0, 0.5)));
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(0.25, 0.5, 0.75)));
}

TEST_F(PreferencesTest, AKeyThatIsMissingStaysMissingWhenTheOtherChanges) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  CFPreferencesSetValue(readout_color_preference.key, nullptr, kCFPreferencesAnyApplication,
                        kCFPreferencesCurrentUser, kCFPreferencesCurrentHost);
  change(controller, controller._info_color_well, rgb(1, 1, 0).get());
  EXPECT_EQ(on_disk(readout_color_preference), std::nullopt);
}

TEST_F(PreferencesTest, AnyOtherSenderWritesNothing) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  const auto info = on_disk(info_color_preference);
  const auto readout = on_disk(readout_color_preference);
  const auto stranger = make<NSColorWell>(NSMakeRect(0, 0, 40, 20));
  stranger->setColor(rgb(1, 0, 0).get());
  controller.changeColor(stranger.get());
  controller.changeColor(editor.get());
  controller.changeColor(nullptr);
  EXPECT_EQ(on_disk(info_color_preference), info);
  EXPECT_EQ(on_disk(readout_color_preference), readout);
}

TEST_F(PreferencesTest, AWellThatIsNotConnectedIsAnyOtherSender) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  NSColorWell* well = controller._info_color_well;
  controller._info_color_well = nullptr;
  const auto info = on_disk(info_color_preference);
  change(controller, well, rgb(1, 0, 0).get());
  EXPECT_EQ(on_disk(info_color_preference), info);
}

TEST_F(PreferencesTest, OpenEditorsKeepTheirColoursAndLaterOnesShowTheNew) {
  const auto label = [](const KVOndexView& view) { return DrawnView(*view._left_label, 1); };
  const auto readout = [](const KVOndexView& view) {
    return DrawnView(*view._tremolo_left_rate_parameter, 1);
  };
  const DrawnView label_before = label(*editor);
  const DrawnView readout_before = readout(*editor);
  KV_Ondex_Preference_Controller& controller = open_preferences();
  change(controller, controller._info_color_well, rgb(1, 0, 0).get());
  change(controller, controller._readout_color_well, rgb(0, 1, 0).get());
  EXPECT_EQ(label(*editor), label_before);
  EXPECT_EQ(readout(*editor), readout_before);
  const Ref<KVOndexView> later = make_editor();
  EXPECT_FALSE(label(*later) == label_before);
  EXPECT_FALSE(readout(*later) == readout_before);
}

TEST_F(PreferencesTest, EditorsAndWindowsOpenedLaterShowWhatOtherProcessesStored) {
  PreferenceStore other_process(&preferences_file);
  other_process.setValue(info_color_preference.key, archived(*rgb(1, 0, 0)));
  ASSERT_TRUE(other_process.synchronize());
  expect_color(*open_preferences()._info_color_well->color(), 1, 0, 0);
  other_process.setValue(info_color_preference.key, archived(*rgb(0, 1, 0)));
  ASSERT_TRUE(other_process.synchronize());
  make_editor();
  expect_color(*preferred_color(info_color_preference), 0, 1, 0);
}

TEST_F(PreferencesTest, EachEditorHasAWindowOfItsOwnAndBothWriteTheSameKeys) {
  const Ref<KVOndexView> second = make_editor();
  const Ref<NSWindow> second_window = show(second.get());
  KV_Ondex_Preference_Controller& one = open_preferences();
  click_title(*second);
  KV_Ondex_Preference_Controller& other = *second->_preferences_controller;
  EXPECT_NE(one.window(), other.window());
  EXPECT_EQ(one.window()->servedWindow(), window.get());
  EXPECT_EQ(other.window()->servedWindow(), second_window.get());
  EXPECT_THAT(system.windows(), SizeIs(4));
  change(one, one._info_color_well, rgb(1, 0, 0).get());
  change(other, other._info_color_well, rgb(0, 0, 1).get());
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(0, 0, 1)));
  change(one, one._readout_color_well, rgb(0, 1, 0).get());
  EXPECT_EQ(on_disk(readout_color_preference), archived(*rgb(0, 1, 0)));
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(0, 0, 1)));
}

TEST_F(PreferencesTest, WhatIsPickedInTheColourPanelIsStoredWhileTheMouseMoves) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  NSColorWell* well = controller._readout_color_well;
  HeadlessWindow& preferences_window = newest();
  const NSRect place = well->convertRect_toView(well->bounds(), nullptr);
  preferences_window.press({NSMinX(place) + NSWidth(place) / 2, NSMinY(place) + NSHeight(place) / 2});
  preferences_window.release();
  both_turn();
  ASSERT_TRUE(well->isActive());
  HeadlessWindow& panel = newest();
  ASSERT_NE(&panel, &preferences_window);
  // The lower left corner of the square is black, the upper left one white.
  panel.press({16, 16});
  both_turn();
  EXPECT_EQ(on_disk(readout_color_preference), archived(*rgb(0, 0, 0)));
  panel.drag_to({16, 207});
  both_turn();
  EXPECT_EQ(on_disk(readout_color_preference), archived(*rgb(1, 1, 1)));
  panel.release();
  EXPECT_EQ(on_disk(info_color_preference), archived(*default_color(info_color_preference)));
}

// Disks

TEST_F(PreferencesTest, ADiskThatNobodyCanWriteToIsReportedAndNothingIsLost) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  const std::string folder = getenv("XDG_CONFIG_HOME");
  setenv("XDG_CONFIG_HOME", "/proc/ondex", 1);
  change(controller, controller._info_color_well, rgb(1, 0, 0).get());
  EXPECT_THAT(log, testing::Contains(HasSubstr("cannot be written")));
  EXPECT_TRUE(controller.window()->isVisible());
  log.clear();
  // Editors of this process show it all the same.
  make_editor();
  expect_color(*preferred_color(info_color_preference), 1, 0, 0);
  setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  change(controller, controller._readout_color_well, rgb(0, 1, 0).get());
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(1, 0, 0))) << "written as soon as it can be";
  EXPECT_EQ(on_disk(readout_color_preference), archived(*rgb(0, 1, 0)));
}

/// Files of this process cannot grow beyond 64 bytes while it lives.
class FullDisk {
 public:
  FullDisk() {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit full = {.rlim_cur = 64, .rlim_max = before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, SIG_DFL);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
};

TEST_F(PreferencesTest, AFullDiskIsReportedAndLeavesTheOldColours) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  {
    const FullDisk full;
    change(controller, controller._info_color_well, rgb(1, 0, 0).get());
    EXPECT_EQ(on_disk(info_color_preference), archived(*default_color(info_color_preference)));
  }
  EXPECT_THAT(log, testing::Contains(HasSubstr("cannot be written")));
  change(controller, controller._info_color_well, rgb(0, 0, 1).get());
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(0, 0, 1)));
}

// Two processes

/// In a child: with every byte that comes, the next colour of one well is changed; then a byte goes back.
[[noreturn]] void change_on_demand(int commands, int answers, bool info) {
  const auto controller = make<KV_Ondex_Preference_Controller>();
  const bool loaded = controller->window() != nullptr;
  NSColorWell* well = info ? controller->_info_color_well : controller->_readout_color_well;
  uint8_t round = 0;
  while (loaded && read(commands, &round, 1) == 1) {
    well->setColor(rgb(round / 255.0, info ? 1 : 0, 0).get());
    controller->changeColor(well);
    if (write(answers, &round, 1) != 1)
      break;
  }
  _exit(0);
}

TEST_F(PreferencesTest, TwoProcessesThatChangeDifferentColoursAtTheSameMomentLoseNothing) {
  struct Process {
    pid_t id = -1;
    int commands[2] = {-1, -1};
    int answers[2] = {-1, -1};
  } processes[2];
  for (Process& process : processes) {
    ASSERT_EQ(pipe(process.commands) + pipe(process.answers), 0);
    process.id = fork();
    if (process.id == 0) {
      for (const Process& each : processes)
        close(each.commands[1]);
      change_on_demand(process.commands[0], process.answers[1], &process == processes);
    }
    close(process.commands[0]);
    close(process.answers[1]);
  }
  constexpr int rounds = 200;
  for (uint8_t round = 1; round <= rounds; ++round) {
    for (const Process& process : processes)
      ASSERT_EQ(write(process.commands[1], &round, 1), 1);
    uint8_t answer = 0;
    for (const Process& process : processes)
      ASSERT_EQ(read(process.answers[0], &answer, 1), 1);
    ASSERT_EQ(on_disk(info_color_preference), archived(*rgb(round / 255.0, 1, 0))) << int{round};
    ASSERT_EQ(on_disk(readout_color_preference), archived(*rgb(round / 255.0, 0, 0))) << int{round};
  }
  for (const Process& process : processes) {
    close(process.commands[1]);
    close(process.answers[0]);
    waitpid(process.id, nullptr, 0);
  }
}

// Closing

TEST_F(PreferencesTest, TheCloseButtonClosesAndTheTitleReopens) {
  NSWindow* preferences_window = open_preferences().window();
  newest().requestClose();
  both_turn();
  EXPECT_FALSE(preferences_window->isVisible());
  EXPECT_EQ(open_preferences().window(), preferences_window);
  EXPECT_TRUE(newest().viewable());
  EXPECT_THAT(system.windows(), SizeIs(2));
}

class PreferencesClosing : public PreferencesTest {
 protected:
  PreferencesClosing() {
    open_preferences()._info_color_well->activate();
    both_turn();
    EXPECT_THAT(system.windows(), SizeIs(3));
  }
  HeadlessWindow& preferences_window() { return *system.windows()[1]; }
  HeadlessWindow& panel() { return *system.windows()[2]; }
};

TEST_F(PreferencesClosing, ThePreferencesTakeTheColourPanelWithThem) {
  preferences_window().requestClose();
  both_turn();
  EXPECT_FALSE(panel().viewable());
  EXPECT_FALSE(editor->_preferences_controller->_info_color_well->isActive());
}

TEST_F(PreferencesClosing, TheColourPanelAloneLeavesThePreferences) {
  panel().requestClose();
  both_turn();
  EXPECT_TRUE(preferences_window().viewable());
  EXPECT_FALSE(editor->_preferences_controller->_info_color_well->isActive());
  editor->_preferences_controller->_readout_color_well->activate();
  both_turn();
  EXPECT_TRUE(panel().viewable());
  EXPECT_THAT(system.windows(), SizeIs(3));
}

TEST_F(PreferencesClosing, TheEditorsWindowTakesEverythingWithIt) {
  window->close();
  EXPECT_FALSE(preferences_window().viewable());
  EXPECT_FALSE(panel().viewable());
  window = nullptr;
  EXPECT_THAT(system.windows(), IsEmpty());
  editor = nullptr;
}

TEST_F(PreferencesClosing, TheEditorTakesEverythingWithItBeforeItsWindow) {
  window->setContentView(make<NSView>(NSRect{}).get());
  editor = nullptr;
  EXPECT_THAT(system.windows(), SizeIs(1));
  both_turn();
  window = nullptr;
  EXPECT_THAT(system.windows(), IsEmpty());
}

TEST_F(PreferencesClosing, AnEditorThatMovesToAnotherWindowOpensThemThere) {
  HeadlessWindowSystem elsewhere(clock);
  auto next = make<NSWindow>(NSMakeRect(0, 0, 860, 352), NSTitledWindowMask);
  next->setWindowSystem(&elsewhere);
  next->orderFront(nullptr);
  window = nullptr;
  next->setContentView(editor.get());
  click_title(*editor);
  EXPECT_THAT(system.windows(), IsEmpty());
  EXPECT_THAT(elsewhere.windows(), SizeIs(2));
  next = nullptr;
  EXPECT_THAT(elsewhere.windows(), IsEmpty());
}

TEST_F(PreferencesClosing, ALostConnectionHarmsNobody) {
  system.loseConnection();
  both_turn();
  click_title(*editor);
  both_turn();
  EXPECT_FALSE(editor->_preferences_controller->window()->isVisible());
  editor = nullptr;
  window = nullptr;
}

TEST_F(PreferencesClosing, AHostThatDestroysTheEditorsWindowClosesThem) {
  system.windows()[0]->destroyFromOutside();
  both_turn();
  EXPECT_FALSE(preferences_window().viewable());
  EXPECT_FALSE(panel().viewable());
}

}  // namespace
}  // namespace ondex::test
