#pragma once

#include <limits>
#include <vector>

#include "audio_unit/event_ring.h"

namespace cocoa {

/// Whether both are the same type of event of the same parameter or property.
bool same_subject(const AudioUnitEvent& a, const AudioUnitEvent& b);

/// What a listener will be told in its next round, in the order of time, events of the same time in the order
/// of their coming.
///
/// A value change that follows the one before of the same parameter by less than the granularity replaces it,
/// unless a gesture of that parameter or a property change of its unit lies between. The one before may
/// itself have replaced another, so changes in quick succession leave only their last.
class PendingEvents {
 public:
  /// `granularity` in seconds.
  explicit PendingEvents(double granularity) : granularity_(granularity) {}

  void add(const SentEvent& event);
  bool empty() const { return events_.empty(); }
  /// The time of the earliest event added since the last take(), be it replaced or not; +infinity for none.
  double firstTime() const { return first_time_; }
  std::vector<SentEvent> take();

 private:
  std::vector<SentEvent> events_;
  double granularity_;
  double first_time_ = std::numeric_limits<double>::infinity();
};

}  // namespace cocoa
