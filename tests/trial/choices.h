// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ondex::trial {

/// Bytes that decide what happens in a trial. When they are used up everything decided is 0.
class Choices {
 public:
  explicit Choices(std::span<const uint8_t> bytes) : bytes_(bytes) {}

  bool any() const { return !bytes_.empty(); }
  /// 0 to `count` - 1; `count` is from 1 to 256.
  unsigned below(unsigned count) { return next() % count; }
  /// True one time of `count`.
  bool oneOf(unsigned count) { return below(count) == count - 1; }
  /// 0 to 1.
  double share() { return static_cast<double>(next()) / 255; }

 private:
  unsigned next() {
    if (bytes_.empty())
      return 0;
    const unsigned byte = bytes_.front();
    bytes_ = bytes_.subspan(1);
    return byte;
  }

  std::span<const uint8_t> bytes_;
};

/// As many bytes as a seed says, the same ones on every machine.
inline std::vector<uint8_t> bytes_of_seed(uint64_t seed) {
  // SplitMix64.
  const auto next = [&seed] {
    seed += 0x9E3779B97F4A7C15;
    uint64_t bits = seed;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EB;
    return bits ^ (bits >> 31);
  };
  constexpr uint64_t shortest = 40;
  constexpr uint64_t longest = 640;
  std::vector<uint8_t> bytes(static_cast<size_t>(shortest + next() % (longest - shortest)));
  for (uint8_t& byte : bytes)
    byte = static_cast<uint8_t>(next() >> 56);
  return bytes;
}

}  // namespace ondex::trial
