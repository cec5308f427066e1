// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <poll.h>

#include <limits>
#include <thread>
#include <vector>

#include "audio_unit/private/pending_events.h"
#include "listening.h"

namespace cocoa::test {
namespace {

using Rounds = Listening;
using Merging = Listening;

TEST_F(Rounds, ComeAnIntervalAfterTheFirstEvent) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  set(2, 0.8F);
  turnAt(0);
  EXPECT_EQ(loop.nextTimerFireDate(), 100.05);
  turnAt(49.9);
  EXPECT_EQ(listener.take(), Reports{});
  turnAt(50);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}}));
  turnAt(1000);
  EXPECT_EQ(listener.take(), Reports{});
  EXPECT_EQ(loop.nextTimerFireDate(), std::numeric_limits<double>::infinity());
}

TEST_F(Rounds, CountFromTheEventNotFromTheTurnThatFindsIt) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  set(2, 0.7F);
  at(40);
  set(2, 0.8F);
  turnAt(45);
  EXPECT_EQ(listener.take(), Reports{});
  turnAt(50);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}})) << "the first event counts, though it is replaced";
}

TEST_F(Rounds, ComeInOneTurnWhenTheHostTurnsLate) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  set(2, 0.8F);
  turnAt(500);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}}));
}

TEST_F(Rounds, LieAnIntervalApartAtLeast) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  set(2, 0.1F);
  turnAt(51);
  EXPECT_EQ(listener.take().size(), 1U);
  at(60);
  set(2, 0.2F);
  turnAt(60);
  turnAt(109);
  EXPECT_EQ(listener.take(), Reports{});
  turnAt(111);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.2F}}));
}

TEST_F(Rounds, LeaveWhatACallbackSendsToTheNext) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  listener.add(0, value_change(unit, 3));
  listener.then = [this](const Report& report) {
    if (report.id == 2)
      set(3, 0.9F);
  };
  set(2, 0.8F);
  turnAt(51);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}}));
  turnAt(52);
  EXPECT_EQ(listener.take(), Reports{});
  turnAt(102);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 3, 0.9F}}));
}

TEST_F(Rounds, WakeTheLoopFromOtherThreads) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  turnAt(0);
  std::thread([this] { set(2, 0.8F); }).join();
  pollfd entry{.fd = loop.wakeDescriptor(), .events = POLLIN, .revents = 0};
  EXPECT_EQ(poll(&entry, 1, 0), 1);
  turnAt(0);
  turnAt(50);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}}));
}

TEST_F(Rounds, TellWhenAnEventOccurred) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  clock.set(100.03125);
  set(2, 0.8F);
  turnAt(500);
  EXPECT_EQ(listener.host_times, std::vector<UInt64>{100'031'250'000});
}

TEST_F(Rounds, AreAListenersOwn) {
  Listener quick(0.02F, 0.02F);
  Listener slow(0.1F, 0.1F);
  quick.add(0, value_change(unit, 2));
  slow.add(0, value_change(unit, 2));
  for (int i = 0; i < 5; ++i) {
    at(25 * i);
    set(2, static_cast<Float32>(i));
    turnAt(25 * i);
    turnAt(25 * i + 21);
  }
  EXPECT_EQ(quick.take(), (Reports{{0, 0, 2, 0}, {0, 0, 2, 1}, {0, 0, 2, 2}, {0, 0, 2, 3}, {0, 0, 2, 4}}));
  EXPECT_EQ(slow.take(), (Reports{{0, 0, 2, 4}})) << "the turn at 100 ms finds the change of that time too";
}

/// Both parameters are written every 30 ms, the first from 0 ms and the second from 15 ms on, with the time
/// in ms. The first round comes at 100 ms and finds 0 to 90 and 15 to 75. The next event is at 105 ms: the
/// second round comes at 205 ms, with 120 to 180 and 105 to 195. The third starts at 210 ms and comes at 310
/// ms.
TEST_F(Merging, LeavesADisplayOneReportPerParameterAndRound) {
  Listener listener(0.1F, 0.1F);
  listener.add(0, value_change(unit, 0));
  listener.add(0, value_change(unit, 1));
  for (int t = 0; t <= 310; t += 5) {
    at(t);
    if (t % 30 == 0)
      set(0, static_cast<Float32>(t));
    if (t % 30 == 15)
      set(1, static_cast<Float32>(t));
    turnAt(t + 0.1);
  }
  EXPECT_EQ(
      listener.take(),
      (Reports{
          {0, 0, 1, 75}, {0, 0, 0, 90}, {0, 0, 0, 180}, {0, 0, 1, 195}, {0, 0, 1, 285}, {0, 0, 0, 300}}));
}

/// Only less than 10 ms after the one before does a change replace it.
TEST_F(Merging, LeavesARecorderTheLastOfEachGroup) {
  Listener listener(0.2F, 0.01F);
  listener.add(0, value_change(unit, 0));
  for (const int t : {0, 4, 8, /**/ 20, 25, /**/ 50, /**/ 61, 70, /**/ 81, /**/ 199}) {
    at(t);
    set(0, static_cast<Float32>(t));
    turnAt(t + 0.1);
  }
  EXPECT_EQ(listener.take(), Reports{});
  turnAt(200.1);
  EXPECT_EQ(
      listener.take(),
      (Reports{{0, 0, 0, 8}, {0, 0, 0, 25}, {0, 0, 0, 50}, {0, 0, 0, 70}, {0, 0, 0, 81}, {0, 0, 0, 199}}));
}

TEST_F(Merging, DoesNotHappenAtTheGranularityItself) {
  Listener listener(1.0F, 0.0625F);
  listener.add(0, value_change(unit, 0));
  constexpr double just_less = 0.0625 - 1.0 / 65536;
  double time = 100;
  for (const double gap : {0.0, 0.0625, just_less, 0.0625}) {
    clock.set(time += gap);
    set(0, static_cast<Float32>(time));
  }
  turnAt(1001);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 0, 100},
                                      {0, 0, 0, static_cast<Float32>(100.0625 + just_less)},
                                      {0, 0, 0, static_cast<Float32>(100.125 + just_less)}}));
}

TEST_F(Merging, NeverHappensWithoutAGranularity) {
  Listener listener(0.05F, 0);
  listener.add(0, value_change(unit, 0));
  for (int i = 0; i < 3; ++i)
    set(0, static_cast<Float32>(i));
  turnAt(51);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 0, 0}, {0, 0, 0, 1}, {0, 0, 0, 2}}));
}

TEST_F(Merging, MovesAParameterToItsLaterPlace) {
  Listener listener;
  listener.add(0, value_change(unit, 0));
  listener.add(0, value_change(unit, 1));
  set(0, 0.1F);
  at(10);
  set(1, 0.2F);
  at(20);
  set(0, 0.3F);
  turnAt(51);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 1, 0.2F}, {0, 0, 0, 0.3F}}));
}

class Barriers : public Listening {
 protected:
  Barriers() {
    for (const AudioUnitEvent& event : {value_change(unit, 2), gesture_begin(unit, 2), gesture_end(unit, 2),
                                        gesture_begin(unit, 3), property_change(unit, 31)}) {
      listener.add(0, event);
    }
  }
  Listener listener;
};

TEST_F(Barriers, AreGesturesOfTheParameter) {
  notify(gesture_begin(unit, 2));
  set(2, 0.1F);
  at(10);
  set(2, 0.2F);
  notify(gesture_end(unit, 2));
  at(20);
  notify(gesture_begin(unit, 2));
  set(2, 0.3F);
  notify(gesture_end(unit, 2));
  turnAt(51);
  EXPECT_EQ(
      listener.take(),
      (Reports{{0, 1, 2, 0}, {0, 0, 2, 0.2F}, {0, 2, 2, 0}, {0, 1, 2, 0}, {0, 0, 2, 0.3F}, {0, 2, 2, 0}}));
}

TEST_F(Barriers, AreNotGesturesOfOthers) {
  set(2, 0.1F);
  notify(gesture_begin(unit, 3));
  set(2, 0.2F);
  turnAt(51);
  EXPECT_EQ(listener.take(), (Reports{{0, 1, 3, 0}, {0, 0, 2, 0.2F}}));
}

TEST_F(Barriers, ArePropertyChangesOfTheUnit) {
  set(2, 0.1F);
  notify(property_change(unit, 31));
  set(2, 0.2F);
  turnAt(51);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.1F}, {0, 3, 31, 0}, {0, 0, 2, 0.2F}}));
}

TEST_F(Barriers, AreNeverMergedThemselves) {
  notify(gesture_begin(unit, 2));
  notify(gesture_begin(unit, 2));
  turnAt(51);
  EXPECT_EQ(listener.take(), (Reports{{0, 1, 2, 0}, {0, 1, 2, 0}}));
}

/// The object hears at most what came before its own change in earlier rounds, never afterwards.
TEST_F(Merging, OfLateTurnsTellsNobodyWhatItHasOverwritten) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  listener.add(1, value_change(unit, 2));
  set(2, 0.3F);
  at(200);
  const AudioUnitParameter parameter = parameter_of(unit, 2);
  EXPECT_EQ(AUParameterSet(listener.ref, &objects[0], &parameter, 0.8F, 0), noErr);
  turnAt(400);
  EXPECT_EQ(listener.take(), (Reports{{1, 0, 2, 0.3F}, {1, 0, 2, 0.8F}}));
}

/// A host that automates without ever turning the loop.
TEST_F(Merging, KeepsWhatWaitsFromGrowingForEver) {
  Listener listener(0.05F, 0.001F);
  listener.add(0, value_change(unit, 2));
  listener.add(0, value_change(unit, 3));
  set(3, 0.25F);
  for (int i = 1; i <= 5000; ++i) {
    at(i * 10);
    set(2, static_cast<Float32>(i));
  }
  turnAt(60000);
  const Reports told = listener.take();
  EXPECT_EQ(told.size(), PendingEvents::crowd);
  EXPECT_EQ(told.front(), (Report{0, 0, 3, 0.25F}));
  EXPECT_EQ(told[1], (Report{0, 0, 2, 1.0F}));
  EXPECT_EQ(told.back(), (Report{0, 0, 2, 5000.0F}));
}

}  // namespace
}  // namespace cocoa::test
