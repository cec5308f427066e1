// SPDX-License-Identifier: MIT
#include "listening.h"

#include <utility>

namespace cocoa::test {

std::vector<EffectParameter> seven_parameters() {
  std::vector<EffectParameter> parameters;
  parameters.reserve(7);
  for (AudioUnitParameterID id = 0; id < 7; ++id) {
    parameters.push_back(
        {.id = id, .name = "parameter", .unit = "", .default_value = static_cast<Float32>(id) / 8});
  }
  return parameters;
}

AudioUnitParameter parameter_of(AudioUnit unit, AudioUnitParameterID id) {
  return {unit, id, kAudioUnitScope_Global, 0};
}

namespace {

AudioUnitEvent event_of(AudioUnitEventType type, AudioUnit unit, AudioUnitParameterID id) {
  return {.mEventType = type, .mArgument = {.mParameter = parameter_of(unit, id)}};
}

}  // namespace

AudioUnitEvent value_change(AudioUnit unit, AudioUnitParameterID id) {
  return event_of(kAudioUnitEvent_ParameterValueChange, unit, id);
}

AudioUnitEvent gesture_begin(AudioUnit unit, AudioUnitParameterID id) {
  return event_of(kAudioUnitEvent_BeginParameterChangeGesture, unit, id);
}

AudioUnitEvent gesture_end(AudioUnit unit, AudioUnitParameterID id) {
  return event_of(kAudioUnitEvent_EndParameterChangeGesture, unit, id);
}

AudioUnitEvent property_change(AudioUnit unit, AudioUnitPropertyID id) {
  return {.mEventType = kAudioUnitEvent_PropertyChange,
          .mArgument = {.mProperty = {unit, id, kAudioUnitScope_Global, 0}}};
}

int objects[4];

Listener::Listener(Float32 interval, Float32 granularity) {
  EXPECT_EQ(AUEventListenerCreate(callback, this, CFRunLoopGetCurrent(), kCFRunLoopDefaultMode, interval,
                                  granularity, &ref),
            noErr);
}

void Listener::dispose() {
  if (ref) {
    EXPECT_EQ(AUListenerDispose(std::exchange(ref, nullptr)), noErr);
  }
}

void Listener::add(int object, const AudioUnitEvent& event) {
  EXPECT_EQ(AUEventListenerAddEventType(ref, &objects[object], &event), noErr);
}

Reports Listener::take() {
  return std::exchange(reports_, {});
}

void Listener::callback(void* self, void* object, const AudioUnitEvent* event, UInt64 host_time,
                        Float32 value) {
  auto& listener = *static_cast<Listener*>(self);
  const bool property = event->mEventType == kAudioUnitEvent_PropertyChange;
  const Report report{
      .object = static_cast<int>(static_cast<int*>(object) - objects),
      .type = event->mEventType,
      .id = property ? event->mArgument.mProperty.mPropertyID : event->mArgument.mParameter.mParameterID,
      .value = value};
  listener.reports_.push_back(report);
  listener.host_times.push_back(host_time);
  if (listener.then)
    listener.then(report);
}

void Listening::turnAt(double milliseconds) {
  at(milliseconds);
  CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
}

void Listening::set(AudioUnitParameterID id, Float32 value) {
  const AudioUnitParameter parameter = parameter_of(unit, id);
  EXPECT_EQ(AUParameterSet(nullptr, nullptr, &parameter, value, 0), noErr);
}

void Listening::notify(const AudioUnitEvent& event) {
  EXPECT_EQ(AUEventListenerNotify(nullptr, nullptr, &event), noErr);
}

}  // namespace cocoa::test
