// SPDX-License-Identifier: MIT
#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "foundation/NSLog.h"
#include "x11_fixture.h"

namespace cocoa {
namespace {

using test_support::XClient;
using testing::Contains;
using testing::ElementsAre;

using X11Window = X11Test;
using X11Embedding = X11Test;

TEST(X11Display, IsMissedInTheLog) {
  std::vector<std::string> lines;
  const NSLogHook hook([&lines](std::string_view line) { lines.emplace_back(line); });
  EXPECT_EQ(make_x11_window_system(":9999"), nullptr);
  EXPECT_THAT(lines, ElementsAre("There is no X display \":9999\" to show windows on."));
}

TEST(X11Display, OfSixteenBitPixelsIsRefused) {
  const test_support::XServer server({"-screen", "0", "640x480x16"});
  std::vector<std::string> lines;
  const NSLogHook hook([&lines](std::string_view line) { lines.emplace_back(line); });
  EXPECT_EQ(make_x11_window_system(server.display().c_str()), nullptr);
  EXPECT_EQ(lines.size(), 1U);
}

TEST_F(X11Window, IsWhereItWasAskedToBe) {
  PlatformWindow& w = open();
  EXPECT_EQ(user.geometry(id(w)), (XClient::Geometry{100, 50, 200, 100}));
  EXPECT_EQ(w.frame(), NSMakeRect(100, 650, 200, 100));
  EXPECT_EQ(w.screenFrame(), w.frame());
  EXPECT_EQ(w.pixels().width, 200);
  EXPECT_EQ(w.pixels().height, 100);
}

TEST_F(X11Window, TellsManagersWhatItIs) {
  PlatformWindow& w = open();
  EXPECT_EQ(user.text_property(id(w), "WM_NAME"), "Tremolo");
  EXPECT_EQ(user.text_property(id(w), "_NET_WM_NAME"), "Tremolo");
  EXPECT_EQ(user.text_property(id(w), "WM_CLASS"), std::string("ondex\0Ondex\0", 12));
  EXPECT_THAT(user.property(id(w), "WM_PROTOCOLS"),
              ElementsAre(user.atom("WM_DELETE_WINDOW"), user.atom("_NET_WM_PING")));
  EXPECT_THAT(user.property(id(w), "_NET_WM_WINDOW_TYPE"),
              ElementsAre(user.atom("_NET_WM_WINDOW_TYPE_NORMAL")));
  EXPECT_THAT(user.property(id(w), "_NET_WM_PID"), ElementsAre(static_cast<uint32_t>(getpid())));
  EXPECT_FALSE(user.text_property(id(w), "WM_CLIENT_MACHINE").empty());
  w.setTitle("Trémolo");
  user.sync();
  EXPECT_TRUE(test_support::wait_until([&] { return user.text_property(id(w), "WM_NAME") == "Trémolo"; }));
}

TEST_F(X11Window, HasAFixedSize) {
  const auto hints = user.property(id(open()), "WM_NORMAL_HINTS");
  ASSERT_EQ(hints.size(), 18U);
  EXPECT_EQ(hints[0] & 0x10U, 0x10U);    // minimum
  EXPECT_EQ(hints[0] & 0x20U, 0x20U);    // maximum
  EXPECT_EQ(hints[0] & 0x100U, 0x100U);  // base
  EXPECT_THAT(std::vector(hints.begin() + 5, hints.begin() + 9), ElementsAre(200, 100, 200, 100));
  EXPECT_THAT(std::vector(hints.begin() + 15, hints.begin() + 17), ElementsAre(200, 100));
}

TEST_F(X11Window, AsksItsOwnerToCloseIt) {
  PlatformWindow& w = open();
  user.send_protocol(id(w), "WM_DELETE_WINDOW");
  EXPECT_TRUE(until([&] { return recorder.count("close") == 1; }));
  EXPECT_TRUE(user.exists(id(w)));
}

TEST_F(X11Window, MayBeClosedByItsOwnerAsSoonAsItAsks) {
  PlatformWindow& w = open();
  const xcb_window_t window_id = id(w);
  recorder.on_close = [this] { window.reset(); };
  user.send_protocol(window_id, "WM_DELETE_WINDOW");
  EXPECT_TRUE(until([&] { return recorder.count("close") == 1; }));
  EXPECT_TRUE(until([&] { return !user.exists(window_id); }));
  EXPECT_EQ(recorder.count("gone"), 0);
}

TEST_F(X11Window, AnswersWhetherItIsAlive) {
  PlatformWindow& w = open();
  user.select_input(user.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  user.send_protocol(id(w), "_NET_WM_PING");
  EXPECT_TRUE(until([&] {
    while (auto* event = user.poll_event()) {
      const auto* message = reinterpret_cast<xcb_client_message_event_t*>(event);
      const bool answers =
          (event->response_type & 0x7f) == XCB_CLIENT_MESSAGE && message->window == user.root() &&
          message->data.data32[0] == user.atom("_NET_WM_PING") && message->data.data32[2] == id(w);
      free(event);
      if (answers)
        return true;
    }
    return false;
  }));
}

TEST_F(X11Window, MovesAndResizesForItsOwnerWithoutTellingItAMove) {
  PlatformWindow& w = open();
  w.setFrame(NSMakeRect(10, 20, 300, 150));
  EXPECT_EQ(w.frame(), NSMakeRect(10, 20, 300, 150));
  EXPECT_EQ(w.pixels().width, 300);
  EXPECT_TRUE(recorder.told.empty());
  settle();
  EXPECT_THAT(recorder.told, ElementsAre("redraw"));
  EXPECT_EQ(user.geometry(id(w)), (XClient::Geometry{10, 630, 300, 150}));
}

TEST_F(X11Window, TellsWhatOthersDoToIt) {
  PlatformWindow& w = open();
  user.move(id(w), 30, 40);
  settle();
  EXPECT_THAT(recorder.told, ElementsAre("moved"));
  EXPECT_EQ(w.frame(), NSMakeRect(30, 660, 200, 100));
  recorder.clear();
  user.resize(id(w), 50, 60);
  settle();
  EXPECT_EQ(recorder.count("redraw"), 1);
  EXPECT_EQ(w.frame().size, NSMakeSize(50, 60));
  EXPECT_EQ(w.pixels().height, 60);
}

TEST_F(X11Window, HoldsToItsOwnersSizeAgainstOlderNews) {
  PlatformWindow& w = open();
  user.resize(id(w), 50, 60);
  w.setFrame(NSMakeRect(100, 650, 80, 70));
  settle();
  EXPECT_EQ(w.frame(), NSMakeRect(100, 650, 80, 70));
  EXPECT_EQ(w.pixels().width, 80);
}

TEST_F(X11Window, CountsInDevicePixelsAtItsScale) {
  user.set_property(user.root(), "RESOURCE_MANAGER", XCB_ATOM_STRING, "Xft.dpi:\t144\n");
  connect({});
  EXPECT_EQ(system->defaultScale(), 1.5);
  PlatformWindow& w = open(window, recorder, WindowKind::titled, NSMakeRect(20, 400, 101, 50));
  EXPECT_EQ(w.scale(), 1.5);
  EXPECT_EQ(w.pixels().width, 152);
  EXPECT_EQ(w.pixels().height, 75);
  EXPECT_EQ(user.geometry(id(w)), (XClient::Geometry{30, 125, 152, 75}));
  EXPECT_EQ(w.frame(), NSMakeRect(20, 400, 101, 50));
  connect({.scale = 2});
  EXPECT_EQ(system->defaultScale(), 2);
}

TEST_F(X11Window, KnowsWhenItIsHiddenOrCovered) {
  PlatformWindow& w = open();
  const xcb_window_t cover = user.make_window(0, 0, 600, 600);
  user.map(cover);
  user.raise(cover);
  EXPECT_TRUE(until([&] { return !w.viewable(); }));
  user.destroy(cover);
  EXPECT_TRUE(until([&] { return w.viewable(); }));
  w.hide();
  EXPECT_FALSE(w.viewable());
  w.show();
  EXPECT_TRUE(until([&] { return w.viewable(); }));
  user.unmap(id(w));
  EXPECT_TRUE(until([&] { return !w.viewable(); }));
}

TEST_F(X11Window, APopupShowsAtOnceAboveItsParent) {
  PlatformWindow& parent = open();
  other = system->makeWindow(
      {.kind = WindowKind::popup, .frame = NSMakeRect(120, 660, 50, 50), .parent = &parent}, other_recorder);
  other->show();
  EXPECT_TRUE(other->viewable());
  EXPECT_TRUE(until([&] { return user.viewable(id(*other)); }));
  EXPECT_EQ(user.parent_of(id(*other)), user.root());
  EXPECT_THAT(user.property(id(*other), "WM_TRANSIENT_FOR"), ElementsAre(id(parent)));
  const auto stack = user.children(user.root());
  EXPECT_LT(std::find(stack.begin(), stack.end(), id(parent)),
            std::find(stack.begin(), stack.end(), id(*other)));
}

TEST_F(X11Window, APanelIsADialogOfTheWindowItBelongsTo) {
  PlatformWindow& parent = open();
  PlatformWindow& panel = open(other, other_recorder, WindowKind::panel);
  EXPECT_THAT(user.property(id(panel), "WM_TRANSIENT_FOR"), ElementsAre(id(parent)));
  EXPECT_THAT(user.property(id(panel), "_NET_WM_WINDOW_TYPE"),
              ElementsAre(user.atom("_NET_WM_WINDOW_TYPE_DIALOG")));
  EXPECT_THAT(user.property(id(panel), "_NET_WM_STATE"), Contains(user.atom("_NET_WM_STATE_ABOVE")));
}

TEST_F(X11Window, RefusesAHostThatIsNotThere) {
  const NSLogHook hook([](std::string_view) {});
  EXPECT_EQ(system->makeWindow({.kind = WindowKind::embedded, .frame = {{}, {10, 10}}, .host_window = 0x123},
                               recorder),
            nullptr);
}

TEST_F(X11Window, LeavesNothingBehindInTheServer) {
  const auto keep = system->makeWindow({.frame = {{}, {5, 5}}}, recorder);
  std::map<std::string, uint32_t> before;
  ASSERT_TRUE(until([&] {
    before = user.resources_of_client(id(*keep));
    return before["WINDOW"] == 1;
  }));
  for (int i = 0; i < 200; ++i) {
    Recorder listener;
    const auto passing = system->makeWindow({.kind = i % 2 ? WindowKind::popup : WindowKind::titled,
                                             .frame = NSMakeRect(5, 5, 40, 30),
                                             .parent = keep.get()},
                                            listener);
    passing->show();
    fill(*passing, 0xff112233);
    present(*passing);
    system->dispatch();
  }
  settle();
  EXPECT_TRUE(until([&] { return user.resources_of_client(id(*keep)) == before; }))
      << testing::PrintToString(before) << " became "
      << testing::PrintToString(user.resources_of_client(id(*keep)));
}

TEST_F(X11Embedding, LiesInTheHostsWindow) {
  const xcb_window_t host = user.make_window(300, 200, 260, 180);
  user.map(host);
  window = system->makeWindow({.kind = WindowKind::embedded, .frame = {{}, {260, 180}}, .host_window = host},
                              recorder);
  ASSERT_TRUE(window);
  EXPECT_EQ(user.parent_of(id(*window)), host);
  EXPECT_THAT(user.property(id(*window), "_XEMBED_INFO"), ElementsAre(1, 1));
  EXPECT_EQ(user.property(id(*window), "WM_NORMAL_HINTS").size(), 18U);
  window->show();
  EXPECT_TRUE(until([&] { return window->viewable(); }));
  EXPECT_EQ(user.geometry(id(*window)), (XClient::Geometry{300, 200, 260, 180}));
  EXPECT_EQ(window->frame(), NSMakeRect(0, 0, 260, 180));
  user.move(host, 310, 220);
  EXPECT_EQ(window->screenFrame(), NSMakeRect(310, 400, 260, 180));
}

TEST_F(X11Embedding, StaysInTheUpperLeftCornerOfAHostThatGrowsLater) {
  const xcb_window_t host = user.make_window(0, 0, 1, 1);
  window = system->makeWindow({.kind = WindowKind::embedded, .frame = {{}, {260, 180}}, .host_window = host},
                              recorder);
  user.resize(host, 300, 200);
  settle();
  EXPECT_EQ(user.geometry(id(*window)), (XClient::Geometry{0, 0, 260, 180}));
  EXPECT_EQ(window->frame(), NSMakeRect(0, 20, 260, 180));
}

TEST_F(X11Embedding, LiesInTheUpperLeftCornerOfAHostThatShrinksLater) {
  const xcb_window_t host = user.make_window(0, 0, 640, 480);
  window = system->makeWindow({.kind = WindowKind::embedded, .frame = {{}, {260, 180}}, .host_window = host},
                              recorder);
  EXPECT_EQ(user.geometry(id(*window)), (XClient::Geometry{0, 0, 260, 180}));
  EXPECT_EQ(window->frame(), NSMakeRect(0, 300, 260, 180));
  user.resize(host, 260, 180);
  settle();
  EXPECT_EQ(user.geometry(id(*window)), (XClient::Geometry{0, 0, 260, 180}));
  EXPECT_EQ(window->frame(), NSMakeRect(0, 0, 260, 180));
}

TEST_F(X11Embedding, NoticesThatTheHostHidesItsWindows) {
  const xcb_window_t host = user.make_window(0, 0, 260, 180);
  user.map(host);
  window = system->makeWindow({.kind = WindowKind::embedded, .frame = {{}, {260, 180}}, .host_window = host},
                              recorder);
  window->show();
  EXPECT_TRUE(until([&] { return window->viewable(); }));
  user.unmap(host);
  EXPECT_TRUE(until([&] { return !window->viewable(); }));
  user.map(host);
  EXPECT_TRUE(until([&] { return window->viewable(); }));
}

TEST_F(X11Embedding, LeavesTheHostItsKeysUntilItIsKey) {
  const xcb_window_t host = user.make_window(0, 0, 260, 180);
  user.select_input(host, XCB_EVENT_MASK_KEY_PRESS);
  user.map(host);
  window = system->makeWindow({.kind = WindowKind::embedded, .frame = {{}, {260, 180}}, .host_window = host},
                              recorder);
  window->show();
  EXPECT_TRUE(until([&] { return window->viewable(); }));
  user.focus(host);
  user.point(100, 100);
  user.type_key(' ');
  EXPECT_TRUE(test_support::wait_until([&] {
    auto* event = user.poll_event();
    const bool pressed = event && (event->response_type & 0x7f) == XCB_KEY_PRESS;
    free(event);
    return pressed;
  }));
  settle();
  EXPECT_EQ(recorder.count("key down"), 0);
  window->makeKey();
  EXPECT_TRUE(until([&] { return window->isKey(); }));
  user.type_key(' ');
  EXPECT_TRUE(until([&] { return recorder.count("key down") == 1; }));
}

TEST_F(X11Embedding, OnlyTheRealTopLevelIsWorthBeingTransientFor) {
  const xcb_window_t top = user.make_window(0, 0, 300, 300);
  user.set_property(top, "WM_STATE", user.atom("WM_STATE"), std::vector<uint32_t>{1, 0});
  const xcb_window_t host = user.make_window(0, 0, 260, 180);
  xcb_reparent_window(user.connection(), host, top, 0, 0);
  user.sync();
  window = system->makeWindow({.kind = WindowKind::embedded, .frame = {{}, {260, 180}}, .host_window = host},
                              recorder);
  other = system->makeWindow({.kind = WindowKind::panel, .frame = {{}, {60, 60}}, .parent = window.get()},
                             other_recorder);
  EXPECT_THAT(user.property(id(*other), "WM_TRANSIENT_FOR"), ElementsAre(top));
}

}  // namespace
}  // namespace cocoa
