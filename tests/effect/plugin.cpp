// SPDX-License-Identifier: MIT
#include "plugin.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <bit>
#include <random>

namespace ondex::test {

const LV2_Descriptor& descriptor() {
  static const LV2_Descriptor* const loaded = [] {
    void* object = dlopen(ONDEX_EFFECT, RTLD_NOW | RTLD_LOCAL);
    EXPECT_NE(object, nullptr) << dlerror();
    const auto entry = reinterpret_cast<LV2_Descriptor_Function>(dlsym(object, "lv2_descriptor"));
    return entry(0);
  }();
  return *loaded;
}

Stereo constant(size_t frames, float sample) {
  return {std::vector(frames, sample), std::vector(frames, sample)};
}

Stereo noise(size_t frames, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> sample(-1, 1);
  Stereo sound = constant(frames, 0);
  for (size_t i = 0; i < frames; ++i) {
    sound.left[i] = sample(random);
    sound.right[i] = sample(random);
  }
  return sound;
}

std::vector<uint32_t> bits(const std::vector<float>& samples) {
  std::vector<uint32_t> result;
  for (const float& sample : samples)
    result.push_back(std::bit_cast<uint32_t>(sample));
  return result;
}

Plugin::Plugin(double sample_rate, const Controls& initial)
    : controls(initial), handle_(descriptor().instantiate(&descriptor(), sample_rate, "", nullptr)) {
  EXPECT_NE(handle_, nullptr);
  for (uint32_t i = 0; i < control_count; ++i)
    descriptor().connect_port(handle_, first_control + i, &controls[i]);
  descriptor().activate(handle_);
}

Plugin::~Plugin() {
  descriptor().deactivate(handle_);
  descriptor().cleanup(handle_);
}

void Plugin::run(const float* left_in, const float* right_in, float* left_out, float* right_out,
                 uint32_t frames) {
  descriptor().connect_port(handle_, 0, const_cast<float*>(left_in));
  descriptor().connect_port(handle_, 1, const_cast<float*>(right_in));
  descriptor().connect_port(handle_, 2, left_out);
  descriptor().connect_port(handle_, 3, right_out);
  descriptor().run(handle_, frames);
}

Stereo Plugin::run(const Stereo& input) {
  Stereo output = constant(input.left.size(), 0);
  run(input.left.data(), input.right.data(), output.left.data(), output.right.data(),
      static_cast<uint32_t>(input.left.size()));
  return output;
}

void Plugin::reactivate() {
  descriptor().deactivate(handle_);
  descriptor().activate(handle_);
}

}  // namespace ondex::test
