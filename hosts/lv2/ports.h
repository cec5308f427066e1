// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "editor/parameter_table.h"

/// Where the plug-in has the effect's parameters.

namespace ondex {

inline constexpr const char* plugin_uri = "urn:kelvane:ondex";
inline constexpr const char* ui_uri = "urn:kelvane:ondex#ui";

inline constexpr size_t parameter_count = parameter_table.size();

/// The parameters' ports, by parameter number.
using ParameterPorts = std::array<uint32_t, parameter_count>;

/// Two audio inputs and two audio outputs come before them.
inline constexpr ParameterPorts parameter_ports = {4, 5, 6, 7, 8, 9, 10};

inline constexpr std::array<const char*, parameter_count> port_symbols = {
    "left_tremolo_rate",       "right_tremolo_rate",     "tremolo_depth",
    "left_tremolo_mod_factor", "left_tremolo_mod_index", "right_tremolo_mod_factor",
    "right_tremolo_mod_index",
};

}  // namespace ondex
