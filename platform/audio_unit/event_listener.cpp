// SPDX-License-Identifier: MIT
#include "audio_unit/private/event_listener.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "audio_unit/private/effect.h"

namespace cocoa {

namespace {

bool is_any_parameter(const AudioUnitEvent& event) {
  return event.mEventType == kAudioUnitEvent_ParameterValueChange &&
         event.mArgument.mParameter.mParameterID == kAUParameterListener_AnyParameter;
}

AudioUnit unit_of(const AudioUnitEvent& event) {
  return event.mEventType == kAudioUnitEvent_PropertyChange ? event.mArgument.mProperty.mAudioUnit
                                                            : event.mArgument.mParameter.mAudioUnit;
}

/// Whether a registration for `wanted` is told of `event`.
bool is_told(const AudioUnitEvent& wanted, const AudioUnitEvent& event) {
  if (!is_any_parameter(event))
    return same_subject(wanted, event);
  return wanted.mEventType == event.mEventType && unit_of(wanted) == unit_of(event);
}

bool is_excluded(const SentEvent& event, const void* object) {
  return event.excluded == Excluded::all_objects ||
         (event.excluded == Excluded::one_object && event.excluded_object == object);
}

/// The value that goes with the event in the callback; none when its unit or parameter has gone.
std::optional<Float32> value_to_tell(const AudioUnitEvent& event, const SentEvent& sent) {
  if (event.mEventType != kAudioUnitEvent_ParameterValueChange)
    return units.find(unit_of(event)) ? std::optional<Float32>(0) : std::nullopt;
  const AudioUnitParameter& p = event.mArgument.mParameter;
  Float32 current = 0;
  if (AudioUnitGetParameter(p.mAudioUnit, p.mParameterID, p.mScope, p.mElement, &current) != noErr)
    return std::nullopt;
  return sent.value.value_or(current);
}

/// Whether the object has itself changed the parameter later in the round.
bool is_overwritten(const SentEvent& event, std::span<const SentEvent> later, const void* object) {
  return event.event.mEventType == kAudioUnitEvent_ParameterValueChange &&
         std::any_of(later.begin(), later.end(), [&](const SentEvent& other) {
           return is_excluded(other, object) && same_subject(other.event, event.event);
         });
}

}  // namespace

EventListener::EventListener(AUEventListenerProc proc, void* user_data, CFRunLoop& loop, double interval,
                             double granularity)
    : proc_(proc),
      user_data_(user_data),
      loop_(loop),
      clock_(loop.clock()),
      interval_(interval),
      pending_(granularity) {
  if (interval_ > 0)
    source_ = loop.addSource([this] { startRound(); });
}

void EventListener::add(void* object, const AudioUnitEvent& event) {
  const std::lock_guard lock(audio_unit_lock);
  const auto same = [&](const Registration& r) { return r.object == object && same_subject(r.event, event); };
  if (std::none_of(registrations_.begin(), registrations_.end(), same))
    registrations_.push_back({object, event, tickets_});
}

bool EventListener::isRegisteredFor(const AudioUnitEvent& event) const {
  return std::any_of(registrations_.begin(), registrations_.end(),
                     [&](const Registration& r) { return is_told(r.event, event); });
}

/// The parameters of the unit whose values somebody is registered for.
std::vector<AudioUnitParameter> EventListener::watchedParameters(AudioUnit unit) const {
  std::vector<AudioUnitParameter> watched;
  for (const Registration& registration : registrations_) {
    const AudioUnitParameter& parameter = registration.event.mArgument.mParameter;
    if (registration.event.mEventType == kAudioUnitEvent_ParameterValueChange &&
        parameter.mAudioUnit == unit &&
        std::find(watched.begin(), watched.end(), parameter) == watched.end()) {
      watched.push_back(parameter);
    }
  }
  return watched;
}

SentEvent EventListener::stamped(SentEvent event) {
  event.time = clock_.now();
  event.ticket = tickets_++;
  return event;
}

void EventListener::queue(const SentEvent& event) {
  if (!source_ || !isRegisteredFor(event.event))
    return;
  SentEvent sent = stamped(event);
  if (is_any_parameter(sent.event)) {
    for (const AudioUnitParameter& parameter : watchedParameters(unit_of(event.event))) {
      sent.event.mArgument.mParameter = parameter;
      pending_.add(sent);
    }
  } else {
    pending_.add(sent);
  }
  source_->signal();
}

void EventListener::callAtOnce(const SentEvent& event) {
  if (interval_ > 0)
    return;
  SentEvent sent;
  {
    const std::lock_guard lock(audio_unit_lock);
    sent = stamped(event);
  }
  tell(sent, {});
}

void EventListener::end() {
  round_.reset();
  {
    const std::lock_guard lock(audio_unit_lock);
    source_.reset();
  }
  gate_.close();
}

void EventListener::startRound() {
  const std::lock_guard lock(audio_unit_lock);
  if (!round_ && !pending_.empty())
    round_ = loop_.addTimer(pending_.firstTime() + interval_, [this] { finishRound(); });
}

void EventListener::finishRound() {
  // The callbacks may dispose of the listener.
  const std::shared_ptr<EventListener> self = shared_from_this();
  round_.reset();
  std::vector<SentEvent> events;
  {
    const std::lock_guard lock(audio_unit_lock);
    events = pending_.take();
  }
  std::span<const SentEvent> later = events;
  for (const SentEvent& event : events) {
    later = later.subspan(1);
    tell(event, later);
  }
}

void EventListener::tell(const SentEvent& sent, std::span<const SentEvent> later) {
  const Registrations registrations = [this] {
    const std::lock_guard lock(audio_unit_lock);
    return registrations_;
  }();
  const auto host_time = static_cast<UInt64>(std::max(sent.time, 0.0) * 1e9);
  for (const Registration& registration : registrations) {
    if (!is_told(registration.event, sent.event) || sent.ticket < registration.first_ticket ||
        is_excluded(sent, registration.object) || is_overwritten(sent, later, registration.object)) {
      continue;
    }
    const std::optional<Float32> value = value_to_tell(registration.event, sent);
    const CallGate::Pass pass(gate_);
    if (value && pass)
      proc_(user_data_, registration.object, &registration.event, host_time, *value);
  }
}

SentEvent value_change_to(const AudioUnitParameter& parameter, Float32 value) {
  return {
      .event = {.mEventType = kAudioUnitEvent_ParameterValueChange, .mArgument = {.mParameter = parameter}},
      .value = value};
}

namespace {

SentEvent sent_by(const EventSender& sender, SentEvent event, AUEventListenerRef to) {
  if (sender.listener && sender.listener == to)
    event.excluded = sender.object ? Excluded::one_object : Excluded::all_objects;
  event.excluded_object = sender.object;
  return event;
}

}  // namespace

void queue_for_all(const SentEvent& event, const EventSender& sender) {
  for (const auto& [name, listener] : listeners.all())
    listener->queue(sent_by(sender, event, name));
}

void call_at_once(const SentEvent& event, const EventSender& sender) {
  for (const auto& [name, listener] : listeners.all())
    listener->callAtOnce(sent_by(sender, event, name));
}

}  // namespace cocoa
