// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// The standing trial: a random user and a random host try an editor in windows without a display, under a
/// clock that only they move. Bytes decide what they do: those of a fuzzer, or of a seed.
///
/// After each step the trial looks whether what must always hold does; crashes, leaks and what is undefined
/// are the sanitizers' to find.

namespace ondex::trial {

enum class World {
  editor,  ///< an Audio Unit host with views and windows of its own, of this process
  lv2,     ///< an LV2 host, which has the user interface's entry points
};
inline constexpr World worlds[] = {World::editor, World::lv2};
const char* name_of(World world);

/// What was done, with the faults that were found in the end; none when all went well.
std::optional<std::string> run_trial(World world, std::span<const uint8_t> bytes);
/// The same, with the bytes of a seed, which the text begins with.
std::optional<std::string> run_trial(World world, uint64_t seed);

}  // namespace ondex::trial
