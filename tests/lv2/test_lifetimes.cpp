// SPDX-License-Identifier: MIT
// Editors that come and go, and hosts and servers that go before them.

#include <xkbcommon/xkbcommon-keysyms.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <utility>

#include "host_fixture.h"

namespace ondex::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// Several editors, each in a window of its own.
class Lifetimes : public HostTest {
 protected:
  std::unique_ptr<Host> openAnother(int index = 0) {
    auto another = std::make_unique<Host>(object.descriptor());
    const xcb_window_t window = makeParent(10 * index, 10 * index);
    parents.push_back(window);
    EXPECT_TRUE(another->open({.parent = window}));
    return another;
  }
  /// The place that the next client of the server gets: the lowest that is free.
  uint32_t nextClient() const {
    const test_support::XClient next(server.display());
    return xcb_get_setup(next.connection())->resource_id_base;
  }
  std::vector<xcb_window_t> parents;
};

size_t open_descriptors() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}

/// In KiB.
size_t resident_memory() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    size_t size = 0;
    if (word == "VmRSS:" && status >> size)
      return size;
  }
  return 0;
}

TEST_F(Lifetimes, TheParentMayBeDestroyedBeforeCleanup) {
  open();
  user.destroy(parent);
  host.close();
  EXPECT_THAT(host.log(), IsEmpty());
}

TEST_F(Lifetimes, AfterTheParentsEndIdleSaysThatItIsOverAndNothingElseHappens) {
  open();
  user.destroy(parent);
  ASSERT_TRUE(host.idleUntil([this] { return host.idle() != 0; }));
  host.set(depth_port, 0.3F);
  host.idleFor(0.1);
  EXPECT_NE(host.show(), 0);
  EXPECT_EQ(host.hide(), 0);
  EXPECT_NE(host.resize(430, 176), 0);
  host.close();
  EXPECT_THAT(host.told(), IsEmpty());
}

TEST_F(Lifetimes, TheParentMayNeverBeMapped) {
  parent = user.make_window(200, 100, editor_width, editor_height);
  ASSERT_TRUE(host.open({.parent = parent}));
  host.set(depth_port, 0.3F);
  host.idleFor(0.2);
  EXPECT_FALSE(user.viewable(host.window()));
  EXPECT_EQ(host.idle(), 0);
  host.close();
  // The server takes the window away when it learns that its connection has gone.
  EXPECT_TRUE(test_support::wait_until([this] { return user.children(parent).empty(); }));
  EXPECT_THAT(host.log(), IsEmpty());
}

TEST_F(Lifetimes, WhatChangedWhileTheHostWasHiddenShowsWhenItIsBack) {
  open();
  const auto before = picture(host.window());
  user.unmap(parent);
  host.idleFor(0.4);
  host.set(depth_port, 0.9F);
  host.idleFor(0.4);
  user.map(parent);
  host.idleFor(0.4);
  const auto after = picture(host.window());
  ASSERT_THAT(after, SizeIs(before.size()));
  EXPECT_FALSE(after == before);
  host.set(depth_port, 0.5F);
  host.idleFor(0.2);
  EXPECT_TRUE(picture(host.window()) == before);
  host.set(depth_port, 0.9F);
  host.idleFor(0.2);
  EXPECT_TRUE(picture(host.window()) == after) << "nothing was left out";
}

TEST_F(Lifetimes, TheServerMayBeKilled) {
  open();
  press(on_depth);
  point({on_depth.x, on_depth.y - 30});
  settle();
  ASSERT_FALSE(host.writes().empty());
  server.kill();
  ASSERT_TRUE(host.idleUntil([this] { return host.idle() != 0; }));
  EXPECT_EQ(host.told().back().kind, Told::end);
  host.set(depth_port, 0.1F);
  host.idle();
  EXPECT_NE(host.show(), 0);
  host.close();
  EXPECT_TRUE(host.logHas("connection"));
}

TEST_F(Lifetimes, WithoutADisplayThereIsNoEditor) {
  setenv("DISPLAY", ":4711", 1);
  EXPECT_FALSE(host.open({.parent = 1}));
  EXPECT_TRUE(host.logHas("There is no X display"));
}

TEST_F(Lifetimes, TenEditorsAreClosedInAnyOrder) {
  std::vector<std::unique_ptr<Host>> hosts;
  hosts.reserve(10);
  for (int i = 0; i < 10; ++i)
    hosts.push_back(openAnother(i));
  for (size_t i = 0; i < hosts.size(); ++i)
    hosts[i]->set(depth_port, static_cast<float>(i) / 10);
  for (const size_t closed : {3U, 0U, 9U, 4U, 1U, 8U, 2U, 7U}) {
    for (auto& each : hosts) {
      if (each)
        each->idle();
    }
    hosts[closed]->close();
    hosts[closed].reset();
    EXPECT_TRUE(test_support::wait_until([&] { return user.children(parents[closed]).empty(); }));
  }
  // The two that are left are as alive as ever, and do not hear of each other.
  for (const size_t left : {5U, 6U}) {
    user.raise(parents[left]);
    hosts[left]->set(depth_port, 0.5F);
    hosts[left]->idleFor(0.1);
    const auto place = user.geometry(hosts[left]->window());
    user.point(place.x + on_depth.x, place.y + on_depth.y);
    hosts[left]->idleFor(0.05);
    user.click(4);
    hosts[5]->idleFor(0.05);
    hosts[6]->idleFor(0.05);
    EXPECT_THAT(hosts[left]->writes(), SizeIs(1));
    EXPECT_THAT(hosts[left == 5 ? 6 : 5]->writes(), SizeIs(left == 5 ? 0 : 1));
  }
}

TEST_F(Lifetimes, OneHostsIdleDoesNothingForAnotherEditor) {
  open();
  const auto other = openAnother(1);
  user.destroy(parents[0]);
  user.sync();
  for (int i = 0; i < 20; ++i)
    EXPECT_EQ(host.idle(), 0);
  EXPECT_THAT(other->log(), IsEmpty());
  EXPECT_TRUE(other->idleUntil([&] { return other->idle() != 0; }));
  EXPECT_EQ(host.idle(), 0);
}

TEST_F(Lifetimes, OpeningAndClosingLeavesNothingBehind) {
  const auto cycle = [this](int number) {
    Host each(object.descriptor());
    const xcb_window_t window = makeParent();
    ASSERT_TRUE(each.open({.parent = window}));
    each.set(depth_port, 0.7F);
    each.idle();
    // A picture costs more than all the rest, so not all have one.
    if (number % 10 == 0)
      each.idleFor(0.02, 5);
    if (number % 2 == 0)
      user.destroy(window);
    each.close();
    if (number % 2 != 0)
      user.destroy(window);
  };
  for (int i = 0; i < 200; ++i)
    cycle(i);
  const size_t descriptors = open_descriptors();
  [[maybe_unused]] const size_t memory = resident_memory();
  const uint32_t client = nextClient();
  const size_t windows = user.children(user.root()).size();
  for (int i = 0; i < 1000; ++i)
    cycle(i);
  EXPECT_EQ(open_descriptors(), descriptors);
  // The server may still be busy with the last that have gone.
  EXPECT_TRUE(test_support::wait_until([&] { return nextClient() == client; }));
  EXPECT_TRUE(test_support::wait_until([&] { return user.children(user.root()).size() == windows; }));
#ifndef ONDEX_SANITIZED
  // The sanitizer keeps what was freed for a while.
  EXPECT_LT(resident_memory(), memory + 512) << "KiB";
#endif
}

TEST_F(Lifetimes, TheObjectMayBeUnloadedAndLoadedAgain) {
  for (int i = 0; i < 3; ++i) {
    const UiObject again;
    Host each(again.descriptor());
    const xcb_window_t window = makeParent();
    ASSERT_TRUE(each.open({.parent = window}));
    each.idleFor(0.03);
    each.close();
    user.destroy(window);
  }
}

/// A host that asks its user something in one of its functions, who closes the editor meanwhile.
class CleanupInside : public HostTest {
 protected:
  /// What the user did while the host did not look comes in one idle call.
  int dragAtOnce() {
    point(on_depth);
    user.press(1);
    for (int step = 1; step <= 4; ++step)
      point({on_depth.x, on_depth.y - 10 * step});
    user.release(1);
    user.sync();
    int answer = 0;
    while (host.isOpen())
      answer = host.idle();
    return answer;
  }
};

TEST_F(CleanupInside, AWrite) {
  open();
  size_t told_by_then = 0;
  host.on_write = [&](uint32_t, float) {
    host.close();
    user.destroy(parent);
    told_by_then = host.told().size();
  };
  EXPECT_NE(dragAtOnce(), 0) << "there is nothing to go on with";
  EXPECT_THAT(host.writes(), SizeIs(1));
  EXPECT_EQ(host.told().back(), (Told{Told::end, depth_port, 0})) << "cleanup ends the gesture";
  EXPECT_EQ(host.told().size(), told_by_then) << "nobody is called after cleanup";
  EXPECT_THAT(host.log(), IsEmpty());
}

TEST_F(CleanupInside, TheBeginningOfATouch) {
  open();
  host.on_touch = [this](uint32_t, bool) { host.close(); };
  EXPECT_NE(dragAtOnce(), 0);
  EXPECT_THAT(host.told(),
              testing::ElementsAre(Told{Told::begin, depth_port, 0}, Told{Told::end, depth_port, 0}));
}

TEST_F(CleanupInside, TheEndOfATouch) {
  open();
  host.on_touch = [this](uint32_t, bool grabbed) {
    if (!grabbed)
      host.close();
  };
  EXPECT_NE(dragAtOnce(), 0);
  EXPECT_FALSE(host.writes().empty());
  EXPECT_EQ(host.told().back().kind, Told::end);
}

TEST_F(CleanupInside, TheEndOfATouchThatHideEnds) {
  open();
  press(on_depth);
  point({on_depth.x, on_depth.y - 30});
  settle();
  ASSERT_FALSE(host.writes().empty());
  host.on_touch = [this](uint32_t, bool) { host.close(); };
  host.hide();
  EXPECT_FALSE(host.isOpen());
  EXPECT_EQ(host.told().back().kind, Told::end);
}

TEST_F(CleanupInside, TheWriteOfATypedNumber) {
  open();
  point(on_left_rate);
  user.double_click();
  settle();
  ASSERT_TRUE(host.idleUntil([this] { return user.focused() != parent && user.focused() != user.root(); }));
  host.on_write = [this](uint32_t, float) { host.close(); };
  user.type_key('7');
  user.type_key(XKB_KEY_Return);
  user.sync();
  EXPECT_TRUE(test_support::wait_until([this] {
    if (host.isOpen())
      host.idle();
    return !host.isOpen();
  }));
  EXPECT_THAT(host.writes(), testing::ElementsAre(Told{Told::write, left_rate_port, 7}));
  EXPECT_EQ(host.told().back(), (Told{Told::end, left_rate_port, 0}));
  EXPECT_TRUE(test_support::wait_until([this] { return user.children(parent).empty(); }));
}

TEST_F(CleanupInside, ItsOwnTouchCallsIsOneCleanup) {
  open();
  press(on_depth);
  point({on_depth.x, on_depth.y - 30});
  settle();
  const LV2UI_Handle handle = host.handle();
  host.on_touch = [this, handle](uint32_t, bool) { object.descriptor()->cleanup(handle); };
  host.close();
  EXPECT_EQ(host.told().back().kind, Told::end);
}

TEST_F(Lifetimes, AnEditorMayBeOpenedAndClosedAndAnotherClosedFromInsideAWrite) {
  open();
  auto other = openAnother(1);
  host.on_write = [&](uint32_t, float) {
    other->close();
    const auto third = openAnother(2);
    third->idle();
  };
  drag(on_depth, 0, -40);
  EXPECT_NEAR(host.value(depth_port), 0.7F, 1e-5F);
  EXPECT_THAT(host.log(), IsEmpty());
}

TEST_F(Lifetimes, EveryOtherCallMayComeFromInsideAWrite) {
  open();
  host.on_write = [this](uint32_t, float) {
    EXPECT_EQ(host.hide(), 0);
    EXPECT_EQ(host.show(), 0);
    EXPECT_EQ(host.resize(860, 352), 0);
    EXPECT_EQ(host.idle(), 0);
  };
  point(on_depth);
  settle();
  user.click(4);
  settle();
  EXPECT_THAT(host.writes(), SizeIs(1));
  EXPECT_TRUE(host.idleUntil([this] { return user.viewable(host.window()); }));
}

TEST_F(Lifetimes, AWriteLiesInAGestureAlsoWhenTheHostHidesTheEditorAsThatBegins) {
  open();
  bool hides = true;
  host.on_touch = [&](uint32_t, bool) {
    if (std::exchange(hides, false)) {
      EXPECT_EQ(host.hide(), 0);
    }
  };
  point(on_depth);
  settle();
  user.click(4);
  settle();
  ASSERT_THAT(host.writes(), SizeIs(1));
  const Told begin = {Told::begin, depth_port, 0};
  const Told end = {Told::end, depth_port, 0};
  EXPECT_THAT(host.told(), testing::ElementsAre(begin, end, begin, host.writes().front(), end));
}

TEST_F(Lifetimes, NothingIsWrittenWhenTheHostHidesTheEditorAsOftenAsAGestureBegins) {
  open();
  host.on_touch = [this](uint32_t, bool grabbed) {
    if (grabbed) {
      EXPECT_EQ(host.hide(), 0);
    }
  };
  point(on_depth);
  settle();
  user.click(4);
  settle();
  EXPECT_THAT(host.writes(), IsEmpty());
  EXPECT_THAT(host.told(), SizeIs(4));
}

TEST_F(Lifetimes, IdleCallsAndValuesMayComeFromInsideAWrite) {
  open();
  host.on_write = [this](uint32_t port, float value) {
    host.set(port, value);
    host.idle();
  };
  drag(on_depth, 0, -40);
  EXPECT_NEAR(host.value(depth_port), 0.7F, 1e-5F);
  EXPECT_THAT(host.log(), IsEmpty());
}

}  // namespace
}  // namespace ondex::test
