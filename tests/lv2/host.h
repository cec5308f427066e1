// SPDX-License-Identifier: MIT
#pragma once

#include <lv2/atom/atom.h>
#include <lv2/log/log.h>
#include <lv2/options/options.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ondex::test {

/// The user interface's shared object, loaded as hosts load it.
class UiObject {
 public:
  UiObject();
  ~UiObject();
  UiObject(const UiObject&) = delete;
  UiObject& operator=(const UiObject&) = delete;
  /// Null when it cannot be loaded.
  const LV2UI_Descriptor* descriptor() const { return descriptor_; }

 private:
  void* object_;
  const LV2UI_Descriptor* descriptor_ = nullptr;
};

/// What the user interface has told the host, in order.
struct Told {
  enum Kind { begin, write, end };
  Kind kind;
  uint32_t port;
  float value;  ///< of a write
  bool operator==(const Told&) const = default;
};
void PrintTo(const Told& told, std::ostream* out);

/// What a host offers. Every feature is there unless it is taken away.
struct Offer {
  std::optional<xcb_window_t> parent = {};
  bool touch = true;
  bool resize = true;
  bool port_map = true;
  bool map = true;
  bool log = true;
  std::optional<float> scale = {};
  std::optional<float> update_rate = {};
  std::vector<LV2_Options_Option> more_options = {};  ///< before those two
  std::vector<LV2_Feature> more_features = {};        ///< before all others
};

/// An LV2 host with one user interface. Features are gone and overwritten as soon as it is made.
class Host {
 public:
  explicit Host(const LV2UI_Descriptor* descriptor) : descriptor_(descriptor) {}
  ~Host() { close(); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  bool open(const Offer& offer);
  void close();
  bool isOpen() const { return handle_ != nullptr; }
  LV2UI_Handle handle() const { return handle_; }

  /// As a control of the host's own or its automation does.
  void set(uint32_t port, float value);
  void event(uint32_t port, uint32_t size, uint32_t format, const void* data);
  /// 0 while the user interface wants to go on.
  int idle();
  /// Idle calls, some milliseconds apart, until the condition holds; false after ten seconds without.
  bool idleUntil(const std::function<bool()>& condition, int milliseconds = 5);
  /// Idle calls for that time.
  void idleFor(double seconds, int milliseconds = 10);
  int show();
  int hide();
  int resize(int width, int height);

  xcb_window_t window() const { return window_; }
  const std::vector<Told>& told() const { return told_; }
  std::vector<Told> writes() const;
  void forget() { told_.clear(); }
  const std::vector<std::string>& log() const { return log_; }
  bool logHas(const std::string& text) const;
  /// How often, and with which size, the user interface has announced its size.
  const std::vector<std::pair<int, int>>& announced() const { return announced_; }
  float value(uint32_t port) const { return values_.at(port); }
  /// What the host has for a URI in urid:map.
  LV2_URID number(const std::string& uri);

  /// How it answers writes: called from inside the write function.
  std::function<void(uint32_t port, float value)> on_write;
  /// Called from inside the touch function.
  std::function<void(uint32_t port, bool grabbed)> on_touch;
  std::string bundle_path;
  std::string plugin_uri = "urn:kelvane:ondex";
  bool has_write_function = true;

 private:
  /// Of the user interface's own functions, those of that URI.
  template <typename Interface>
  const Interface& extension(const char* uri) const {
    return *static_cast<const Interface*>(descriptor_->extension_data(uri));
  }
  static void write(LV2UI_Controller controller, uint32_t port, uint32_t size, uint32_t protocol,
                    const void* buffer);
  static void touch(LV2UI_Feature_Handle handle, uint32_t port, bool grabbed);
  static int announce(LV2UI_Feature_Handle handle, int width, int height);
  static uint32_t portIndex(LV2UI_Feature_Handle handle, const char* symbol);
  static LV2_URID map(LV2_URID_Map_Handle handle, const char* uri);
  static int print(LV2_Log_Handle handle, LV2_URID type, const char* format, ...)
      __attribute__((format(printf, 3, 4)));
  static int printList(LV2_Log_Handle handle, LV2_URID type, const char* format, va_list arguments);

  const LV2UI_Descriptor* descriptor_;
  LV2UI_Handle handle_ = nullptr;
  xcb_window_t window_ = 0;
  std::vector<Told> told_;
  std::vector<std::string> log_;
  std::vector<std::pair<int, int>> announced_;
  std::deque<std::string> uris_;
  std::array<float, 11> values_ = {};
};

}  // namespace ondex::test
