// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "model.h"
#include "plugin.h"

namespace ondex::test {
namespace {

// A sample of 1 rounded to float is off by 6e-8 at most; the rest is room for the sine's own rounding.
constexpr double tolerance = 1e-7;

ModelSide left_side(const Controls& c) {
  return {c[left_rate], c[left_factor], c[left_index]};
}
ModelSide right_side(const Controls& c) {
  return {c[right_rate], c[right_factor], c[right_index]};
}

/// Runs samples of 1 and compares the first `frames` frames with the formula.
void expect_formula(double sample_rate, const Controls& controls, size_t frames) {
  Plugin plugin(sample_rate, controls);
  const Stereo output = plugin.run(constant(frames, 1));
  for (size_t i = 0; i < frames; ++i) {
    const double left = model_gain(left_side(controls), controls[depth], sample_rate, i);
    const double right = model_gain(right_side(controls), controls[depth], sample_rate, i);
    ASSERT_NEAR(output.left[i], left, tolerance) << "frame " << i << " at " << sample_rate << " Hz";
    ASSERT_NEAR(output.right[i], right, tolerance) << "frame " << i << " at " << sample_rate << " Hz";
  }
}

TEST(EffectWaveform, IsAPlainSineWithoutModulation) {
  Plugin plugin(8000, {1, 2, 1, 0, 0, 0, 0});
  const Stereo output = plugin.run(constant(8000, 1));
  // At 1 Hz the quarters of the turn are at frames 0, 2000, 4000 and 6000: w = 0, 1, 0, -1.
  EXPECT_NEAR(output.left[0], 0.5, tolerance);
  EXPECT_NEAR(output.left[2000], 1, tolerance);
  EXPECT_NEAR(output.left[4000], 0.5, tolerance);
  EXPECT_NEAR(output.left[6000], 0, tolerance);
  // At 2 Hz they come at twice the pace.
  EXPECT_NEAR(output.right[1000], 1, tolerance);
  EXPECT_NEAR(output.right[3000], 0, tolerance);
  EXPECT_NEAR(output.right[7000], 0, tolerance);
}

TEST(EffectWaveform, PushesThePhaseByTheModulator) {
  Plugin plugin(8000, {1, 1, 1, 1, 1, 2, 3});
  const Stereo output = plugin.run(constant(8000, 1));
  // x = pi/2: sin(pi/2 + 1 sin(pi/2)) = cos 1 = 0.5403023.
  EXPECT_NEAR(output.left[2000], (1 + 0.5403023058681398) / 2, tolerance);
  // x = pi/4: sin(pi/4 + 3 sin(pi/2)) = sin(3.7853981) = -0.6002435.
  EXPECT_NEAR(output.right[1000], (1 - 0.6002434930097427) / 2, tolerance);
}

TEST(EffectWaveform, LowersTheSoundAtRestByHalfTheDepth) {
  Plugin plugin;
  const Stereo output = plugin.run(constant(100, 1));
  EXPECT_EQ(output, constant(100, 0.75F));
}

TEST(EffectWaveform, KeepsTheGainBetweenOneLessDepthAndOne) {
  Plugin plugin(48000, {20, 13, 0.75F, 20, 20, 3, 7});
  const Stereo output = plugin.run(constant(48000, 1));
  EXPECT_FLOAT_EQ(std::ranges::min(output.left), 0.25F);
  EXPECT_FLOAT_EQ(std::ranges::max(output.left), 1);
  EXPECT_LE(std::ranges::max(output.right), 1);
  EXPECT_GE(std::ranges::min(output.right), 0.25F);
}

TEST(EffectWaveform, FollowsTheFormulaAtEverySampleRate) {
  for (const double sample_rate : {8000.0, 22050.0, 44100.0, 48000.0, 96000.0, 192000.0, 384000.0})
    expect_formula(sample_rate, {5.5F, 0.3F, 0.8F, 2.5F, 3, 0.1F, 12}, 50000);
}

TEST(EffectWaveform, FollowsTheFormulaAtTheEndsOfTheRanges) {
  expect_formula(48000, {20, 20, 1, 20, 20, 20, 20}, 100000);
  expect_formula(48000, {20, 0, 1, 0, 20, 20, 20}, 100000);
  expect_formula(8000, {20, 20, 1, 20, 20, 0, 0}, 100000);
}

TEST(EffectWaveform, FollowsTheFormulaAtAnySetting) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> to_20(0, 20);
  std::uniform_real_distribution<float> to_1(0, 1);
  for (int i = 0; i < 50; ++i) {
    expect_formula(44100,
                   {to_20(random), to_20(random), to_1(random), to_20(random), to_20(random), to_20(random),
                    to_20(random)},
                   3000);
  }
}

TEST(EffectWaveform, IsWhereTheFormulaIsAfterAnHour) {
  constexpr double sample_rate = 8000;
  constexpr uint64_t hour = uint64_t{3600} * 8000;
  const Controls controls = {19.7F, 0.013F, 1, 17.3F, 20, 19.1F, 20};
  Plugin plugin(sample_rate, controls);
  // The plug-in passes the hour at depth 0, where it has less to do; its phases go on all the same.
  plugin.controls[depth] = 0;
  Stereo block = constant(8000, 1);
  for (uint64_t done = 0; done < hour; done += 8000)
    block = plugin.run(block);
  ASSERT_EQ(block, constant(8000, 1));

  plugin.controls[depth] = 1;
  plugin.run(constant(8000, 1));
  const Stereo output = plugin.run(constant(8000, 1));
  for (size_t i = 0; i < 8000; ++i) {
    ASSERT_NEAR(output.left[i], model_gain(left_side(controls), 1, sample_rate, hour + 8000 + i), tolerance);
    ASSERT_NEAR(output.right[i], model_gain(right_side(controls), 1, sample_rate, hour + 8000 + i),
                tolerance);
  }
}

TEST(EffectWaveform, KeepsTheSidesApart) {
  const Stereo sound = noise(10000, 1);
  Plugin plugin(48000, {3, 4, 0.9F, 1, 2, 3, 4});
  const Stereo both = plugin.run(sound);
  Plugin left_only(48000, {3, 0, 0.9F, 1, 2, 0, 0});
  EXPECT_EQ(left_only.run({sound.left, noise(10000, 2).right}).left, both.left);
  Plugin right_only(48000, {0, 4, 0.9F, 0, 0, 3, 4});
  EXPECT_EQ(right_only.run({noise(10000, 2).left, sound.right}).right, both.right);
}

TEST(EffectWaveform, MultipliesWhateverSoundThereIs) {
  const Controls controls = {6, 7, 0.6F, 2, 1, 3, 2};
  const Stereo sound = noise(10000, 3);
  Plugin plugin(44100, controls);
  const Stereo output = plugin.run(sound);
  for (size_t i = 0; i < 10000; ++i) {
    ASSERT_NEAR(output.left[i], sound.left[i] * model_gain(left_side(controls), controls[depth], 44100, i),
                tolerance);
    ASSERT_NEAR(output.right[i], sound.right[i] * model_gain(right_side(controls), controls[depth], 44100, i),
                tolerance);
  }
}

}  // namespace
}  // namespace ondex::test
