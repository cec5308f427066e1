// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "foundation/NSLog.h"
#include "listening.h"

namespace cocoa::test {
namespace {

using Lifetime = Listening;

TEST_F(Lifetime, EndsWithAllThatWasSent) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  set(2, 0.7F);
  turnAt(0);
  set(2, 0.8F);
  listener.dispose();
  EXPECT_EQ(loop.nextTimerFireDate(), std::numeric_limits<double>::infinity());
  set(2, 0.9F);
  turnAt(51);
  EXPECT_EQ(listener.take(), Reports{});
}

TEST_F(Lifetime, MayEndInItsOwnCallback) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  listener.add(1, value_change(unit, 2));
  listener.add(0, value_change(unit, 3));
  listener.then = [&](const Report&) { listener.dispose(); };
  set(2, 0.8F);
  set(3, 0.9F);
  turnAt(51);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}}));
  set(2, 0.1F);
  turnAt(200);
  EXPECT_EQ(listener.take(), Reports{});
}

TEST_F(Lifetime, WithoutAnIntervalMayEndInItsOwnCallback) {
  Listener listener(0, 0);
  listener.add(0, value_change(unit, 2));
  listener.add(1, value_change(unit, 2));
  listener.then = [&](const Report& report) {
    if (report.value > 0.5F)
      return listener.dispose();
    set(2, 0.8F);
  };
  set(2, 0.1F);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.1F}, {0, 0, 2, 0.8F}}));
}

TEST_F(Lifetime, MayBeReplacedInItsOwnCallback) {
  auto listener = std::make_unique<Listener>();
  std::unique_ptr<Listener> successor;
  listener->add(0, value_change(unit, 2));
  listener->then = [&](const Report&) {
    listener->dispose();
    successor = std::make_unique<Listener>();
    successor->add(0, value_change(unit, 2));
    set(2, 0.9F);
  };
  set(2, 0.8F);
  turnAt(51);
  EXPECT_EQ(listener->take(), (Reports{{0, 0, 2, 0.8F}}));
  turnAt(60);
  turnAt(102);
  EXPECT_EQ(successor->take(), (Reports{{0, 0, 2, 0.9F}}));
  EXPECT_EQ(listener->take(), Reports{});
}

TEST_F(Lifetime, OfAnotherMayEndInACallback) {
  Listener first;
  Listener second;
  first.add(0, value_change(unit, 2));
  second.add(0, value_change(unit, 2));
  first.then = [&](const Report&) { second.dispose(); };
  set(2, 0.8F);
  turnAt(51);
  EXPECT_EQ(first.take(), (Reports{{0, 0, 2, 0.8F}}));
  EXPECT_EQ(second.take(), Reports{});
}

TEST_F(Lifetime, OfARegistrationStartsWithWhatIsSentNext) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  listener.add(0, value_change(unit, 3));
  set(2, 0.7F);
  set(3, 0.8F);
  listener.add(1, value_change(unit, 3));
  turnAt(51);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.7F}, {0, 0, 3, 0.8F}}));
  at(60);
  set(3, 0.9F);
  turnAt(111);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 3, 0.9F}, {1, 0, 3, 0.9F}}));
}

TEST_F(Lifetime, OfARegistrationMayStartInACallback) {
  for (const Float32 interval : {0.05F, 0.0F}) {
    Listener listener(interval, 0);
    for (int object = 0; object < 3; ++object)
      listener.add(object, value_change(unit, 2));
    listener.then = [&](const Report& report) {
      if (report.object == 0)
        listener.add(3, value_change(unit, 2));
    };
    set(2, 0.8F);
    turnAt(51);
    EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}, {1, 0, 2, 0.8F}, {2, 0, 2, 0.8F}}));
    set(2, 0.9F);
    turnAt(200);
    EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.9F}, {1, 0, 2, 0.9F}, {2, 0, 2, 0.9F}, {3, 0, 2, 0.9F}}));
    at(0);
  }
}

TEST_F(Lifetime, OfAUnitEndsWithItsQueuedEvents) {
  auto other = std::make_unique<EffectInstance>(seven_parameters());
  Listener listener;
  listener.add(0, value_change(other->audio_unit(), 2));
  listener.add(0, gesture_begin(other->audio_unit(), 2));
  listener.add(0, value_change(unit, 3));
  other->setFromHost(2, 0.8F);
  notify(value_change(other->audio_unit(), 2));
  notify(gesture_begin(other->audio_unit(), 2));
  set(3, 0.9F);
  turnAt(0);
  other.reset();
  turnAt(51);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 3, 0.9F}}));
}

TEST_F(Lifetime, OfAUnitMayEndInACallback) {
  auto other = std::make_unique<EffectInstance>(seven_parameters());
  Listener listener;
  listener.add(0, value_change(other->audio_unit(), 2));
  listener.add(1, value_change(other->audio_unit(), 2));
  listener.then = [&](const Report&) { other.reset(); };
  other->setFromHost(2, 0.8F);
  turnAt(51);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}}));
}

TEST_F(Lifetime, OfTheLoopsThreadMayEndFirst) {
  std::unique_ptr<Listener> listener;
  std::thread([&] {
    listener = std::make_unique<Listener>();
    listener->add(0, value_change(unit, 2));
    set(2, 0.7F);
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
  }).join();
  set(2, 0.8F);
  EXPECT_EQ(listener->take(), Reports{});
  listener.reset();
  set(2, 0.9F);
}

TEST_F(Lifetime, SurvivesACallbackThatTurnsTheLoop) {
  std::vector<std::string> log;
  const NSLogHook hook([&](std::string_view line) { log.emplace_back(line); });
  Listener listener;
  listener.add(0, value_change(unit, 2));
  listener.add(0, value_change(unit, 3));
  listener.then = [this](const Report&) { turnAt(200); };
  set(2, 0.8F);
  set(3, 0.9F);
  turnAt(51);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}, {0, 0, 3, 0.9F}}));
  EXPECT_EQ(log.size(), 2U);
}

}  // namespace
}  // namespace cocoa::test
