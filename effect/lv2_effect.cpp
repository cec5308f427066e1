// SPDX-License-Identifier: MIT
// The effect as an LV2 plug-in: the ports of a host on one side, the tremolo on the other.

#include <lv2/core/lv2.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>
#include <type_traits>

#include "effect/parameters.h"
#include "effect/tremolo.h"

namespace ondex {
namespace {

enum Port : uint32_t { left_in, right_in, left_out, right_out, first_parameter, port_count = 11 };
static_assert(port_count - first_parameter == size_t{parameter_count});

struct Plugin {
  explicit Plugin(double sample_rate) : tremolo(sample_rate) {}

  Tremolo tremolo;
  std::array<void*, port_count> ports = {};  ///< the host's, as connected; null until then
};
static_assert(std::is_trivially_destructible_v<Plugin>);

Plugin& plugin(LV2_Handle handle) {
  return *static_cast<Plugin*>(handle);
}

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double sample_rate, const char* /*bundle_path*/,
                       const LV2_Feature* const* /*features*/) {
  if (!Tremolo::runs_at(sample_rate))
    return nullptr;
  // From the C library, as its operator new would be all that ties the effect to a C++ library.
  void* memory = std::malloc(sizeof(Plugin));
  return memory == nullptr ? nullptr : new (memory) Plugin(sample_rate);
}

void cleanup(LV2_Handle handle) {
  std::free(handle);
}

void connect_port(LV2_Handle handle, uint32_t port, void* data) {
  if (port < port_count)
    plugin(handle).ports[port] = data;
}

void activate(LV2_Handle handle) {
  plugin(handle).tremolo.reset();
}

void deactivate(LV2_Handle /*handle*/) {}

/// What the host's controls hold, brought into range; a control that is not connected holds its default.
ParameterValues parameters_at(const std::array<void*, port_count>& ports) {
  ParameterValues values = {};
  for (size_t i = 0; i < parameter_count; ++i) {
    const auto* control = static_cast<const float*>(ports[first_parameter + i]);
    values[i] = control == nullptr ? parameter_ranges[i].default_value
                                   : in_range(static_cast<Parameter>(i), *control);
  }
  return values;
}

void run(LV2_Handle handle, uint32_t frames) {
  const auto& ports = plugin(handle).ports;
  if (std::find(ports.begin(), ports.begin() + first_parameter, nullptr) != ports.begin() + first_parameter)
    return;
  plugin(handle).tremolo.process(
      parameters_at(ports),
      {static_cast<const float*>(ports[left_in]), static_cast<const float*>(ports[right_in])},
      {static_cast<float*>(ports[left_out]), static_cast<float*>(ports[right_out])}, frames);
}

const void* extension_data(const char* /*uri*/) {
  return nullptr;
}

constexpr LV2_Descriptor descriptor = {"urn:kelvane:ondex", instantiate, connect_port,  activate, run,
                                       deactivate,          cleanup,     extension_data};

}  // namespace
}  // namespace ondex

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(uint32_t index) {
  return index == 0 ? &ondex::descriptor : nullptr;
}
