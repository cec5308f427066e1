// SPDX-License-Identifier: MIT
#pragma once

#include <lv2/core/lv2.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ondex::test {

inline constexpr uint32_t first_control = 4;
inline constexpr uint32_t control_count = 7;

/// Values for the control ports 4 to 10, in their order.
using Controls = std::array<float, control_count>;
inline constexpr Controls default_controls = {0, 0, 0.5F, 0, 0, 0, 0};
enum Control : size_t { left_rate, right_rate, depth, left_factor, left_index, right_factor, right_index };

/// The plug-in's descriptor, from its shared object as a host loads it.
const LV2_Descriptor& descriptor();

struct Stereo {
  std::vector<float> left;
  std::vector<float> right;
  bool operator==(const Stereo&) const = default;
};

/// The same sample on both sides.
Stereo constant(size_t frames, float sample);
/// Sounds of the whole range, different on each side.
Stereo noise(size_t frames, unsigned seed);
/// The bits of the samples, for comparisons that tell one NaN from another and 0 from -0.
std::vector<uint32_t> bits(const std::vector<float>& samples);

/// An active instance of the plug-in with its controls connected.
class Plugin {
 public:
  explicit Plugin(double sample_rate = 48000, const Controls& initial = default_controls);
  ~Plugin();
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;

  /// Connects ports 0 to 3 and runs.
  void run(const float* left_in, const float* right_in, float* left_out, float* right_out, uint32_t frames);
  /// Runs the whole sound in one block.
  Stereo run(const Stereo& input);
  void reactivate();

  LV2_Handle handle() const { return handle_; }
  Controls controls;

 private:
  LV2_Handle handle_;
};

}  // namespace ondex::test
