// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numbers>

#include "model.h"
#include "plugin.h"

namespace ondex::test {
namespace {

constexpr double rate = 48000;
constexpr size_t ramp_frames = 960;  ///< 20 ms
constexpr double pi = std::numbers::pi;

/// The largest step from one sample to the next.
double largest_step(const std::vector<float>& samples) {
  double largest = 0;
  for (size_t i = 1; i < samples.size(); ++i)
    largest = std::max(largest, std::abs(double{samples[i]} - double{samples[i - 1]}));
  return largest;
}

void append(std::vector<float>& to, const std::vector<float>& samples) {
  to.insert(to.end(), samples.begin(), samples.end());
}

/// The gains of the left side while `before` changes to `after` once, from 1000 frames before on.
std::vector<float> gains_across(const Controls& before, const Controls& after) {
  Plugin plugin(rate, before);
  std::vector<float> gains = plugin.run(constant(1000, 1)).left;
  plugin.controls = after;
  append(gains, plugin.run(constant(ramp_frames + 1000, 1)).left);
  return gains;
}

TEST(EffectChange, OfTheDepthReachesItInAStraightLineWithin20Ms) {
  // At rest w = 0, so that the gain is 1 - depth/2.
  const std::vector<float> gains = gains_across({0, 0, 0, 0, 0, 0, 0}, {0, 0, 1, 0, 0, 0, 0});
  EXPECT_EQ(gains[999], 1);
  EXPECT_NEAR(gains[1000 + ramp_frames / 4], 0.875, 1e-3);
  EXPECT_NEAR(gains[1000 + ramp_frames / 2], 0.75, 1e-3);
  EXPECT_EQ(gains[1000 + ramp_frames], 0.5F);
  EXPECT_EQ(gains.back(), 0.5F);
  EXPECT_TRUE(std::ranges::is_sorted(gains, std::greater()));
}

TEST(EffectChange, Takes20MsAtOtherSampleRatesToo) {
  for (const size_t frames_a_second : {8000U, 384000U}) {
    Plugin plugin(static_cast<double>(frames_a_second), {0, 0, 0, 0, 0, 0, 0});
    plugin.run(constant(1, 1));
    plugin.controls[depth] = 1;
    const std::vector<float> gains = plugin.run(constant(frames_a_second / 25, 1)).left;
    EXPECT_NEAR(gains[frames_a_second / 100], 0.75, 4e-3);
    EXPECT_GT(gains[frames_a_second / 50 - 2], 0.5F);
    EXPECT_EQ(gains[frames_a_second / 50], 0.5F);
  }
}

// With the depth at most 1 the gain moves at most half as fast as w, and w as its phases:
// |w'| <= x' + m y' + |m'|, here in radians a frame.
TEST(EffectChange, OfTheDepthIsNoClick) {
  const double oscillation = 2 * pi * 5 / rate / 2;
  const double ramp = 1.0 / ramp_frames;
  EXPECT_LE(largest_step(gains_across({5, 0, 0, 0, 0, 0, 0}, {5, 0, 1, 0, 0, 0, 0})), oscillation + ramp);
  EXPECT_LE(largest_step(gains_across({5, 0, 1, 0, 0, 0, 0}, {5, 0, 0, 0, 0, 0, 0})), oscillation + ramp);
}

TEST(EffectChange, OfTheIndexIsNoClick) {
  const double x = 2 * pi * 5 / rate;
  const double steepest = (x + 20 * (2 * x) + 20.0 / ramp_frames) / 2;
  EXPECT_LE(largest_step(gains_across({5, 0, 1, 2, 0, 0, 0}, {5, 0, 1, 2, 20, 0, 0})), steepest);
  EXPECT_LE(largest_step(gains_across({5, 0, 1, 2, 20, 0, 0}, {5, 0, 1, 2, 0, 0, 0})), steepest);
}

TEST(EffectChange, OfTheFactorGoesOnFromTheSamePhase) {
  const double x = 2 * pi * 5 / rate;
  const double steepest = (x + 10 * (20 * x)) / 2;
  EXPECT_LE(largest_step(gains_across({5, 0, 1, 0, 10, 0, 0}, {5, 0, 1, 20, 10, 0, 0})), steepest + 1e-6);
  EXPECT_LE(largest_step(gains_across({5, 0, 1, 20, 10, 0, 0}, {5, 0, 1, 0, 10, 0, 0})), steepest + 1e-6);
  // Fractions, late in a run, where the factor times x would have jumped by thousands of turns.
  Plugin plugin(rate, {20, 0, 1, 1.5F, 10, 0, 0});
  std::vector<float> gains;
  for (int second = 0; second < 60; ++second)
    gains = plugin.run(constant(48000, 1)).left;
  plugin.controls[left_factor] = 1.7F;
  append(gains, plugin.run(constant(48000, 1)).left);
  EXPECT_LE(largest_step(gains), 2 * pi * 20 / rate * (1 + 10 * 1.7) / 2 + 1e-6);
}

TEST(EffectChange, OfTheRateGoesOnFromTheSamePhase) {
  const double steepest = 2 * pi * 20 / rate / 2;
  EXPECT_LE(largest_step(gains_across({0.5F, 0, 1, 0, 0, 0, 0}, {20, 0, 1, 0, 0, 0, 0})), steepest + 1e-6);
  EXPECT_LE(largest_step(gains_across({20, 0, 1, 0, 0, 0, 0}, {0.5F, 0, 1, 0, 0, 0, 0})), steepest + 1e-6);
}

TEST(EffectChange, OfEverythingAtOnceAndAgainBeforeItIsReachedIsNoClick) {
  const Controls low = {0, 0, 0, 0, 0, 0, 0};
  const Controls high = {20, 20, 1, 20, 20, 20, 20};
  Plugin plugin(rate, low);
  std::vector<float> gains;
  for (const size_t frames : {1U, 3U, 64U, 100U, 500U, 960U, 961U, 17U, 2000U, 5U}) {
    plugin.controls = plugin.controls == low ? high : low;
    append(gains, plugin.run(constant(frames, 1)).left);
  }
  const double x = 2 * pi * 20 / rate;
  EXPECT_LE(largest_step(gains), (x + 20 * 20 * x + 20.0 / ramp_frames) / 2 + 1.0 / ramp_frames);
}

TEST(EffectChange, EndsAtExactlyTheNewSettings) {
  // From rest, where both phases stay 0, on to settings whose formula can be followed from there.
  Plugin plugin(rate, {0, 0, 0.2F, 0, 3, 0, 0});
  plugin.run(constant(100, 1));
  plugin.controls = {0, 0, 0.7F, 4, 5, 0, 0};
  plugin.run(constant(ramp_frames, 1));
  EXPECT_EQ(plugin.run(constant(100, 1)), constant(100, 1 - 0.7F / 2));
}

TEST(EffectChange, BeforeTheFirstFrameIsInForceAtOnce) {
  Plugin plugin(rate, {0, 0, 0, 0, 0, 0, 0});
  plugin.run(constant(0, 1));
  plugin.controls[depth] = 1;
  EXPECT_EQ(plugin.run(constant(10, 1)), constant(10, 0.5F));
}

TEST(EffectChange, WhileItIsNotActiveIsInForceAtOnce) {
  Plugin plugin(rate, {5, 5, 0, 1, 1, 1, 1});
  plugin.run(constant(1000, 1));
  plugin.controls = {0, 0, 1, 0, 0, 0, 0};
  plugin.reactivate();
  EXPECT_EQ(plugin.run(constant(10, 1)), constant(10, 0.5F));
}

TEST(EffectBypass, LetsEveryBitPassAtDepth0) {
  Plugin plugin(rate, {5, 6, 0, 2, 3, 1, 2});
  Stereo sound = noise(1000, 4);
  using Limits = std::numeric_limits<float>;
  sound.left[1] = Limits::quiet_NaN();
  sound.left[2] = std::bit_cast<float>(0x7f812345U);  // a signalling NaN
  sound.left[3] = Limits::denorm_min();
  sound.left[4] = -0.0F;
  sound.left[5] = Limits::infinity();
  sound.right[6] = -Limits::denorm_min();
  sound.right[7] = -Limits::infinity();
  sound.right[8] = Limits::max();
  const Stereo output = plugin.run(sound);
  EXPECT_EQ(bits(output.left), bits(sound.left));
  EXPECT_EQ(bits(output.right), bits(sound.right));
}

TEST(EffectBypass, IsExactOnceTheDepthHasComeDownTo0) {
  Plugin plugin(rate, {5, 6, 0.9F, 2, 3, 1, 2});
  plugin.run(noise(777, 5));
  plugin.controls[depth] = 0;
  plugin.run(noise(ramp_frames, 6));
  const Stereo sound = noise(1000, 7);
  EXPECT_EQ(plugin.run(sound), sound);
}

TEST(EffectBypass, IsExactInPlace) {
  Plugin plugin(rate, {5, 6, 0, 2, 3, 1, 2});
  const Stereo sound = noise(1000, 8);
  Stereo buffer = sound;
  plugin.run(buffer.left.data(), buffer.right.data(), buffer.left.data(), buffer.right.data(), 1000);
  EXPECT_EQ(buffer, sound);
}

TEST(EffectBypass, LeavesTheOscillatorsRunning) {
  const Controls controls = {5, 6, 0.9F, 2, 3, 1, 2};
  Plugin plugin(rate, controls);
  plugin.run(constant(1000, 1));
  plugin.controls[depth] = 0;
  plugin.run(constant(5000, 1));
  plugin.controls[depth] = controls[depth];
  plugin.run(constant(ramp_frames, 1));
  const Stereo output = plugin.run(constant(100, 1));
  for (size_t i = 0; i < 100; ++i)
    EXPECT_NEAR(output.left[i], model_gain({5, 2, 3}, double{0.9F}, rate, 6000 + ramp_frames + i), 1e-7);
}

}  // namespace
}  // namespace ondex::test
