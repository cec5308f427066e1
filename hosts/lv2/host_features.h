// SPDX-License-Identifier: MIT
#pragma once

#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "lv2_ui/ports.h"

namespace ondex {

/// What the host offers, checked and copied: hosts free their features before they end the user interface,
/// some as soon as it is made. What is missing or wrong is left out; what is wrong is logged besides.
struct HostFeatures {
  uint64_t parent = 0;  ///< the host's X11 window; 0 for none
  std::optional<LV2UI_Resize> resize;
  std::optional<LV2UI_Touch> touch;
  LV2_URID float_protocol = 0;  ///< another name that some hosts use for the protocol 0
  double scale = 0;             ///< device pixels a point, 1 to 3; 0 when the host does not say
  double update_rate = 0;       ///< times a second that the host tells values; 0 when it does not say
  std::string title;            ///< for a window of our own; may be empty
  ParameterPorts ports = parameter_ports;
};

/// Reads a host's null-terminated features, which may be null.
HostFeatures read_features(const LV2_Feature* const* features);

/// The host's log, if it has one.
class HostLog {
 public:
  explicit HostLog(const LV2_Feature* const* features);
  /// From now on lines go to standard error.
  void forgetHost() { log_.reset(); }
  /// A line to the host, or to standard error.
  void write(std::string_view line) const;

 private:
  std::optional<LV2_Log_Log> log_;
  LV2_URID type_ = 0;
};

}  // namespace ondex
