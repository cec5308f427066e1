// SPDX-License-Identifier: MIT
#include "lv2_ui/host_features.h"

#include <lv2/atom/atom.h>
#include <lv2/options/options.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <span>

#include "foundation/NSLog.h"

namespace ondex {

using cocoa::NSLog;

namespace {

constexpr double smallest_scale = 1;
constexpr double largest_scale = 3;

const LV2_Feature* find_feature(const LV2_Feature* const* features, std::string_view uri) {
  for (; features && *features; ++features) {
    if ((*features)->URI && uri == (*features)->URI)
      return *features;
  }
  return nullptr;
}

/// A copy of the feature's functions; none when it, or `function` of it, is missing.
template <typename Feature, typename Function>
std::optional<Feature> functions_of(const LV2_Feature* const* features, const char* uri,
                                    Function Feature::*function) {
  const LV2_Feature* feature = find_feature(features, uri);
  const auto* data = feature ? static_cast<const Feature*>(feature->data) : nullptr;
  if (!data || !(data->*function))
    return std::nullopt;
  return *data;
}

/// The same, with a line in the log for a feature that is there and empty.
template <typename Feature, typename Function>
std::optional<Feature> checked_functions_of(const LV2_Feature* const* features, const char* uri,
                                            Function Feature::*function) {
  const auto functions = functions_of(features, uri, function);
  if (!functions && find_feature(features, uri))
    NSLog("Ondex: the host's feature <%s> is empty; it is not used.", uri);
  return functions;
}

/// The options that we know, by the numbers that the host has for their names.
class Options {
 public:
  explicit Options(const LV2_URID_Map& map)
      : scale_factor_(number(map, LV2_UI__scaleFactor)),
        update_rate_(number(map, LV2_UI__updateRate)),
        window_title_(number(map, LV2_UI__windowTitle)),
        float_(number(map, LV2_ATOM__Float)),
        string_(number(map, LV2_ATOM__String)) {}

  void read(const LV2_Options_Option& option, HostFeatures& features) const {
    if (option.context != LV2_OPTIONS_INSTANCE || option.key == 0)
      return;
    if (option.key == scale_factor_) {
      features.scale = checked_scale(number_of(option, LV2_UI__scaleFactor));
    } else if (option.key == update_rate_) {
      features.update_rate = checked_rate(number_of(option, LV2_UI__updateRate));
    } else if (option.key == window_title_) {
      features.title = text_of(option, LV2_UI__windowTitle);
    }
  }

 private:
  static LV2_URID number(const LV2_URID_Map& map, const char* uri) { return map.map(map.handle, uri); }

  std::optional<float> number_of(const LV2_Options_Option& option, const char* name) const {
    if (option.type != float_ || option.size != sizeof(float) || !option.value) {
      NSLog("Ondex: the host's option <%s> is not a float; it is not used.", name);
      return std::nullopt;
    }
    float value = 0;
    std::memcpy(&value, option.value, sizeof value);
    return value;
  }

  std::string text_of(const LV2_Options_Option& option, const char* name) const {
    if (option.type != string_ || !option.value) {
      NSLog("Ondex: the host's option <%s> is not a string; it is not used.", name);
      return {};
    }
    // The size counts the terminating zero, or, by some hosts, does not.
    const auto* text = static_cast<const char*>(option.value);
    return {text, strnlen(text, option.size)};
  }

  static double checked_scale(std::optional<float> given) {
    if (!given)
      return 0;
    if (!std::isfinite(*given)) {
      NSLog("Ondex: the host's scale factor is not a number; the display's is used.");
      return 0;
    }
    const double scale = std::clamp(static_cast<double>(*given), smallest_scale, largest_scale);
    if (scale != static_cast<double>(*given))
      NSLog("Ondex: the host's scale factor %g is taken as %g.", static_cast<double>(*given), scale);
    return scale;
  }

  static double checked_rate(std::optional<float> given) {
    if (!given)
      return 0;
    if (std::isfinite(*given) && *given > 0)
      return static_cast<double>(*given);
    NSLog("Ondex: the host's update rate %g is not one; it is not used.", static_cast<double>(*given));
    return 0;
  }

  LV2_URID scale_factor_;
  LV2_URID update_rate_;
  LV2_URID window_title_;
  LV2_URID float_;
  LV2_URID string_;
};

void read_options(const LV2_Feature* const* features, const std::optional<LV2_URID_Map>& map,
                  HostFeatures& read) {
  const LV2_Feature* feature = find_feature(features, LV2_OPTIONS__options);
  if (!feature)
    return;
  const auto* option = static_cast<const LV2_Options_Option*>(feature->data);
  if (!option || !map) {
    NSLog("Ondex: the host's options cannot be read: %s.", option ? "it has no urid:map" : "there are none");
    return;
  }
  const Options options(*map);
  for (; option->key != 0 || option->value; ++option)
    options.read(*option, read);
}

void read_ports(const LV2UI_Port_Map& map, ParameterPorts& ports) {
  ParameterPorts mapped = {};
  for (size_t parameter = 0; parameter < parameter_count; ++parameter) {
    const uint32_t port = map.port_index(map.handle, port_symbols[parameter]);
    mapped[parameter] = port;
    const auto before = std::span(mapped).first(parameter);
    if (port == LV2UI_INVALID_PORT_INDEX || std::ranges::find(before, port) != before.end()) {
      NSLog("Ondex: the host does not find the port \"%s\"; the plug-in's own order is used.",
            port_symbols[parameter]);
      return;
    }
  }
  ports = mapped;
}

}  // namespace

HostFeatures read_features(const LV2_Feature* const* features) {
  HostFeatures read;
  if (const LV2_Feature* parent = find_feature(features, LV2_UI__parent)) {
    // The window's number, in a pointer's clothes.
    const auto number = reinterpret_cast<uintptr_t>(parent->data);
    if (number != 0 && number <= std::numeric_limits<uint32_t>::max()) {
      read.parent = number;
    } else {
      NSLog("Ondex: the host's parent is no window; the editor gets a window of its own.");
    }
  }
  read.resize = checked_functions_of(features, LV2_UI__resize, &LV2UI_Resize::ui_resize);
  read.touch = checked_functions_of(features, LV2_UI__touch, &LV2UI_Touch::touch);
  checked_functions_of(features, LV2_LOG__log, &LV2_Log_Log::printf);
  const auto map = checked_functions_of(features, LV2_URID__map, &LV2_URID_Map::map);
  if (map)
    read.float_protocol = map->map(map->handle, LV2_UI__floatProtocol);
  read_options(features, map, read);
  if (const auto ports = checked_functions_of(features, LV2_UI__portMap, &LV2UI_Port_Map::port_index))
    read_ports(*ports, read.ports);
  return read;
}

HostLog::HostLog(const LV2_Feature* const* features) {
  const auto map = functions_of(features, LV2_URID__map, &LV2_URID_Map::map);
  log_ = functions_of(features, LV2_LOG__log, &LV2_Log_Log::printf);
  if (map)
    type_ = map->map(map->handle, LV2_LOG__Warning);
}

void HostLog::write(std::string_view line) const {
  const auto length = static_cast<int>(line.size());
  // A copy: it is forgotten when the host ends the editor from inside the call.
  if (const auto log = log_; log && type_ != 0) {
    log->printf(log->handle, type_, "%.*s\n", length, line.data());
  } else {
    std::fprintf(stderr, "%.*s\n", length, line.data());
  }
}

}  // namespace ondex
