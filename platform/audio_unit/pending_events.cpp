#include "audio_unit/pending_events.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace cocoa {

bool same_subject(const AudioUnitEvent& a, const AudioUnitEvent& b) {
  if (a.mEventType != b.mEventType)
    return false;
  if (a.mEventType == kAudioUnitEvent_PropertyChange)
    return a.mArgument.mProperty == b.mArgument.mProperty;
  return a.mArgument.mParameter == b.mArgument.mParameter;
}

namespace {

bool is_value_change(const SentEvent& event) {
  return event.event.mEventType == kAudioUnitEvent_ParameterValueChange;
}

/// Whether the event may not change places with a value change of `parameter`.
bool concerns(const SentEvent& sent, const AudioUnitParameter& parameter) {
  const auto& argument = sent.event.mArgument;
  if (sent.event.mEventType == kAudioUnitEvent_PropertyChange)
    return argument.mProperty.mAudioUnit == parameter.mAudioUnit;
  return argument.mParameter == parameter;
}

}  // namespace

void PendingEvents::add(const SentEvent& event) {
  first_time_ = std::min(first_time_, event.time);
  // Nearly always the end: only a sender that was interrupted between looking at the clock and handing in its
  // event comes out of order.
  auto place = std::upper_bound(events_.begin(), events_.end(), event.time,
                                [](double time, const SentEvent& other) { return time < other.time; });
  if (is_value_change(event)) {
    const AudioUnitParameter& parameter = event.event.mArgument.mParameter;
    const auto concerned = [&](const SentEvent& other) { return concerns(other, parameter); };
    const auto later = std::find_if(place, events_.end(), concerned);
    if (later != events_.end() && is_value_change(*later) && later->time < event.time + granularity_)
      return;
    const auto earlier = std::find_if(std::make_reverse_iterator(place), events_.rend(), concerned);
    if (earlier != events_.rend() && is_value_change(*earlier) && event.time < earlier->time + granularity_) {
      const auto replaced = std::prev(earlier.base());
      std::move(std::next(replaced), place, replaced);
      *std::prev(place) = event;
      return;
    }
  }
  events_.insert(place, event);
}

std::vector<SentEvent> PendingEvents::take() {
  first_time_ = std::numeric_limits<double>::infinity();
  return std::exchange(events_, {});
}

}  // namespace cocoa
