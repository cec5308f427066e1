// SPDX-License-Identifier: MIT
#include <xkbcommon/xkbcommon-keysyms.h>

#include <gmock/gmock.h>

#include "appkit/private/NSColorPanel.h"
#include "editor/private/color_preferences.h"
#include "editor_fixture.h"
#include "windows/x11.h"
#include "x_client.h"
#include "x_server.h"

namespace ondex::test {
namespace {

using namespace cocoa;
using test_support::XClient;
using testing::Contains;
using testing::ElementsAre;

enum class Screen { with_manager, without_manager };

/// An editor in a window of its own on a server, and a user who sees it.
class PreferencesOnX11 : public EditorFixture, public testing::WithParamInterface<Screen> {
 protected:
  void SetUp() override {
    ASSERT_FALSE(server.display().empty()) << "Xvfb did not start";
    if (GetParam() == Screen::with_manager) {
      manager = std::make_unique<test_support::WindowManager>(server.display());
      ASSERT_TRUE(manager->started());
      user.share_with_manager();
    }
    system = make_x11_window_system(server.display().c_str(), 1.0);
    ASSERT_TRUE(system);
    dispatcher = CFRunLoopGetCurrent()->addPoller([this] { return system->dispatch(); });
    open();
    window = show(editor.get(), 100);
  }
  void TearDown() override {
    editor = nullptr;
    window = nullptr;
    dispatcher.reset();
    system.reset();
  }

  bool until(const std::function<bool()>& condition) {
    return test_support::wait_until(
        [&] {
          turn();
          return condition();
        },
        {system->descriptor(), user.descriptor()});
  }
  Ref<NSWindow> show(NSView* view, CGFloat x) {
    auto made = make<NSWindow>(NSMakeRect(x, 300, 860, 352), NSTitledWindowMask | NSClosableWindowMask);
    made->setWindowSystem(system.get());
    made->setContentView(view);
    made->makeKeyAndOrderFront(nullptr);
    EXPECT_TRUE(until([&] { return shows(*made); }));
    return made;
  }
  static xcb_window_t id(const NSWindow& of) {
    return of.platformWindow() ? static_cast<xcb_window_t>(of.platformWindow()->nativeHandle()) : XCB_NONE;
  }
  bool shows(const NSWindow& which) {
    return which.isVisible() && user.viewable(id(which)) && which.platformWindow()->viewable();
  }
  /// Puts the pointer onto a place of a window's content, in points from its lower left.
  void point(const NSWindow& which, double x, double y) {
    const XClient::Geometry at = user.geometry(id(which));
    user.point(at.x + static_cast<int>(x), at.y + at.height - 1 - static_cast<int>(y));
  }
  void click(const NSWindow& which, double x, double y) {
    point(which, x, y);
    user.click(1);
  }
  void click_middle(const NSView& view) {
    const NSRect place = view.convertRect_toView(view.bounds(), nullptr);
    click(*view.window(), static_cast<double>(NSMinX(place) + NSWidth(place) / 2),
          static_cast<double>(NSMinY(place) + NSHeight(place) / 2));
  }
  KV_Ondex_Preference_Controller& controller() { return *editor->_preferences_controller; }
  NSWindow& preferences_window() { return *controller().window(); }
  NSWindow& panel() { return *preferences_window().ownedWindows().at(0); }
  void open_preferences() {
    click_middle(*editor->_main_title);
    ASSERT_TRUE(until([&] { return editor->_preferences_controller && shows(preferences_window()); }));
  }
  void open_panel(const NSColorWell& well) {
    click_middle(well);
    ASSERT_TRUE(until([&] { return well.isActive() && shows(panel()); }));
  }
  /// As the window manager's close button does.
  void ask_to_close(const NSWindow& which) {
    if (manager) {
      user.send_to_manager(id(which), "_NET_CLOSE_WINDOW");
    } else {
      user.send_protocol(id(which), "WM_DELETE_WINDOW");
    }
  }
  static bool stores(const ColorPreference& preference, double r, double g, double b) {
    synchronize();
    const Ref<NSColor> color = preferred_color(preference);
    const auto is = [](CGFloat value, double wanted) {
      return std::abs(static_cast<double>(value) - wanted) < 1e-6;
    };
    return is(color->redComponent(), r) && is(color->greenComponent(), g) && is(color->blueComponent(), b);
  }

  test_support::XServer server;
  XClient user{server.display()};
  std::unique_ptr<test_support::WindowManager> manager;
  std::unique_ptr<WindowSystem> system;
  CFRunLoop::AttachmentRef dispatcher;
  Ref<NSWindow> window;
};

TEST_P(PreferencesOnX11, AClickOnTheTitleOpensThemAboveTheEditorsWindow) {
  open_preferences();
  const xcb_window_t opened = id(preferences_window());
  EXPECT_THAT(user.property(opened, "_NET_WM_STATE"), Contains(user.atom("_NET_WM_STATE_ABOVE")));
  EXPECT_THAT(user.property(opened, "_NET_WM_WINDOW_TYPE"),
              ElementsAre(user.atom("_NET_WM_WINDOW_TYPE_DIALOG")));
  EXPECT_THAT(user.property(opened, "WM_TRANSIENT_FOR"), ElementsAre(id(*window)));
  EXPECT_EQ(user.text_property(opened, "_NET_WM_NAME"), "KV Ondex Preferences");
  // Over the middle of the editor.
  const XClient::Geometry outer = user.geometry(id(*window));
  const XClient::Geometry inner = user.geometry(opened);
  EXPECT_NEAR(inner.x + inner.width / 2.0, outer.x + outer.width / 2.0, 1);
  EXPECT_NEAR(inner.y + inner.height / 2.0, outer.y + outer.height / 2.0, 1);
}

TEST_P(PreferencesOnX11, AreMovedByTheirBackgroundAndTheColourPanelByItsOwn) {
  open_preferences();
  open_panel(*controller()._info_color_well);
  // The panel's rim, and the margin around the parts of the colour panel.
  for (const auto& [which, x, y] : {std::tuple(&preferences_window(), 8, 12), std::tuple(&panel(), 3, 3)}) {
    const NSWindow& moving = *which;
    const xcb_window_t moved = id(moving);
    const XClient::Geometry before = user.geometry(moved);
    point(moving, x, y);
    user.press(1);
    const int right = before.x + x;
    const int down = before.y + before.height - 1 - y;
    // The manager needs motion, after it has taken the pointer, to see where it goes.
    int tremble = 0;
    ASSERT_TRUE(until([&] {
      user.point(right - 60, down + 50 + (tremble ^= 1));
      const XClient::Geometry now = user.geometry(moved);
      return now.x == before.x - 60 && now.y >= before.y + 50;
    }));
    user.point(right - 60, down + 50);
    user.release(1);
    const XClient::Geometry after = {before.x - 60, before.y + 50, before.width, before.height};
    EXPECT_TRUE(until([&] { return user.geometry(moved) == after; }));
    // It has been let go of, and knows where it is.
    user.point(right + 90, down - 90);
    if (manager) {
      ASSERT_TRUE(user.wait_for_manager());
    }
    EXPECT_TRUE(until([&] {
      return moving.frame() == NSMakeRect(after.x, 800 - after.y - after.height, after.width, after.height);
    }));
    EXPECT_EQ(user.geometry(moved), after);
  }
  // What is on them works where they are now.
  click(panel(), 230, 207);
  click(panel(), 207, 207);
  EXPECT_TRUE(until([] { return stores(info_color_preference, 1, 0, 0); }));
}

TEST_P(PreferencesOnX11, AreNotMovedByALabelOrAColourWell) {
  open_preferences();
  const xcb_window_t opened = id(preferences_window());
  const XClient::Geometry before = user.geometry(opened);
  ASSERT_GT(controller().panel_view->subviews().size(), 2U);
  for (const Ref<NSView>& control : controller().panel_view->subviews()) {
    const NSRect place = control->convertRect_toView(control->bounds(), nullptr);
    const int x = before.x + static_cast<int>(NSMinX(place) + NSWidth(place) / 2);
    const int y = before.y + before.height - 1 - static_cast<int>(NSMinY(place) + NSHeight(place) / 2);
    user.point(x, y);
    user.press(1);
    for (int step = 1; step <= 4; ++step) {
      user.point(x + 20 * step, y + 15 * step);
      user.sync();
      until([] { return true; });
    }
    user.release(1);
    if (manager) {
      ASSERT_TRUE(user.wait_for_manager());
    }
    until([] { return true; });
    EXPECT_EQ(user.geometry(opened), before);
  }
}

TEST_P(PreferencesOnX11, TheEditorIsNotMovedByWhatIsInIt) {
  const XClient::Geometry before = user.geometry(id(*window));
  // The background, a graph, a label, the knob, a readout.
  for (const auto& [x, y] : {std::pair(10, 10), std::pair(100, 200), std::pair(430, 328), std::pair(430, 176),
                             std::pair(183, 83)}) {
    point(*window, x, y);
    user.press(1);
    for (int step = 1; step <= 4; ++step) {
      point(*window, x + 10 * step, y + 10 * step);
      until([] { return true; });
    }
    user.release(1);
    if (manager) {
      ASSERT_TRUE(user.wait_for_manager());
    }
    until([] { return true; });
    EXPECT_EQ(user.geometry(id(*window)), before);
  }
}

TEST_P(PreferencesOnX11, ColoursArePickedByMouseAndStoredMeanwhile) {
  open_preferences();
  open_panel(*controller()._info_color_well);
  EXPECT_THAT(user.property(id(panel()), "WM_TRANSIENT_FOR"), ElementsAre(id(preferences_window())));
  // The corners of the square: (16, 16) black, (16, 207) white, (207, 207) the hue.
  point(panel(), 16, 207);
  user.press(1);
  EXPECT_TRUE(until([] { return stores(info_color_preference, 1, 1, 1); }));
  point(panel(), 16, 16);
  EXPECT_TRUE(until([] { return stores(info_color_preference, 0, 0, 0); }));
  user.release(1);
  // The upper end of the strip is red.
  click(panel(), 230, 207);
  click(panel(), 207, 207);
  EXPECT_TRUE(until([] { return stores(info_color_preference, 1, 0, 0); }));
  EXPECT_TRUE(stores(readout_color_preference, 0.8, 0.65, 0.2));
  // A click on the colour before.
  click(panel(), 340, 180);
  EXPECT_TRUE(until([] { return stores(info_color_preference, 0.0, 0.15, 0.8); }));
}

TEST_P(PreferencesOnX11, ColoursAreTyped) {
  open_preferences();
  open_panel(*controller()._readout_color_well);
  click(panel(), 310, 27);
  ASSERT_TRUE(until([&] { return panel().isKeyWindow() && panel().firstResponder() != nullptr; }));
  user.press_key(XKB_KEY_Control_L);
  user.type_key('a');
  user.release_key(XKB_KEY_Control_L);
  for (const char digit : {'0', '0', '3', '3', '6', '6'})
    user.type_key(static_cast<xcb_keysym_t>(digit));
  user.type_key(XKB_KEY_Return);
  EXPECT_TRUE(until([] { return stores(readout_color_preference, 0, 0.2, 0.4); }));
}

TEST_P(PreferencesOnX11, TheCloseButtonClosesThemWithTheColourPanelAndTheTitleOpensThemAgain) {
  open_preferences();
  open_panel(*controller()._info_color_well);
  const xcb_window_t panel_id = id(panel());
  ask_to_close(preferences_window());
  EXPECT_TRUE(until([&] { return !user.viewable(id(preferences_window())) && !user.viewable(panel_id); }));
  EXPECT_FALSE(controller()._info_color_well->isActive());
  open_preferences();
  open_panel(*controller()._readout_color_well);
  ask_to_close(panel());
  EXPECT_TRUE(until([&] { return !user.viewable(panel_id); }));
  EXPECT_TRUE(user.viewable(id(preferences_window())));
}

TEST_P(PreferencesOnX11, TheEditorTakesThemWithIt) {
  open_preferences();
  open_panel(*controller()._info_color_well);
  const std::vector<xcb_window_t> opened = {id(preferences_window()), id(panel())};
  window->setContentView(make<NSView>(NSRect{}).get());
  editor = nullptr;
  for (const xcb_window_t each : opened)
    EXPECT_TRUE(until([&] { return !user.exists(each); }));
  EXPECT_TRUE(user.viewable(id(*window)));
}

TEST_P(PreferencesOnX11, TheEditorsWindowTakesThemWithIt) {
  open_preferences();
  open_panel(*controller()._info_color_well);
  const std::vector<xcb_window_t> opened = {id(preferences_window()), id(panel())};
  window = nullptr;
  for (const xcb_window_t each : opened)
    EXPECT_TRUE(until([&] { return !user.exists(each); }));
  EXPECT_FALSE(preferences_window().isVisible());
}

TEST_P(PreferencesOnX11, TwoEditorsHaveTwoWindows) {
  open_preferences();
  const Ref<KVOndexView> second = make_editor();
  Ref<NSWindow> second_window = show(second.get(), 140);
  ask_to_close(preferences_window());
  ASSERT_TRUE(until([&] { return !preferences_window().isVisible(); }));
  second->do_preferences_panel(nullptr);
  NSWindow& second_preferences = *second->_preferences_controller->window();
  ASSERT_TRUE(until([&] { return shows(second_preferences); }));
  editor->do_preferences_panel(nullptr);
  ASSERT_TRUE(until([&] { return shows(preferences_window()); }));
  EXPECT_THAT(user.property(id(second_preferences), "WM_TRANSIENT_FOR"), ElementsAre(id(*second_window)));
  EXPECT_THAT(user.property(id(preferences_window()), "WM_TRANSIENT_FOR"), ElementsAre(id(*window)));
  second_window = nullptr;
  EXPECT_TRUE(shows(preferences_window()));
}

/// The editor inside a host: its window lies two windows deep in the one that a window manager knows.
TEST_P(PreferencesOnX11, ServeTheHostsTopLevelWindowAndGoWithIt) {
  const xcb_window_t top = user.make_window(50, 50, 900, 500, false);
  const xcb_window_t inner = xcb_generate_id(user.connection());
  xcb_create_window(user.connection(), XCB_COPY_FROM_PARENT, inner, top, 10, 10, 880, 480, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  user.map(inner);
  user.map(top);
  ASSERT_TRUE(until([&] { return user.viewable(inner); }));
  const Ref<KVOndexView> view = make_editor();
  const auto embedded = make<NSWindow>(NSMakeRect(0, 0, 860, 352), NSBorderlessWindowMask);
  embedded->setWindowSystem(system.get());
  embedded->setHostWindow(inner);
  embedded->setContentView(view.get());
  embedded->orderFront(nullptr);
  ASSERT_TRUE(until([&] { return shows(*embedded); }));
  click_middle(*view->_main_title);
  ASSERT_TRUE(until(
      [&] { return view->_preferences_controller && shows(*view->_preferences_controller->window()); }));
  const NSWindow& opened = *view->_preferences_controller->window();
  EXPECT_THAT(user.property(id(opened), "WM_TRANSIENT_FOR"), ElementsAre(top));
  EXPECT_THAT(user.property(id(opened), "_NET_WM_STATE"), Contains(user.atom("_NET_WM_STATE_ABOVE")));
  user.destroy(top);
  EXPECT_TRUE(until([&] { return !opened.isVisible(); }));
  EXPECT_TRUE(until([&] { return !user.viewable(id(opened)); }));
}

TEST_P(PreferencesOnX11, AServerThatGoesHarmsNobody) {
  open_preferences();
  open_panel(*controller()._info_color_well);
  server.kill();
  EXPECT_TRUE(test_support::wait_until([&] {
    turn();
    return !system->connected();
  }));
  EXPECT_FALSE(preferences_window().isVisible());
  EXPECT_FALSE(panel().isVisible());
  editor->do_preferences_panel(nullptr);
  turn();
}

INSTANTIATE_TEST_SUITE_P(Screens, PreferencesOnX11,
                         testing::Values(Screen::with_manager, Screen::without_manager),
                         [](const testing::TestParamInfo<Screen>& screen) {
                           return screen.param == Screen::with_manager ? "WithManager" : "WithoutManager";
                         });

}  // namespace
}  // namespace ondex::test
