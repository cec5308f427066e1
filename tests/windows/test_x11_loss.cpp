// SPDX-License-Identifier: MIT
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "foundation/NSLog.h"
#include "x11_fixture.h"

namespace cocoa {
namespace {

using testing::ElementsAre;

using X11Loss = X11Test;

TEST_F(X11Loss, AWindowDestroyedByAnotherClientIsGone) {
  PlatformWindow& w = open();
  const xcb_window_t window_id = id(w);
  user.destroy(window_id);
  EXPECT_TRUE(until([&] { return recorder.count("gone") == 1; }));
  EXPECT_FALSE(w.viewable());
  EXPECT_FALSE(w.pixels());
  // What a closing owner still does must harm nobody.
  std::vector<std::string> lines;
  const NSLogHook hook([&lines](std::string_view line) { lines.emplace_back(line); });
  w.setTitle("late");
  w.setFrame(NSMakeRect(0, 0, 10, 10));
  w.makeKey();
  w.hide();
  w.show();
  present(w);
  settle();
  window.reset();
  settle();
  EXPECT_TRUE(lines.empty());
  EXPECT_EQ(recorder.count("gone"), 1);
}

TEST_F(X11Loss, RequestsOnTheWayToADestroyedWindowHarmNobody) {
  PlatformWindow& w = open();
  std::vector<std::string> lines;
  const NSLogHook hook([&lines](std::string_view line) { lines.emplace_back(line); });
  fill(w, 0xff000000);
  user.destroy(id(w));
  present(w);
  w.setTitle("late");
  w.makeKey();
  settle();
  EXPECT_EQ(recorder.count("gone"), 1);
  EXPECT_TRUE(lines.empty());
  EXPECT_TRUE(system->connected());
  window.reset();
  fill(open(), 0xff00ff00);
  present(*window);
  EXPECT_TRUE(until([&] { return user.pixel(id(*window), 5, 5) == 0x00ff00U; }));
}

TEST_F(X11Loss, AHostMayDestroyItsWindowFirst) {
  const xcb_window_t host = user.make_window(0, 0, 260, 180);
  user.map(host);
  window = system->makeWindow({.kind = WindowKind::embedded, .frame = {{}, {260, 180}}, .host_window = host},
                              recorder);
  window->show();
  ASSERT_TRUE(until([&] { return window->viewable(); }));
  user.press(1);
  user.destroy(host);
  EXPECT_TRUE(until([&] { return recorder.count("gone") == 1; }));
  window.reset();
  settle();
}

TEST_F(X11Loss, AWindowMayBeDestroyedWhenItSaysThatItIsGone) {
  class SelfDestroyer : public Recorder {
   public:
    explicit SelfDestroyer(std::unique_ptr<PlatformWindow>& its_window) : window_(its_window) {}
    void windowGone() override {
      Recorder::windowGone();
      window_.reset();
    }

   private:
    std::unique_ptr<PlatformWindow>& window_;
  } listener(other);
  other = system->makeWindow({.frame = {{}, {20, 20}}}, listener);
  other->show();
  user.destroy(id(*other));
  EXPECT_TRUE(until([&] { return listener.count("gone") == 1; }));
  EXPECT_FALSE(other);
}

TEST_F(X11Loss, EveryWindowGoesWithTheServer) {
  open();
  open(other, other_recorder, WindowKind::popup);
  fill(*window, 0xff000000);
  std::vector<std::string> lines;
  const NSLogHook hook([&lines](std::string_view line) { lines.emplace_back(line); });
  server.kill();
  EXPECT_TRUE(until([&] { return !system->connected(); }));
  EXPECT_EQ(recorder.count("gone"), 1);
  EXPECT_EQ(other_recorder.count("gone"), 1);
  EXPECT_THAT(lines, ElementsAre("The connection to the X display is lost; its windows are gone."));
  present(*window);
  window->setFrame(NSMakeRect(1, 2, 3, 4));
  other->hide();
  EXPECT_FALSE(system->dispatch());
  EXPECT_EQ(system->makeWindow({.frame = {{}, {20, 20}}}, recorder), nullptr);
  other.reset();
  window.reset();
  system.reset();
}

TEST_F(X11Loss, EditorsHaveConnectionsOfTheirOwn) {
  open();
  auto second = make_x11_window_system(server.display().c_str());
  ASSERT_TRUE(second);
  Recorder listener;
  auto its_window = second->makeWindow({.frame = {{}, {20, 20}}}, listener);
  its_window->show();
  window.reset();
  system.reset();
  user.send_protocol(static_cast<xcb_window_t>(its_window->nativeHandle()), "WM_DELETE_WINDOW");
  EXPECT_TRUE(test_support::wait_until(
      [&] {
        second->dispatch();
        return listener.count("close") == 1;
      },
      {second->descriptor()}));
}

TEST_F(X11Loss, OpensAndClosesOverAndOver) {
  const auto open_descriptors = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const auto before = open_descriptors();
  for (int i = 0; i < 200; ++i) {
    connect({});
    open();
    fill(*window, 0xff000000);
    present(*window);
  }
  EXPECT_EQ(open_descriptors(), before);
}

}  // namespace
}  // namespace cocoa
