// SPDX-License-Identifier: MIT
#pragma once

#include "audio_unit/AudioUnit.h"
#include "foundation/CFRunLoop.h"

/// Who is told of what happens to parameters, when, and with which value.
///
/// A listener belongs to the run loop that it was made for: it is made, changed and disposed on that loop's
/// thread, also from inside its own callback, and called back there. Events are sent from any thread; sending
/// takes a lock for a moment, so it is not for the audio thread.
///
/// Delivery comes in rounds. The first event that a listener has not been told starts one, `interval` later
/// all that has come in is told in the order of its time. A value change that follows the one before of the
/// same parameter by less than `granularity` replaces it (after a thousand untold events, for a loop that is
/// not turned, whenever it follows); gestures and property changes are all told, and no value change moves
/// across one that concerns its parameter. Both times are in seconds, taken to the
/// microsecond, of the clock that the run loop has when the listener is made.
/// A change replaces an earlier one also for the object that it is not told to because that object made it:
/// nobody hears of a value that it has overwritten itself.
///
/// With an interval of 0 there are no rounds: the callback is made at once, on the thread that sends, and
/// from two threads at the same time if two send.

namespace cocoa {

/// Names a listener; never dereferenced, so that one that has been disposed is told apart.
struct AUListenerBase;
using AUEventListenerRef = AUListenerBase*;
using AUParameterListenerRef = AUListenerBase*;

/// As the parameter of a value change that is sent: all parameters of the unit that somebody is registered
/// for, with the values they have when they are told. Its scope and element mean nothing. Nobody can register
/// for it.
inline constexpr AudioUnitParameterID kAUParameterListener_AnyParameter = 0xFFFFFFFF;

/// `inObject` is the object that was registered. `inEventHostTime` is when the event occurred, in nanoseconds
/// of the listener's clock. `inParameterValue` means something for value changes only: what AUParameterSet
/// wrote, or what the parameter is when the callback is made if only a change was announced.
using AUEventListenerProc = void (*)(void* inUserData, void* inObject, const AudioUnitEvent* inEvent,
                                     UInt64 inEventHostTime, Float32 inParameterValue);

/// Makes a listener in `*outListener`, which the caller owns and must give to AUListenerDispose. A null run
/// loop is the calling thread's, and no other may be given; a null mode is the default one, and there is no
/// other. Times must be finite and not negative.
OSStatus AUEventListenerCreate(AUEventListenerProc inProc, void* inUserData, CFRunLoopRef inRunLoop,
                               CFStringRef inRunLoopMode, Float32 inNotificationInterval,
                               Float32 inValueChangeGranularity, AUEventListenerRef* outListener);

/// Ends the listener: not one callback comes after this has returned, not even of what was already sent.
OSStatus AUListenerDispose(AUParameterListenerRef inListener);

/// Registers `inObject` for one type of event of one parameter or property. Twice the same is once. Only what
/// is sent from now on is told.
OSStatus AUEventListenerAddEventType(AUEventListenerRef inListener, void* inObject,
                                     const AudioUnitEvent* inEvent);

/// Tells everybody registered for the event, except: with a sending listener and object, that object of that
/// listener; with a sending listener and no object, all objects of that listener. Without a sending listener
/// nobody is left out. Any thread.
OSStatus AUEventListenerNotify(AUEventListenerRef inSendingListener, void* inSendingObject,
                               const AudioUnitEvent* inEvent);

/// Writes the value as it is given, whatever the parameter's range, tells the host (EffectInstance::onWrite),
/// then the parameter's listeners as AUEventListenerNotify does. Values take effect at once, so the offset,
/// in frames of the host's next buffer, changes nothing. Any thread.
OSStatus AUParameterSet(AUParameterListenerRef inSendingListener, void* inSendingObject,
                        const AudioUnitParameter* inParameter, AudioUnitParameterValue inValue,
                        UInt32 inBufferOffsetInFrames);

}  // namespace cocoa
