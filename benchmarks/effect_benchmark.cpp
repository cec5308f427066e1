// SPDX-License-Identifier: MIT
// What the effect costs a host: blocks of 64 and 1024 frames at 48 kHz, in each state that differs in its
// work.

#include <benchmark/benchmark.h>

#include <vector>

#include "effect/tremolo.h"

namespace ondex {
namespace {

constexpr double sample_rate = 48000;

constexpr ParameterValues modulated = {5, 7, 0.8F, 2, 3, 1.5F, 4};
constexpr ParameterValues unmodulated = {5, 7, 0.8F, 0, 0, 0, 0};
constexpr ParameterValues bypassed = {5, 7, 0, 2, 3, 1.5F, 4};

/// Processes blocks of the benchmark's length, with `parameters` and `others` in turn.
void run_blocks(benchmark::State& state, const ParameterValues& parameters, const ParameterValues& others,
                float sample) {
  const auto frames = static_cast<uint32_t>(state.range(0));
  const std::vector<float> input(frames, sample);
  std::vector<float> left(frames);
  std::vector<float> right(frames);
  Tremolo tremolo(sample_rate);
  bool other = false;
  for ([[maybe_unused]] auto _ : state) {
    tremolo.process(other ? others : parameters, {input.data(), input.data()}, {left.data(), right.data()},
                    frames);
    benchmark::ClobberMemory();
    other = !other;
  }
  const double frames_done = static_cast<double>(state.iterations()) * frames;
  state.counters["seconds a second"] = benchmark::Counter(
      frames_done / sample_rate, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void modulated_block(benchmark::State& state) {
  run_blocks(state, modulated, modulated, 0.5F);
}

void unmodulated_block(benchmark::State& state) {
  run_blocks(state, unmodulated, unmodulated, 0.5F);
}

void automated_block(benchmark::State& state) {
  run_blocks(state, modulated, {6, 8, 0.7F, 3, 4, 2.5F, 5}, 0.5F);
}

void bypassed_block(benchmark::State& state) {
  run_blocks(state, bypassed, bypassed, 0.5F);
}

/// The last of a sound that dies away upstream.
void denormal_block(benchmark::State& state) {
  run_blocks(state, modulated, modulated, 1e-40F);
}

BENCHMARK(modulated_block)->Arg(64)->Arg(1024);
BENCHMARK(unmodulated_block)->Arg(64)->Arg(1024);
BENCHMARK(automated_block)->Arg(64)->Arg(1024);
BENCHMARK(bypassed_block)->Arg(64)->Arg(1024);
BENCHMARK(denormal_block)->Arg(64)->Arg(1024);

}  // namespace
}  // namespace ondex

BENCHMARK_MAIN();
