// SPDX-License-Identifier: MIT
#include "host.h"

#include <dlfcn.h>
#include <poll.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ostream>
#include <utility>

namespace ondex::test {

namespace {

constexpr std::array<const char*, 11> symbols = {"left_in",
                                                 "right_in",
                                                 "left_out",
                                                 "right_out",
                                                 "left_tremolo_rate",
                                                 "right_tremolo_rate",
                                                 "tremolo_depth",
                                                 "left_tremolo_mod_factor",
                                                 "left_tremolo_mod_index",
                                                 "right_tremolo_mod_factor",
                                                 "right_tremolo_mod_index"};

Host& host_of(void* handle) {
  return *static_cast<Host*>(handle);
}

}  // namespace

UiObject::UiObject() : object_(dlopen(ONDEX_UI, RTLD_NOW | RTLD_LOCAL)) {
  if (!object_)
    std::fprintf(stderr, "%s\n", dlerror());
  using Find = const LV2UI_Descriptor* (*)(uint32_t);
  const auto find = object_ ? reinterpret_cast<Find>(dlsym(object_, "lv2ui_descriptor")) : nullptr;
  if (find)
    descriptor_ = find(0);
}

UiObject::~UiObject() {
  if (object_)
    dlclose(object_);
}

void PrintTo(const Told& told, std::ostream* out) {
  constexpr std::array names = {"begin", "write", "end"};
  *out << names.at(told.kind) << " " << told.port;
  if (told.kind == Told::write)
    *out << " = " << told.value;
}

bool Host::open(const Offer& offer) {
  auto touch_data = std::make_unique<LV2UI_Touch>(LV2UI_Touch{this, touch});
  auto resize_data = std::make_unique<LV2UI_Resize>(LV2UI_Resize{this, announce});
  auto port_map_data = std::make_unique<LV2UI_Port_Map>(LV2UI_Port_Map{this, portIndex});
  auto map_data = std::make_unique<LV2_URID_Map>(LV2_URID_Map{this, map});
  auto log_data = std::make_unique<LV2_Log_Log>(LV2_Log_Log{this, print, printList});
  std::vector<LV2_Options_Option> options = offer.more_options;
  const auto add_number = [&](const char* key, const std::optional<float>& value) {
    if (value) {
      options.push_back(
          {LV2_OPTIONS_INSTANCE, 0, number(key), sizeof(float), number(LV2_ATOM__Float), &*value});
    }
  };
  add_number(LV2_UI__scaleFactor, offer.scale);
  add_number(LV2_UI__updateRate, offer.update_rate);
  options.push_back({});

  std::vector<LV2_Feature> features = offer.more_features;
  const auto add = [&features](bool wanted, const char* uri, void* data) {
    if (wanted)
      features.push_back({uri, data});
  };
  add(offer.parent.has_value(), LV2_UI__parent,
      std::bit_cast<void*>(static_cast<uintptr_t>(offer.parent.value_or(0))));
  add(true, LV2_UI__idleInterface, nullptr);
  add(offer.touch, LV2_UI__touch, touch_data.get());
  add(offer.resize, LV2_UI__resize, resize_data.get());
  add(offer.port_map, LV2_UI__portMap, port_map_data.get());
  add(offer.map, LV2_URID__map, map_data.get());
  add(offer.log, LV2_LOG__log, log_data.get());
  add(true, LV2_OPTIONS__options, options.data());
  std::vector<const LV2_Feature*> list(features.size() + 1);  // and a null at the end
  std::transform(features.begin(), features.end(), list.begin(), [](const auto& each) { return &each; });

  LV2UI_Widget widget = nullptr;
  handle_ = descriptor_->instantiate(descriptor_, plugin_uri.c_str(),
                                     bundle_path.empty() ? ONDEX_LV2_BUNDLE "/" : bundle_path.c_str(),
                                     has_write_function ? write : nullptr, this, &widget, list.data());
  window_ = static_cast<xcb_window_t>(reinterpret_cast<uintptr_t>(widget));
  // Whoever still looks at them finds nothing to call.
  std::memset(static_cast<void*>(touch_data.get()), 0, sizeof *touch_data);
  std::memset(static_cast<void*>(resize_data.get()), 0, sizeof *resize_data);
  std::memset(static_cast<void*>(log_data.get()), 0, sizeof *log_data);
  std::fill(features.begin(), features.end(), LV2_Feature{nullptr, nullptr});
  return handle_ != nullptr;
}

void Host::close() {
  if (const LV2UI_Handle handle = std::exchange(handle_, nullptr))
    descriptor_->cleanup(handle);
}

void Host::set(uint32_t port, float value) {
  values_.at(port) = value;
  descriptor_->port_event(handle_, port, sizeof value, 0, &value);
}

void Host::event(uint32_t port, uint32_t size, uint32_t format, const void* data) {
  descriptor_->port_event(handle_, port, size, format, data);
}

int Host::idle() {
  return extension<LV2UI_Idle_Interface>(LV2_UI__idleInterface).idle(handle_);
}

bool Host::idleUntil(const std::function<bool()>& condition, int milliseconds) {
  using std::chrono::steady_clock;
  const auto deadline = steady_clock::now() + std::chrono::seconds(10);
  do {
    idle();
    if (condition())
      return true;
    poll(nullptr, 0, milliseconds);
  } while (steady_clock::now() < deadline);
  return false;
}

void Host::idleFor(double seconds, int milliseconds) {
  using std::chrono::steady_clock;
  const auto end = steady_clock::now() + std::chrono::duration<double>(seconds);
  do {
    idle();
    poll(nullptr, 0, milliseconds);
  } while (steady_clock::now() < end);
  idle();
}

int Host::show() {
  return extension<LV2UI_Show_Interface>(LV2_UI__showInterface).show(handle_);
}

int Host::hide() {
  return extension<LV2UI_Show_Interface>(LV2_UI__showInterface).hide(handle_);
}

int Host::resize(int width, int height) {
  return extension<LV2UI_Resize>(LV2_UI__resize).ui_resize(handle_, width, height);
}

std::vector<Told> Host::writes() const {
  std::vector<Told> writes;
  std::copy_if(told_.begin(), told_.end(), std::back_inserter(writes),
               [](const Told& told) { return told.kind == Told::write; });
  return writes;
}

bool Host::logHas(const std::string& text) const {
  return std::any_of(log_.begin(), log_.end(),
                     [&text](const std::string& line) { return line.find(text) != line.npos; });
}

LV2_URID Host::number(const std::string& uri) {
  const auto found = std::find(uris_.begin(), uris_.end(), uri);
  const auto number = static_cast<LV2_URID>(found - uris_.begin() + 1);
  if (found == uris_.end())
    uris_.push_back(uri);
  return number;
}

void Host::write(LV2UI_Controller controller, uint32_t port, uint32_t size, uint32_t protocol,
                 const void* buffer) {
  Host& host = host_of(controller);
  float value = 0;
  if (size != sizeof value || protocol != 0 || port >= host.values_.size()) {
    host.log_.emplace_back("a write of the wrong size, protocol or port");
    return;
  }
  std::memcpy(&value, buffer, sizeof value);
  host.values_.at(port) = value;
  host.told_.push_back({Told::write, port, value});
  if (host.on_write)
    host.on_write(port, value);
}

void Host::touch(LV2UI_Feature_Handle handle, uint32_t port, bool grabbed) {
  Host& host = host_of(handle);
  host.told_.push_back({grabbed ? Told::begin : Told::end, port, 0});
  if (host.on_touch)
    host.on_touch(port, grabbed);
}

int Host::announce(LV2UI_Feature_Handle handle, int width, int height) {
  host_of(handle).announced_.emplace_back(width, height);
  return 0;
}

uint32_t Host::portIndex(LV2UI_Feature_Handle, const char* symbol) {
  const auto* const found = std::find_if(
      symbols.begin(), symbols.end(), [symbol](const char* each) { return std::strcmp(each, symbol) == 0; });
  return found == symbols.end() ? LV2UI_INVALID_PORT_INDEX : static_cast<uint32_t>(found - symbols.begin());
}

LV2_URID Host::map(LV2_URID_Map_Handle handle, const char* uri) {
  return host_of(handle).number(uri);
}

int Host::print(LV2_Log_Handle handle, LV2_URID type, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = printList(handle, type, format, arguments);
  va_end(arguments);
  return length;
}

int Host::printList(LV2_Log_Handle handle, LV2_URID, const char* format, va_list arguments) {
  std::array<char, 1024> line{};
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it misses that whoever calls has begun the list
  const int length = std::vsnprintf(line.data(), line.size(), format, arguments);
  host_of(handle).log_.emplace_back(line.data());
  return length;
}

}  // namespace ondex::test
