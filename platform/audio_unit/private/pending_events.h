// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "audio_unit/AudioUnit.h"

namespace cocoa {

/// Which of the listener's objects are not told, because they are the sender.
enum class Excluded : std::uint8_t { nobody, one_object, all_objects };

/// An event on its way to one listener.
struct SentEvent {
  AudioUnitEvent event{};
  double time = 0;  ///< when it occurred, in seconds of the listener's clock
  Excluded excluded = Excluded::nobody;
  void* excluded_object = nullptr;
  /// What was written; without it the value is read when the event is told.
  std::optional<Float32> value = std::nullopt;
  /// How many events were sent to the listener before; those sent before a registration are not for it.
  std::uint64_t ticket = 0;
};

/// Whether both are the same type of event of the same parameter or property.
bool same_subject(const AudioUnitEvent& a, const AudioUnitEvent& b);

/// What a listener will be told in its next round, in the order in which it occurred.
///
/// A value change that follows the one before of the same parameter by less than the granularity replaces it,
/// unless a gesture of that parameter or a property change of its unit lies between. The one before may
/// itself have replaced another, so changes in quick succession leave only their last.
class PendingEvents {
 public:
  /// From so many on every value change replaces the one before, however long ago that was: nobody has turned
  /// the loop for a while, and what waits for it must not grow for ever.
  static constexpr std::size_t crowd = 1000;

  /// `granularity` in seconds.
  explicit PendingEvents(double granularity) : granularity_(granularity) {}

  void add(const SentEvent& event);
  bool empty() const { return events_.empty(); }
  /// The time of the first event added since the last take(), be it replaced or not; +infinity for none.
  double firstTime() const { return first_time_; }
  std::vector<SentEvent> take();

 private:
  std::vector<SentEvent> events_;
  double granularity_;
  double first_time_ = std::numeric_limits<double>::infinity();
};

}  // namespace cocoa
