// SPDX-License-Identifier: MIT
#include "lv2_ui/echo_filter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ondex {

void EchoFilter::wrote(float value, double now) {
  writes_[count_++ % writes_.size()] = {value, now};
  last_news_ = now;
  // Whatever the host said before, this is what it will say next.
  kept_.reset();
}

bool EchoFilter::matches(const Write& write, float value) const {
  const double distance = std::abs(static_cast<double>(write.value) - static_cast<double>(value));
  return distance <= tolerance / 2 * span_;
}

std::optional<float> EchoFilter::heard(float value, double now, bool held) {
  last_news_ = now;
  kept_.reset();
  const size_t remembered = std::min(count_, writes_.size());
  for (size_t back = 1; back <= remembered; ++back) {
    const Write& write = writes_[(count_ - back) % writes_.size()];
    if (now - write.time > memory_)
      break;
    if (!matches(write, value))
      continue;
    if (back > 1)
      kept_ = value;
    return std::nullopt;
  }
  if (!held)
    return value;
  kept_ = value;
  return std::nullopt;
}

std::optional<float> EchoFilter::settled(double now, bool held) {
  if (!kept_ || held || now - last_news_ < silence)
    return std::nullopt;
  return std::exchange(kept_, std::nullopt);
}

}  // namespace ondex
