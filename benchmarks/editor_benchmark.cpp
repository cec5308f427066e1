// SPDX-License-Identifier: MIT
// What a repaint of the editor costs at scale 1 into memory, and how many times as long as copying the
// damaged pixels that is. Repaint and copy alternate in one run, so that both see the same machine.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstring>
#include <vector>

#include "open_editor.h"

namespace ondex {
namespace {

using namespace cocoa;

double seconds(auto&& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// Copies a rectangle of a picture row by row, as a repaint touches memory.
class Copy {
 public:
  Copy(NSSize damaged, NSSize picture)
      : width_(static_cast<size_t>(damaged.width)),
        height_(static_cast<size_t>(damaged.height)),
        row_(static_cast<size_t>(picture.width)),
        from_(row_ * height_, 0x80808080U),
        to_(row_ * height_) {}
  void run() {
    for (size_t y = 0; y < height_; ++y) {
      std::memcpy(&to_[y * row_], &from_[y * row_], width_ * sizeof(uint32_t));
    }
    benchmark::DoNotOptimize(to_.data());
    benchmark::ClobberMemory();
  }

 private:
  size_t width_;
  size_t height_;
  size_t row_;
  std::vector<uint32_t> from_;
  std::vector<uint32_t> to_;
};

/// Measures the repaint after `change`, which damages an area of that size.
void measure(benchmark::State& state, OpenEditor& open, NSSize damaged, auto&& change) {
  Copy copy(damaged, open.view->bounds().size);
  double painting = 0;
  double copying = 0;
  bool flip = false;
  for ([[maybe_unused]] auto _ : state) {
    flip = !flip;
    change(flip);
    const double repaint = seconds([&] { open.repaint(); });
    state.SetIterationTime(repaint);
    painting += repaint;
    copying += seconds([&] { copy.run(); });
  }
  state.counters["times_memcpy"] = painting / copying;
}

void full_repaint(benchmark::State& state) {
  OpenEditor open;
  measure(state, open, open.view->bounds().size, [&](bool) { open.view->setNeedsDisplay(true); });
}

void readout_changes(benchmark::State& state) {
  OpenEditor open;
  auto* readout = open.view->_tremolo_left_fm_mod_index_parameter.get();
  measure(state, open, readout->bounds().size,
          [&](bool flip) { readout->set_current_value(flip ? 1.25 : 7.5); });
}

void knob_moves(benchmark::State& state) {
  OpenEditor open;
  auto* knob = open.view->_knob.get();
  measure(state, open, knob->bounds().size, [&](bool flip) { knob->set_current_value(flip ? 0.25 : 0.75); });
}

void graph_changes(benchmark::State& state) {
  OpenEditor open;
  auto* graph = open.view->_vibrato_left_oscillator_response_view.get();
  measure(state, open, graph->bounds().size, [&](bool flip) {
    graph->set_modulation_index(flip ? 2.5F : 3.0F);
    graph->setNeedsDisplay(true);
  });
}

void curve_rebuild(benchmark::State& state) {
  const OpenEditor open;
  auto* graph = open.view->_vibrato_left_oscillator_response_view.get();
  Copy copy(graph->bounds().size, open.view->bounds().size);
  double rebuilding = 0;
  double copying = 0;
  bool flip = false;
  for ([[maybe_unused]] auto _ : state) {
    flip = !flip;
    const double rebuild = seconds([&] { graph->set_modulation_index(flip ? 2.5F : 3.0F); });
    state.SetIterationTime(rebuild);
    rebuilding += rebuild;
    copying += seconds([&] { copy.run(); });
  }
  state.counters["times_memcpy"] = rebuilding / copying;
}

BENCHMARK(full_repaint)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(readout_changes)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(knob_moves)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(graph_changes)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(curve_rebuild)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace ondex

BENCHMARK_MAIN();
