// SPDX-License-Identifier: MIT
#include "audio_unit/AUEventListener.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "foundation/NSLog.h"
#include "listening.h"

namespace cocoa::test {
namespace {

/// Who is told of what, seen in one round at 50 ms.
class EventListener : public Listening {
 protected:
  void setBy(AUEventListenerRef listener, void* object, AudioUnitParameterID id, Float32 value) {
    const AudioUnitParameter parameter = parameter_of(unit, id);
    EXPECT_EQ(AUParameterSet(listener, object, &parameter, value, 0), noErr);
  }
  void notifyBy(AUEventListenerRef listener, void* object, const AudioUnitEvent& event) {
    EXPECT_EQ(AUEventListenerNotify(listener, object, &event), noErr);
  }
  void finishRound() {
    turnAt(now_);
    turnAt(now_ + 51);
    now_ += 100;
    at(now_);
  }

 private:
  double now_ = 0;
};

TEST_F(EventListener, IsToldOncePerRegisteredObject) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  listener.add(1, value_change(unit, 2));
  listener.add(1, value_change(unit, 2));
  listener.add(2, value_change(unit, 3));
  set(2, 0.8F);
  finishRound();
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}, {1, 0, 2, 0.8F}}));
}

TEST_F(EventListener, IsNotToldOfWhatNobodyRegisteredFor) {
  const EffectInstance other(seven_parameters());
  Listener listener;
  listener.add(0, value_change(unit, 2));
  set(3, 0.8F);
  notify(gesture_begin(unit, 2));
  notify(property_change(unit, 2));
  notify(value_change(other.audio_unit(), 2));
  AudioUnitEvent elsewhere = value_change(unit, 2);
  elsewhere.mArgument.mParameter.mElement = 1;
  notify(elsewhere);
  finishRound();
  EXPECT_EQ(listener.take(), Reports{});
}

TEST_F(EventListener, IsToldOfGesturesAndPropertiesWhenItAsks) {
  Listener listener;
  listener.add(0, gesture_begin(unit, 2));
  listener.add(0, gesture_end(unit, 2));
  listener.add(0, property_change(unit, 31));
  notify(gesture_begin(unit, 2));
  notify(property_change(unit, 31));
  notify(property_change(unit, 32));
  notify(gesture_end(unit, 2));
  finishRound();
  EXPECT_EQ(listener.take(), (Reports{{0, 1, 2, 0}, {0, 3, 31, 0}, {0, 2, 2, 0}}));
}

TEST_F(EventListener, HearsOfWhatTheHostSets) {
  Listener listener;
  listener.add(0, value_change(unit, 2));
  EXPECT_TRUE(effect.setFromHost(2, 0.8F));
  finishRound();
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}}));
}

TEST_F(EventListener, KeepsTheValueThatWasSetAndReadsTheOneThatWasOnlyAnnounced) {
  Listener listener(0.05F, 0);
  listener.add(0, value_change(unit, 2));
  listener.add(0, value_change(unit, 3));
  set(2, 0.8F);
  notify(value_change(unit, 3));
  turnAt(0);
  set(2, 0.1F);
  set(3, 0.2F);
  turnAt(50);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}, {0, 0, 3, 0.2F}, {0, 0, 2, 0.1F}, {0, 0, 3, 0.2F}}));
}

/// Two listeners of two objects each. Whom does a change reach that the first listener's object 0 sends?
class Exclusion : public EventListener {
 protected:
  Exclusion() {
    for (Listener* listener : {&first, &second}) {
      listener->add(0, value_change(unit, 2));
      listener->add(1, value_change(unit, 2));
    }
  }
  const Reports both{{0, 0, 2, 0.8F}, {1, 0, 2, 0.8F}};
  Listener first;
  Listener second;
};

TEST_F(Exclusion, WithoutASendingListenerIsNobody) {
  setBy(nullptr, &objects[0], 2, 0.8F);
  finishRound();
  EXPECT_EQ(first.take(), both);
  EXPECT_EQ(second.take(), both);
}

TEST_F(Exclusion, OfAnObjectIsThatPairOnly) {
  setBy(first.ref, &objects[0], 2, 0.8F);
  finishRound();
  EXPECT_EQ(first.take(), (Reports{{1, 0, 2, 0.8F}}));
  EXPECT_EQ(second.take(), both);
}

TEST_F(Exclusion, OfAListenerAloneIsAllItsObjects) {
  setBy(first.ref, nullptr, 2, 0.8F);
  finishRound();
  EXPECT_EQ(first.take(), Reports{});
  EXPECT_EQ(second.take(), both);
}

TEST_F(Exclusion, OfAnObjectThatIsNotRegisteredIsNobody) {
  setBy(first.ref, &objects[3], 2, 0.8F);
  finishRound();
  EXPECT_EQ(first.take(), both) << "a sender that registered another object gets its own echo";
}

TEST_F(Exclusion, HoldsForAnnouncementsToo) {
  effect.setFromHost(2, 0.8F);
  finishRound();
  first.take();
  notifyBy(first.ref, &objects[1], value_change(unit, 2));
  finishRound();
  EXPECT_EQ(first.take(), (Reports{{0, 0, 2, 0.8F}}));
}

TEST_F(Exclusion, KeepsAnObjectFromHearingWhatItHasOverwrittenItself) {
  at(0);
  setBy(second.ref, &objects[0], 2, 0.3F);
  at(10);
  setBy(first.ref, &objects[0], 2, 0.8F);
  turnAt(50);
  EXPECT_EQ(first.take(), (Reports{{1, 0, 2, 0.8F}}));
  EXPECT_EQ(second.take(), both);
}

TEST_F(EventListener, IsToldOfAllRegisteredParametersByAny) {
  const EffectInstance other(seven_parameters());
  Listener listener;
  listener.add(0, value_change(unit, 6));
  listener.add(0, value_change(unit, 1));
  listener.add(1, value_change(unit, 1));
  listener.add(0, value_change(other.audio_unit(), 1));
  listener.add(0, gesture_begin(unit, 3));
  AudioUnitEvent any = value_change(unit, kAUParameterListener_AnyParameter);
  any.mArgument.mParameter.mScope = 17;
  notify(any);
  finishRound();
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 6, 0.75F}, {0, 0, 1, 0.125F}, {1, 0, 1, 0.125F}}));
  notifyBy(listener.ref, &objects[0], any);
  finishRound();
  EXPECT_EQ(listener.take(), (Reports{{1, 0, 1, 0.125F}}));
}

TEST_F(EventListener, CannotRegisterForAny) {
  Listener listener;
  const AudioUnitEvent any = value_change(unit, kAUParameterListener_AnyParameter);
  EXPECT_EQ(AUEventListenerAddEventType(listener.ref, &objects[0], &any), kAudioUnitErr_InvalidParameter);
  EXPECT_EQ(AUEventListenerNotify(nullptr, nullptr, &any), noErr);
  finishRound();
  EXPECT_EQ(listener.take(), Reports{});
}

TEST_F(EventListener, WithoutAnIntervalIsToldAtOnceOnTheSendersThread) {
  Listener listener(0, 0.05F);
  listener.add(0, value_change(unit, 2));
  listener.add(1, value_change(unit, 2));
  listener.add(0, gesture_begin(unit, 2));
  std::thread::id told_on;
  listener.then = [&](const Report&) { told_on = std::this_thread::get_id(); };
  set(2, 0.1F);
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.1F}, {1, 0, 2, 0.1F}}));
  set(2, 0.2F);
  setBy(listener.ref, &objects[0], 2, 0.3F);
  notify(value_change(unit, kAUParameterListener_AnyParameter));
  notify(gesture_begin(unit, 2));
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.2F},
                                      {1, 0, 2, 0.2F},
                                      {1, 0, 2, 0.3F},
                                      {0, 0, 2, 0.3F},
                                      {1, 0, 2, 0.3F},
                                      {0, 1, 2, 0}}));
  std::thread other([this] { set(2, 0.4F); });
  const std::thread::id expected = other.get_id();
  other.join();
  EXPECT_EQ(told_on, expected);
}

TEST_F(EventListener, RefusesArgumentsWithoutSense) {
  const std::vector<std::string> expected{"An event listener can be made on the thread of its run loop only",
                                          "There is no run loop mode tracking for an event listener"};
  std::vector<std::string> log;
  const NSLogHook hook([&](std::string_view line) { log.emplace_back(line); });
  const AUEventListenerProc proc = [](void*, void*, const AudioUnitEvent*, UInt64, Float32) {};
  AUEventListenerRef made = nullptr;
  EXPECT_EQ(AUEventListenerCreate(nullptr, nullptr, nullptr, nullptr, 1, 1, &made), kAudio_ParamError);
  EXPECT_EQ(AUEventListenerCreate(proc, nullptr, nullptr, nullptr, 1, 1, nullptr), kAudio_ParamError);
  for (const Float32 time : {-1.0F, std::nanf(""), std::numeric_limits<Float32>::infinity()}) {
    EXPECT_EQ(AUEventListenerCreate(proc, nullptr, nullptr, nullptr, time, 1, &made), kAudio_ParamError);
    EXPECT_EQ(AUEventListenerCreate(proc, nullptr, nullptr, nullptr, 1, time, &made), kAudio_ParamError);
  }
  std::thread([&] {
    const NSLogHook here([&](std::string_view line) { log.emplace_back(line); });
    EXPECT_EQ(AUEventListenerCreate(proc, nullptr, &loop, nullptr, 1, 1, &made), kAudio_ParamError);
  }).join();
  EXPECT_EQ(AUEventListenerCreate(proc, nullptr, nullptr, "tracking", 1, 1, &made), kAudio_ParamError);
  EXPECT_EQ(made, nullptr);
  EXPECT_EQ(log, expected);
}

TEST_F(EventListener, ChecksEventsAndListenersItIsGiven) {
  Listener listener;
  const AUEventListenerRef ref = listener.ref;
  AudioUnitEvent odd = value_change(unit, 2);
  odd.mEventType = 4;
  const AudioUnitEvent of_nobody = value_change(nullptr, 2);
  const AudioUnitEvent good = value_change(unit, 2);
  EXPECT_EQ(AUEventListenerAddEventType(ref, nullptr, nullptr), kAudio_ParamError);
  EXPECT_EQ(AUEventListenerAddEventType(ref, nullptr, &odd), kAudio_ParamError);
  EXPECT_EQ(AUEventListenerAddEventType(ref, nullptr, &of_nobody), badComponentInstance);
  EXPECT_EQ(AUEventListenerAddEventType(nullptr, nullptr, &good), kAudio_ParamError);
  EXPECT_EQ(AUEventListenerNotify(nullptr, nullptr, nullptr), kAudio_ParamError);
  EXPECT_EQ(AUEventListenerNotify(nullptr, nullptr, &odd), kAudio_ParamError);
  EXPECT_EQ(AUParameterSet(nullptr, nullptr, nullptr, 0, 0), kAudio_ParamError);
  listener.dispose();
  EXPECT_EQ(AUListenerDispose(ref), kAudio_ParamError) << "disposed already";
  EXPECT_EQ(AUEventListenerAddEventType(ref, nullptr, &good), kAudio_ParamError);
  EXPECT_EQ(AUEventListenerNotify(ref, nullptr, &good), noErr) << "a sender that has gone excludes nobody";
  EXPECT_EQ(AUListenerDispose(nullptr), kAudio_ParamError);
}

TEST_F(EventListener, IsNotToldOfAWriteThatFailed) {
  Listener listener;
  listener.add(0, value_change(unit, 9));
  const AudioUnitParameter parameter = parameter_of(unit, 9);
  EXPECT_EQ(AUParameterSet(nullptr, nullptr, &parameter, 1, 0), kAudioUnitErr_InvalidParameter);
  notify(value_change(unit, 9));
  finishRound();
  EXPECT_EQ(listener.take(), Reports{}) << "there is no value to tell";
}

}  // namespace
}  // namespace cocoa::test
