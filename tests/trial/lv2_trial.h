// SPDX-License-Identifier: MIT
#pragma once

#include <lv2/log/log.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

#include <array>
#include <cstdarg>
#include <cstdint>
#include <memory>
#include <vector>

#include "lv2_ui/ports.h"
#include "temporary_folder.h"
#include "user.h"
#include "windows/headless.h"

namespace ondex::trial {

class Lv2Trial;

/// One user interface of the host's. What it is told is looked at even after its cleanup, when nothing may
/// be.
struct Lv2Interface {
  Lv2Trial* trial = nullptr;
  unsigned number = 0;
  LV2UI_Handle handle = nullptr;
  cocoa::HeadlessWindowSystem* display = nullptr;
  std::unique_ptr<User> user;
  std::array<bool, parameter_count> touched = {};
  bool offers_touch = true;
  bool cleaned_up = false;
  bool user_acted = false;  ///< and what was done may still wait somewhere
};

/// An LV2 host with up to three user interfaces at once, which it calls as it likes, also from inside its own
/// functions.
class Lv2Trial {
 public:
  Lv2Trial(Choices& choices, Trace& trace);
  ~Lv2Trial();
  Lv2Trial(const Lv2Trial&) = delete;
  Lv2Trial& operator=(const Lv2Trial&) = delete;

  void run();

 private:
  /// What the host offers, and does when it is called.
  static void write(LV2UI_Controller controller, uint32_t port, uint32_t size, uint32_t protocol,
                    const void* buffer);
  static void touch(LV2UI_Feature_Handle handle, uint32_t port, bool grabbed);
  static int announce(LV2UI_Feature_Handle handle, int width, int height);
  static LV2_URID map(LV2_URID_Map_Handle handle, const char* uri);
  static int print(LV2_Log_Handle handle, LV2_URID type, const char* format, ...)
      __attribute__((format(printf, 3, 4)));
  static int printList(LV2_Log_Handle handle, LV2_URID type, const char* format, va_list arguments)
      __attribute__((format(printf, 3, 0)));
  void wrote(Lv2Interface& ui, uint32_t port, float value);
  void touched(Lv2Interface& ui, uint32_t port, bool grabbed);
  void callFromInside(Lv2Interface& ui);

  void instantiate();
  void cleanUp(Lv2Interface& ui);
  void sayValue(Lv2Interface& ui, uint32_t port, float value);
  bool idle(Lv2Interface& ui);
  void show(Lv2Interface& ui, bool shown);
  void resize(Lv2Interface& ui);
  void sayRandomValue(Lv2Interface& ui);

  void step();
  void actAsHost(Lv2Interface& ui);
  void changeWindow(const Lv2Interface& ui);
  void pass(Lv2Interface& ui);
  void settle(Lv2Interface& ui);
  /// That what was cleaned up has given back all it had.
  void checkCleanedUp();
  void end();
  /// One that is there; null when there is none.
  Lv2Interface* choose();

  Choices& choices_;
  Trace& trace_;
  test::OwnPreferences preferences_;
  std::vector<std::unique_ptr<Lv2Interface>> interfaces_;
  unsigned inside_ = 0;  ///< so many of the host's functions are calling user interfaces
  bool may_call_from_inside_ = true;
};

}  // namespace ondex::trial
