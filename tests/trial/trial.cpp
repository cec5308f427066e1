// SPDX-License-Identifier: MIT
#include "trial.h"

#include "editor_trial.h"
#include "lv2_trial.h"
#include "trace.h"

namespace ondex::trial {

const char* name_of(World world) {
  return world == World::editor ? "editor" : "lv2";
}

std::optional<std::string> run_trial(World world, std::span<const uint8_t> bytes) {
  Trace trace;
  Choices choices(bytes);
  if (world == World::editor) {
    EditorTrial(choices, trace).run();
  } else {
    Lv2Trial(choices, trace).run();
  }
  return trace.failed() ? std::optional(trace.text()) : std::nullopt;
}

std::optional<std::string> run_trial(World world, uint64_t seed) {
  const std::string title = std::string(name_of(world)) + ", seed " + std::to_string(seed);
  Trace::setTitle(title);
  auto faults = run_trial(world, bytes_of_seed(seed));
  if (faults)
    faults = title + "\n" + *faults;
  return faults;
}

}  // namespace ondex::trial
