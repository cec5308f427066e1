#include "audio_unit/event_listener.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "audio_unit/effect.h"

namespace cocoa {

namespace {

/// Room for a dozen parameters automated in every block of 32 frames at 48 kHz, which is 600 events between
/// two turns of a host that turns its loop 30 times a second.
constexpr std::size_t ring_capacity = 1024;

bool is_any_parameter(const AudioUnitEvent& event) {
  return event.mEventType == kAudioUnitEvent_ParameterValueChange &&
         event.mArgument.mParameter.mParameterID == kAUParameterListener_AnyParameter;
}

/// Whether a registration for `wanted` is told of `event`.
bool is_told(const AudioUnitEvent& wanted, const AudioUnitEvent& event) {
  if (!is_any_parameter(event))
    return same_subject(wanted, event);
  return wanted.mEventType == event.mEventType &&
         wanted.mArgument.mParameter.mAudioUnit == event.mArgument.mParameter.mAudioUnit;
}

bool is_excluded(const SentEvent& event, const void* object) {
  return event.excluded == Excluded::all_objects ||
         (event.excluded == Excluded::one_object && event.excluded_object == object);
}

AudioUnit unit_of(const AudioUnitEvent& event) {
  return event.mEventType == kAudioUnitEvent_PropertyChange ? event.mArgument.mProperty.mAudioUnit
                                                            : event.mArgument.mParameter.mAudioUnit;
}

/// The number of the last write of the parameter; none when its unit or the parameter has gone.
std::optional<std::uint32_t> last_write(const AudioUnitParameter& parameter) {
  Float32 value = 0;
  std::uint32_t order = 0;
  const auto effect = units.lease(parameter.mAudioUnit);
  return effect && effect->read(parameter.mParameterID, value, &order) ? std::optional(order) : std::nullopt;
}

/// The same event, about one parameter, whose value is read when it is told. It stands for all writes so far:
/// what a slow sender still hands in of them is old.
SentEvent value_change_of(const AudioUnitParameter& parameter, SentEvent event) {
  event.event.mEventType = kAudioUnitEvent_ParameterValueChange;
  event.event.mArgument.mParameter = parameter;
  event.value.reset();
  event.order = last_write(parameter);
  return event;
}

/// The value that goes with the event in the callback; none when its unit or parameter has gone.
std::optional<Float32> value_to_tell(const AudioUnitEvent& event, const SentEvent& sent) {
  if (event.mEventType != kAudioUnitEvent_ParameterValueChange)
    return units.lease(unit_of(event)) ? std::optional<Float32>(0) : std::nullopt;
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
      registrations_(nullptr),
      ring_(interval > 0 ? std::make_unique<EventRing>(ring_capacity) : nullptr),
      pending_(granularity) {
  publish(std::make_unique<const Registrations>());
  if (ring_)
    source_ = loop.addSource([this] { drain(); });
}

EventListener::~EventListener() = default;

bool EventListener::Registration::operator==(const Registration& other) const {
  return object == other.object && first_ticket == other.first_ticket && same_subject(event, other.event);
}

void EventListener::publish(std::unique_ptr<const Registrations> registrations) {
  registrations_.store(registrations.get());
  // One user is the caller's own lease; more of them are callbacks that this was called from.
  const bool unread = !name_ || listeners.waitForOthers(name_) == 1;
  if (unread)
    kept_registrations_.clear();
  kept_registrations_.push_back(std::move(registrations));
}

void EventListener::add(void* object, const AudioUnitEvent& event) {
  const Registrations& old = *registrations_.load();
  const auto same = [&](const Registration& r) { return r.object == object && same_subject(r.event, event); };
  if (std::any_of(old.begin(), old.end(), same))
    return;
  auto registrations = std::make_unique<Registrations>(old);
  registrations->push_back({object, event, ring_ ? ring_->nextTicket() : 0});
  publish(std::move(registrations));
}

void EventListener::remove(void* object, const AudioUnitEvent& event) {
  auto registrations = std::make_unique<Registrations>(*registrations_.load());
  std::erase_if(*registrations,
                [&](const Registration& r) { return r.object == object && same_subject(r.event, event); });
  publish(std::move(registrations));
}

bool EventListener::isRegistered(const Registration& registration) const {
  const Registrations& current = *registrations_.load();
  return std::find(current.begin(), current.end(), registration) != current.end();
}

void EventListener::receive(SentEvent event, const Table::Lease& self) {
  const Registrations& told = *registrations_.load();
  if (std::none_of(told.begin(), told.end(),
                   [&](const Registration& r) { return is_told(r.event, event.event); })) {
    return;
  }
  event.time = clock_.now();
  if (!ring_) {
    const Table::CallOut call_out(self);
    tell(event, {}, self);
    return;
  }
  if (!ring_->push(event))
    overflowed_ = true;
  source_->signal();
}

void EventListener::drain() {
  SentEvent event;
  std::size_t room = ring_->capacity();
  while (room > 0 && ring_->pop(event)) {
    accept(event);
    --room;
  }
  // Senders that keep up with this loop must not hold it for ever.
  if (room == 0)
    source_->signal();
  if (overflowed_.exchange(false))
    resynchronise();
  startRound();
}

void EventListener::accept(SentEvent event) {
  if (is_any_parameter(event.event)) {
    for (const AudioUnitParameter& parameter : watchedParameters(unit_of(event.event)))
      accept(value_change_of(parameter, event));
  } else if (!event.order || keepsOrder(event)) {
    pending_.add(event);
  }
}

/// Two threads that write a parameter at once may look at the clock and hand in their events in any order;
/// told so, they would leave the listener with a value that is not the parameter's. Answers false for an
/// event that a later write has overtaken, and keeps the others behind those that were before.
bool EventListener::keepsOrder(SentEvent& event) {
  const std::uint32_t order = *event.order;
  const AudioUnitParameter& parameter = event.event.mArgument.mParameter;
  for (NewestWrite& newest : newest_writes_) {
    if (newest.parameter != parameter)
      continue;
    // The numbers wrap around.
    if (static_cast<std::int32_t>(order - newest.order) < 0)
      return false;
    event.time = std::max(event.time, newest.time);
    newest = {parameter, order, event.time};
    return true;
  }
  newest_writes_.push_back({parameter, order, event.time});
  return true;
}

/// Something was lost: every parameter may have changed.
void EventListener::resynchronise() {
  SentEvent now;
  now.time = clock_.now();
  now.ticket = ring_->nextTicket();
  for (const AudioUnitParameter& parameter : watchedParameters(nullptr))
    accept(value_change_of(parameter, now));
}

/// The parameters of the unit, or of all for null, whose values somebody is registered for.
std::vector<AudioUnitParameter> EventListener::watchedParameters(AudioUnit unit) const {
  std::vector<AudioUnitParameter> watched;
  for (const Registration& registration : *registrations_.load()) {
    const AudioUnitParameter& parameter = registration.event.mArgument.mParameter;
    if (registration.event.mEventType != kAudioUnitEvent_ParameterValueChange ||
        (unit && parameter.mAudioUnit != unit)) {
      continue;
    }
    if (std::find(watched.begin(), watched.end(), parameter) == watched.end())
      watched.push_back(parameter);
  }
  return watched;
}

void EventListener::startRound() {
  if (!round_ && !pending_.empty())
    round_ = loop_.addTimer(pending_.firstTime() + interval_, [this] { finishRound(); });
}

void EventListener::finishRound() {
  const auto self = listeners.lease(name_);
  if (!self)
    return;
  const Table::CallOut call_out(self);
  drain();
  round_.reset();
  const std::vector<SentEvent> events = pending_.take();
  std::span<const SentEvent> later = events;
  for (const SentEvent& event : events) {
    later = later.subspan(1);
    tell(event, later, self);
    if (self.retired())
      return;
  }
}

void EventListener::tell(const SentEvent& sent, std::span<const SentEvent> later,
                         const Table::Lease& self) const {
  // The callbacks may register and take back; the table that this goes through stays for as long as `self`.
  const Registrations& registrations = *registrations_.load();
  const auto host_time = static_cast<UInt64>(std::max(sent.time, 0.0) * 1e9);
  for (const Registration& registration : registrations) {
    if (!is_told(registration.event, sent.event) || sent.ticket < registration.first_ticket ||
        is_excluded(sent, registration.object) || is_overwritten(sent, later, registration.object) ||
        !isRegistered(registration)) {
      continue;
    }
    const std::optional<Float32> value = value_to_tell(registration.event, sent);
    if (!value)
      continue;
    proc_(user_data_, registration.object, &registration.event, host_time, *value);
    if (self.retired())
      return;
  }
}

namespace {

void send(SentEvent event, const EventSender& sender) {
  listeners.forEach([&](const EventListener::Table::Lease& listener) {
    event.excluded = Excluded::nobody;
    if (sender.listener && listener.name() == sender.listener)
      event.excluded = sender.object ? Excluded::one_object : Excluded::all_objects;
    event.excluded_object = sender.object;
    listener->receive(event, listener);
  });
}

}  // namespace

void announce(const AudioUnitEvent& event, const EventSender& sender) {
  SentEvent sent{.event = event};
  if (event.mEventType == kAudioUnitEvent_ParameterValueChange)
    sent.order = last_write(event.mArgument.mParameter);
  send(sent, sender);
}

void announce_write(const AudioUnitParameter& parameter, Float32 value, std::uint32_t order,
                    const EventSender& sender) {
  const AudioUnitEvent event{.mEventType = kAudioUnitEvent_ParameterValueChange,
                             .mArgument = {.mParameter = parameter}};
  send({.event = event, .value = value, .order = order}, sender);
}

}  // namespace cocoa
