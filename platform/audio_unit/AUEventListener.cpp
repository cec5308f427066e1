#include "audio_unit/AUEventListener.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>

#include "audio_unit/effect.h"
#include "audio_unit/event_listener.h"
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
  return units.lease(unit) ? noErr : badComponentInstance;
}

bool is_any_parameter(const AudioUnitEvent& event) {
  return event.mEventType != kAudioUnitEvent_PropertyChange &&
         event.mArgument.mParameter.mParameterID == kAUParameterListener_AnyParameter;
}

bool is_gesture(const AudioUnitEvent& event) {
  return event.mEventType == kAudioUnitEvent_BeginParameterChangeGesture ||
         event.mEventType == kAudioUnitEvent_EndParameterChangeGesture;
}

void tell_host_of_gesture(const AudioUnitEvent& event) {
  const AudioUnitParameter& parameter = event.mArgument.mParameter;
  const auto effect = units.lease(parameter.mAudioUnit);
  if (!effect)
    return;
  const decltype(units)::CallOut call_out(effect);
  Float32 value = 0;
  const bool known = parameter.mScope == kAudioUnitScope_Global && parameter.mElement == 0 &&
                     effect->read(parameter.mParameterID, value);
  if (known && effect->on_gesture) {
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
  auto listener = std::make_unique<EventListener>(inProc, inUserData, *current, interval,
                                                  to_seconds(inValueChangeGranularity));
  EventListener* made = listener.get();
  AUEventListenerRef name = listeners.add(listener);
  if (!name) {
    NSLog("There is no room for one more event listener");
    return kAudio_ParamError;
  }
  made->setName(name);
  *outListener = name;
  return noErr;
}

OSStatus AUListenerDispose(AUParameterListenerRef inListener) {
  return listeners.retire(inListener) ? noErr : kAudio_ParamError;
}

OSStatus AUEventListenerAddEventType(AUEventListenerRef inListener, void* inObject,
                                     const AudioUnitEvent* inEvent) {
  const auto listener = listeners.lease(inListener);
  if (!listener)
    return kAudio_ParamError;
  if (const OSStatus status = check(inEvent); status != noErr)
    return status;
  if (is_any_parameter(*inEvent))
    return kAudioUnitErr_InvalidParameter;
  const EventListener::Table::CallOut call_out(listener);
  listener->add(inObject, *inEvent);
  return noErr;
}

OSStatus AUEventListenerRemoveEventType(AUEventListenerRef inListener, void* inObject,
                                        const AudioUnitEvent* inEvent) {
  const auto listener = listeners.lease(inListener);
  // What was registered may be taken back even when its unit has gone.
  if (!listener || !inEvent || inEvent->mEventType > kAudioUnitEvent_PropertyChange)
    return kAudio_ParamError;
  const EventListener::Table::CallOut call_out(listener);
  listener->remove(inObject, *inEvent);
  return noErr;
}

OSStatus AUEventListenerNotify(AUEventListenerRef inSendingListener, void* inSendingObject,
                               const AudioUnitEvent* inEvent) {
  if (const OSStatus status = check(inEvent); status != noErr)
    return status;
  if (is_gesture(*inEvent))
    tell_host_of_gesture(*inEvent);
  announce(*inEvent, {inSendingListener, inSendingObject});
  return noErr;
}

OSStatus AUParameterSet(AUParameterListenerRef inSendingListener, void* inSendingObject,
                        const AudioUnitParameter* inParameter, AudioUnitParameterValue inValue,
                        UInt32 /*inBufferOffsetInFrames*/) {
  if (!inParameter)
    return kAudio_ParamError;
  std::uint32_t order = 0;
  const OSStatus status = write_parameter(*inParameter, inValue, &order);
  if (status == noErr)
    announce_write(*inParameter, inValue, order, {inSendingListener, inSendingObject});
  return status;
}

}  // namespace cocoa
