// SPDX-License-Identifier: MIT
#include <array>
#include <cstdio>
#include <cstring>
#include <utility>

#include "lv2_trial.h"

namespace ondex::trial {

namespace {

constexpr unsigned deepest = 4;

unsigned parameter_of(uint32_t port) {
  return port - parameter_ports.front();
}

}  // namespace

// The host is called

void Lv2Trial::write(LV2UI_Controller controller, uint32_t port, uint32_t size, uint32_t protocol,
                     const void* buffer) {
  auto& ui = *static_cast<Lv2Interface*>(controller);
  float value = 0;
  ui.trial->trace_.expect(size == sizeof value && protocol == 0 && parameter_of(port) < parameter_count,
                          "a write has the wrong size, protocol or port");
  std::memcpy(&value, buffer, sizeof value);
  ui.trial->wrote(ui, port, value);
}

void Lv2Trial::touch(LV2UI_Feature_Handle handle, uint32_t port, bool grabbed) {
  auto& ui = *static_cast<Lv2Interface*>(handle);
  ui.trial->touched(ui, port, grabbed);
}

int Lv2Trial::announce(LV2UI_Feature_Handle, int, int) {
  return 0;
}

LV2_URID Lv2Trial::map(LV2_URID_Map_Handle, const char* uri) {
  // Those of floats and of warnings, which is all that is needed.
  return std::strcmp(uri, LV2_LOG__Warning) == 0 ? 1 : 2;
}

int Lv2Trial::print(LV2_Log_Handle handle, LV2_URID type, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = printList(handle, type, format, arguments);
  va_end(arguments);
  return length;
}

int Lv2Trial::printList(LV2_Log_Handle handle, LV2_URID, const char* format, va_list arguments) {
  std::array<char, 200> line{};
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it misses that whoever calls has begun the list
  const int length = std::vsnprintf(line.data(), line.size(), format, arguments);
  static_cast<Lv2Trial*>(handle)->trace_.note("  %s", line.data());
  return length;
}

void Lv2Trial::wrote(Lv2Interface& ui, uint32_t port, float value) {
  trace_.note("  interface %u writes %g to port %u", ui.number, static_cast<double>(value), port);
  const unsigned parameter = parameter_of(port);
  const ParameterDescription& row = parameter_table.at(parameter);
  trace_.expect(!ui.cleaned_up, "the write function is called after cleanup");
  trace_.expect(ui.user_acted, "a parameter is written without a gesture");
  trace_.expect(value >= static_cast<float>(row.minimum) && value <= static_cast<float>(row.maximum),
                "what is written is out of range");
  trace_.expect(!ui.offers_touch || ui.touched.at(parameter), "a write lies outside of any gesture");
  if (ui.handle && choices_.oneOf(4))
    callFromInside(ui);
}

void Lv2Trial::touched(Lv2Interface& ui, uint32_t port, bool grabbed) {
  trace_.note("  interface %u %s port %u", ui.number, grabbed ? "takes hold of" : "lets go of", port);
  trace_.expect(!ui.cleaned_up, "the touch function is called after cleanup");
  trace_.expect(std::exchange(ui.touched.at(parameter_of(port)), grabbed) != grabbed,
                "begin and end of a gesture do not take turns");
  if (ui.handle && choices_.oneOf(8))
    callFromInside(ui);
}

void Lv2Trial::callFromInside(Lv2Interface& ui) {
  if (inside_ == deepest || !may_call_from_inside_)
    return;
  ++inside_;
  trace_.note("  from inside of that:");
  switch (choices_.below(8)) {
    case 0:
    case 1:
      cleanUp(ui);
      break;
    case 2:
      idle(ui);
      break;
    case 3:
      sayRandomValue(ui);
      break;
    case 4:
      if (Lv2Interface* const other = choose())
        settle(*other);
      break;
    default:
      if (Lv2Interface* const other = choose())
        actAsHost(*other);
  }
  --inside_;
}

}  // namespace ondex::trial
