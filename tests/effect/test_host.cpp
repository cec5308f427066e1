// SPDX-License-Identifier: MIT
// What hosts do with blocks, buffers, ports and instances.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <span>

#include "plugin.h"

namespace ondex::test {
namespace {

constexpr Controls lively = {5, 6, 0.9F, 2, 3, 1, 2};

/// Runs a sound in blocks of `next_size()` frames.
Stereo run_in_blocks(Plugin& plugin, const Stereo& sound, auto&& next_size) {
  Stereo output = constant(sound.left.size(), 0);
  size_t done = 0;
  while (done < sound.left.size()) {
    const size_t frames = std::min<size_t>(next_size(), sound.left.size() - done);
    plugin.run(sound.left.data() + done, sound.right.data() + done, output.left.data() + done,
               output.right.data() + done, static_cast<uint32_t>(frames));
    done += frames;
  }
  return output;
}

/// An instance in the middle of a change, so that every ramp moves.
struct ChangingPlugin : Plugin {
  ChangingPlugin() : Plugin(48000, lively) {
    run(noise(100, 1));
    controls = {7, 3, 0.4F, 9, 12, 3, 4};
  }
};

TEST(EffectBlocks, MakeNoDifferenceHoweverTheyAreCut) {
  const Stereo sound = noise(20000, 2);
  const Stereo whole = ChangingPlugin().run(sound);
  for (const size_t size : {1U, 2U, 3U, 7U, 64U, 127U, 1024U, 8191U}) {
    ChangingPlugin plugin;
    EXPECT_EQ(run_in_blocks(plugin, sound, [size] { return size; }), whole) << "blocks of " << size;
  }
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  ChangingPlugin plugin;
  EXPECT_EQ(run_in_blocks(plugin, sound, [&random] { return random() % 300; }), whole);
}

TEST(EffectBlocks, MayBeEmpty) {
  const Stereo sound = noise(100, 3);
  ChangingPlugin plugin;
  plugin.run(nullptr, nullptr, nullptr, nullptr, 0);
  plugin.run(sound.left.data(), sound.right.data(), nullptr, nullptr, 0);
  EXPECT_EQ(plugin.run(sound), ChangingPlugin().run(sound));
}

TEST(EffectBlocks, MayBeHuge) {
  constexpr size_t frames = 4 << 20;
  Plugin plugin(48000, lively);
  const Stereo output = plugin.run(constant(frames, 1));
  EXPECT_LE(std::ranges::max(output.left), 1);
  EXPECT_GE(std::ranges::min(output.left), 0.1F - 1e-6F);
}

TEST(EffectBlocks, TouchNothingBeyondTheirFrames) {
  Stereo sound = noise(100, 4);
  Stereo output = constant(100, 42);
  Plugin plugin(48000, lively);
  plugin.run(sound.left.data(), sound.right.data(), output.left.data(), output.right.data(), 63);
  EXPECT_EQ(sound, noise(100, 4));
  EXPECT_TRUE(std::ranges::all_of(std::span(output.left).subspan(63), [](float s) { return s == 42; }));
  EXPECT_TRUE(std::ranges::all_of(std::span(output.right).subspan(63), [](float s) { return s == 42; }));
}

TEST(EffectBuffers, MayBeTheSameForInputAndOutput) {
  const Stereo sound = noise(5000, 5);
  const Stereo expected = ChangingPlugin().run(sound);
  Stereo buffer = sound;
  ChangingPlugin().Plugin::run(buffer.left.data(), buffer.right.data(), buffer.left.data(),
                               buffer.right.data(), 5000);
  EXPECT_EQ(buffer, expected);
}

TEST(EffectBuffers, MayBeCrossed) {
  for (const float depth_value : {0.0F, 0.4F}) {
    const Stereo sound = noise(5000, 6);
    Controls controls = lively;
    controls[depth] = depth_value;
    const Stereo expected = Plugin(48000, controls).run(sound);
    Stereo buffer = sound;
    Plugin(48000, controls)
        .run(buffer.left.data(), buffer.right.data(), buffer.right.data(), buffer.left.data(), 5000);
    EXPECT_EQ(buffer.right, expected.left);
    EXPECT_EQ(buffer.left, expected.right);
  }
}

TEST(EffectBuffers, MayBeOneForBothInputs) {
  const Stereo sound = noise(5000, 7);
  const Stereo expected = Plugin(48000, lively).run({sound.left, sound.left});
  Stereo output = constant(5000, 0);
  Plugin(48000, lively)
      .run(sound.left.data(), sound.left.data(), output.left.data(), output.right.data(), 5000);
  EXPECT_EQ(output, expected);
}

TEST(EffectSamples, ThatAreNotNumbersDoNoLastingHarm) {
  Plugin plugin(48000, lively);
  Stereo sound = constant(100, 1);
  sound.left[10] = std::numeric_limits<float>::quiet_NaN();
  sound.right[20] = std::numeric_limits<float>::infinity();
  Stereo output = plugin.run(sound);
  EXPECT_TRUE(std::isnan(output.left[10]));
  const Stereo expected = Plugin(48000, lively).run(constant(100, 1));
  output.left[10] = expected.left[10];
  output.right[20] = expected.right[20];
  EXPECT_EQ(output, expected);
}

TEST(EffectSamples, AsSmallAsTheyGetAreMultipliedLikeAnyOther) {
  // 100 steps of the smallest float, at rest and at full depth: half of them.
  const float smallest = std::numeric_limits<float>::denorm_min();
  Plugin plugin(48000, {0, 0, 1, 0, 0, 0, 0});
  EXPECT_EQ(plugin.run(constant(10, 100 * smallest)), constant(10, 50 * smallest));
}

TEST(EffectControls, OutOfRangeCountAsTheNearestEnd) {
  const Stereo sound = noise(5000, 8);
  EXPECT_EQ(Plugin(48000, {21, 1e30F, 7, 1e9F, 20.001F, 99, 1000}).run(sound),
            Plugin(48000, {20, 20, 1, 20, 20, 20, 20}).run(sound));
  EXPECT_EQ(Plugin(48000, {-1, -1e30F, 1, -3, -0.0F, -1e-30F, -20}).run(sound),
            Plugin(48000, {0, 0, 1, 0, 0, 0, 0}).run(sound));
  EXPECT_EQ(Plugin(48000, {5, 5, -0.1F, 1, 1, 1, 1}).run(sound), sound);
  constexpr float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(Plugin(48000, {infinity, -infinity, infinity, 2, 2, infinity, infinity}).run(sound),
            Plugin(48000, {20, 0, 1, 2, 2, 20, 20}).run(sound));
}

TEST(EffectControls, ThatAreNotNumbersCountAsTheMinimum) {
  const Stereo sound = noise(5000, 9);
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(Plugin(48000, {nan, nan, 0.5F, nan, nan, nan, nan}).run(sound),
            Plugin(48000, {0, 0, 0.5F, 0, 0, 0, 0}).run(sound));
  EXPECT_EQ(Plugin(48000, {5, 5, nan, 1, 1, 1, 1}).run(sound), sound);
}

TEST(EffectControls, ThatWereNotNumbersLeaveNothingBehind) {
  Plugin plugin(48000, lively);
  plugin.run(constant(100, 1));
  plugin.controls.fill(std::numeric_limits<float>::quiet_NaN());
  plugin.run(constant(2000, 1));
  plugin.controls = lively;
  for (const float sample : plugin.run(constant(5000, 1)).left) {
    ASSERT_GE(sample, 0.1F - 1e-6F);
    ASSERT_LE(sample, 1);
  }
}

TEST(EffectPorts, MayStayUnconnected) {
  const LV2_Handle handle = descriptor().instantiate(&descriptor(), 48000, "", nullptr);
  descriptor().activate(handle);
  descriptor().run(handle, 100);  // Nothing to read and nowhere to write.

  Stereo sound = constant(100, 1);
  for (uint32_t port = 0; port < 4; ++port)
    descriptor().connect_port(handle, port, port % 2 == 0 ? sound.left.data() : sound.right.data());
  for (uint32_t port = 4; port < 11; ++port)
    descriptor().connect_port(handle, port, nullptr);
  descriptor().run(handle, 100);
  EXPECT_EQ(sound, constant(100, 0.75F));  // at the defaults

  descriptor().connect_port(handle, 3, nullptr);
  descriptor().run(handle, 100);
  EXPECT_EQ(sound, constant(100, 0.75F));
  descriptor().cleanup(handle);
}

TEST(EffectPorts, ThatDoNotExistAreIgnored) {
  Plugin plugin;
  float nothing = 42;
  descriptor().connect_port(plugin.handle(), 11, &nothing);
  descriptor().connect_port(plugin.handle(), UINT32_MAX, &nothing);
  EXPECT_EQ(plugin.run(constant(100, 1)), constant(100, 0.75F));
  EXPECT_EQ(nothing, 42);
}

TEST(EffectPorts, MayBeConnectedAnewBetweenBlocks) {
  Plugin plugin(48000, {0, 0, 0, 0, 0, 0, 0});
  plugin.run(constant(100, 1));
  const float full = 1;
  descriptor().connect_port(plugin.handle(), first_control + depth, const_cast<float*>(&full));
  plugin.run(constant(1000, 1));
  EXPECT_EQ(plugin.run(constant(100, 1)), constant(100, 0.5F));
}

TEST(EffectInstance, StartsFromPhase0WheneverItIsActivated) {
  Plugin plugin(48000, lively);
  const Stereo sound = noise(5000, 10);
  const Stereo first = plugin.run(sound);
  EXPECT_NE(plugin.run(sound), first);
  plugin.reactivate();
  EXPECT_EQ(plugin.run(sound), first);
}

TEST(EffectInstance, KnowsNothingOfOthers) {
  const Stereo sound = noise(1000, 11);
  const Stereo expected = Plugin(48000, lively).run(sound);
  Plugin one(48000, lively);
  Plugin other(96000, {1, 2, 0.3F, 4, 5, 6, 7});
  Stereo output = constant(1000, 0);
  for (size_t i = 0; i < 1000; i += 100) {
    one.run(&sound.left[i], &sound.right[i], &output.left[i], &output.right[i], 100);
    other.run(noise(50, 12));
  }
  EXPECT_EQ(output, expected);
}

TEST(EffectInstance, IsRefusedAtSampleRatesThatAreNone) {
  using Limits = std::numeric_limits<double>;
  for (const double rate : {0.0, -48000.0, 1.0, 999.0, 1e8, Limits::infinity(), Limits::quiet_NaN()})
    EXPECT_EQ(descriptor().instantiate(&descriptor(), rate, "", nullptr), nullptr) << rate;
}

TEST(EffectDescriptor, IsTheFirstAndOnlyOne) {
  EXPECT_STREQ(descriptor().URI, "urn:kelvane:ondex");
  EXPECT_EQ(descriptor().extension_data("http://lv2plug.in/ns/ext/state#interface"), nullptr);
}

}  // namespace
}  // namespace ondex::test
