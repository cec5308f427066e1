// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>

namespace ondex {

/// Tells what a host says of one parameter because somebody else changed it from what it says because we did.
///
/// Hosts answer our writes at once, some ticks of theirs later, rounded, or never. A value that we have
/// written a short time ago is such an answer: it must not reach the editor, which may be further on by then.
/// What looks like an answer to a write before our last one may yet be somebody's wish, so it is kept and
/// let through when it turns out to be the host's last word. Times are in seconds of any one clock.
class EchoFilter {
 public:
  /// `span` of the parameter's range. Answers come within `memory`.
  explicit EchoFilter(double span = 1, double memory = default_memory) : span_(span), memory_(memory) {}

  void wrote(float value, double now);
  /// The host says the value; it comes back when it is for the editor. Nothing is while the user has hold of
  /// the parameter: `held`.
  std::optional<float> heard(float value, double now, bool held);
  /// What was kept, when its time has come.
  std::optional<float> settled(double now, bool held);

  static constexpr double default_memory = 1.0;
  /// How long the host must have been silent for its last word to count.
  static constexpr double silence = 0.4;
  /// Rounding that is taken for an answer, of the span: that of hosts that keep seven bits is half of it.
  static constexpr double tolerance = 1.0 / 127;

 private:
  struct Write {
    float value;
    double time;
  };
  bool matches(const Write& write, float value) const;

  double span_;
  double memory_;
  /// The last ones, in a circle: a drag makes more than an answer is ever late.
  std::array<Write, 128> writes_ = {};
  size_t count_ = 0;  ///< of all writes; the last one is at count_ - 1, modulo the size
  std::optional<float> kept_;
  double last_news_ = 0;  ///< when we wrote or the host spoke
};

}  // namespace ondex
