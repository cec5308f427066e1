// SPDX-License-Identifier: MIT
#include "audio_unit/AUEventListener.h"

#include <cmath>
#include <cstring>
#include <memory>
#include <mutex>

#include "audio_unit/private/effect.h"
#include "audio_unit/private/event_listener.h"
#include "foundation/NSLog.h"

namespace cocoa {

namespace {

bool is_time(Float32 seconds) {
  return std::isfinite(seconds) && seconds >= 0;
}

/// To the microsecond: 0.05F means 0.05 s, and not the 0.0500000007 s that its nearest float is.
double to_seconds(Float32 seconds) {
  return std::round(static_cast<double>(seconds) * 1e6) / 1e6;
}

/// Whether the event is one that can be registered for or sent.
OSStatus check(const AudioUnitEvent* event) {
  if (!event || event->mEventType > kAudioUnitEvent_PropertyChange)
    return kAudio_ParamError;
  AudioUnit unit = event->mEventType == kAudioUnitEvent_PropertyChange
                       ? event->mArgument.mProperty.mAudioUnit
                       : event->mArgument.mParameter.mAudioUnit;
  return units.find(unit) ? noErr : badComponentInstance;
}

bool names_any_parameter(const AudioUnitEvent& event) {
  return event.mEventType != kAudioUnitEvent_PropertyChange &&
         event.mArgument.mParameter.mParameterID == kAUParameterListener_AnyParameter;
}

bool is_gesture(const AudioUnitEvent& event) {
  return event.mEventType == kAudioUnitEvent_BeginParameterChangeGesture ||
         event.mEventType == kAudioUnitEvent_EndParameterChangeGesture;
}

void tell_host_of_gesture(const AudioUnitEvent& event) {
  const AudioUnitParameter& parameter = event.mArgument.mParameter;
  const std::shared_ptr<Effect> effect = units.find(parameter.mAudioUnit);
  Float32 value = 0;
  if (!effect || AudioUnitGetParameter(parameter.mAudioUnit, parameter.mParameterID, parameter.mScope,
                                       parameter.mElement, &value) != noErr) {
    return;
  }
  const CallGate::Pass pass(effect->gate);
  if (pass && effect->on_gesture) {
    effect->on_gesture(parameter.mParameterID,
                       event.mEventType == kAudioUnitEvent_BeginParameterChangeGesture);
  }
}

}  // namespace

OSStatus AUEventListenerCreate(AUEventListenerProc inProc, void* inUserData, CFRunLoopRef inRunLoop,
                               CFStringRef inRunLoopMode, Float32 inNotificationInterval,
                               Float32 inValueChangeGranularity, AUEventListenerRef* outListener) {
  if (!inProc || !outListener || !is_time(inNotificationInterval) || !is_time(inValueChangeGranularity))
    return kAudio_ParamError;
  CFRunLoopRef current = CFRunLoopGetCurrent();
  if (inNotificationInterval > 0) {
    if (inRunLoop && inRunLoop != current) {
      NSLog("An event listener can be made on the thread of its run loop only");
      return kAudio_ParamError;
    }
    if (inRunLoopMode && std::strcmp(inRunLoopMode, kCFRunLoopDefaultMode) != 0) {
      NSLog("There is no run loop mode %s for an event listener", inRunLoopMode);
      return kAudio_ParamError;
    }
  }
  // An interval too short to count is one microsecond: rounds are asked for, and come on the run loop.
  const double interval =
      inNotificationInterval > 0 ? std::fmax(to_seconds(inNotificationInterval), 1e-6) : 0;
  *outListener = listeners.add(std::make_shared<EventListener>(inProc, inUserData, *current, interval,
                                                               to_seconds(inValueChangeGranularity)));
  return noErr;
}

OSStatus AUListenerDispose(AUParameterListenerRef inListener) {
  const std::shared_ptr<EventListener> listener = listeners.remove(inListener);
  if (!listener)
    return kAudio_ParamError;
  listener->end();
  return noErr;
}

OSStatus AUEventListenerAddEventType(AUEventListenerRef inListener, void* inObject,
                                     const AudioUnitEvent* inEvent) {
  const std::shared_ptr<EventListener> listener = listeners.find(inListener);
  if (!listener)
    return kAudio_ParamError;
  if (const OSStatus status = check(inEvent); status != noErr)
    return status;
  if (names_any_parameter(*inEvent))
    return kAudioUnitErr_InvalidParameter;
  listener->add(inObject, *inEvent);
  return noErr;
}

OSStatus AUEventListenerNotify(AUEventListenerRef inSendingListener, void* inSendingObject,
                               const AudioUnitEvent* inEvent) {
  if (const OSStatus status = check(inEvent); status != noErr)
    return status;
  if (is_gesture(*inEvent))
    tell_host_of_gesture(*inEvent);
  const EventSender sender{inSendingListener, inSendingObject};
  {
    const std::lock_guard lock(audio_unit_lock);
    queue_for_all({.event = *inEvent}, sender);
  }
  call_at_once({.event = *inEvent}, sender);
  return noErr;
}

}  // namespace cocoa
