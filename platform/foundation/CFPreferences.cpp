// SPDX-License-Identifier: MIT
#include "foundation/CFPreferences.h"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/NSData.h"
#include "foundation/NSLog.h"
#include "foundation/NSString.h"
#include "foundation/private/preference_store.h"
#include "foundation/private/preferences_location.h"

namespace cocoa {

namespace {

/// Of two editors on two threads, one may wait for the other's wait.
constexpr std::chrono::milliseconds kPatienceInHost(10);

/// One for the process, as the file is one: editors in a process see each other's changes at once.
struct ProcessStore {
  PreferenceStore store{&preferences_file};
  std::atomic<pid_t> set_by = 0;

  ProcessStore() = default;
  ProcessStore(const ProcessStore&) = delete;
  ProcessStore& operator=(const ProcessStore&) = delete;
  ~ProcessStore() {
    // A child that was forked has a copy of what its parent was about to write, and may end much later.
    if (set_by == getpid() && store.hasUnwritten())
      store.synchronize();
  }
};

ProcessStore& process_store() {
  static ProcessStore the_store;
  return the_store;
}

PreferenceStore& store() {
  return process_store().store;
}

/// What stands for an opaque value.
class OtherPreference : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
};

const Class OtherPreference::class_ = {.name = "OtherPreference", .superclass = &NSObject::class_};

const char* printable(CFStringRef name) {
  return name ? name : "null";
}

bool is_known_domain(CFStringRef application, CFStringRef user, CFStringRef host) {
  const auto is = [](CFStringRef name, std::string_view expected) { return name && name == expected; };
  if (is(application, kCFPreferencesAnyApplication) && is(user, kCFPreferencesCurrentUser) &&
      is(host, kCFPreferencesCurrentHost))
    return true;
  NSLog("Preferences: there is no domain (%s, %s, %s).", printable(application), printable(user),
        printable(host));
  return false;
}

bool is_key(CFStringRef key) {
  if (key && is_xml_text(key))
    return true;
  NSLog("Preferences: a key that is null or no text.");
  return false;
}

/// The value in the form in which it is stored; nothing when it cannot be.
std::optional<PropertyListValue> storable(const NSObject& object) {
  if (const auto* data = dynamic_cast<const NSData*>(&object))
    return std::vector<uint8_t>(data->bytes().begin(), data->bytes().end());
  if (const auto* string = dynamic_cast<const NSString*>(&object); string && is_xml_text(string->view()))
    return std::string(string->view());
  return std::nullopt;
}

}  // namespace

Ref<NSObject> CFPreferencesCopyValue(CFStringRef key, CFStringRef application, CFStringRef user,
                                     CFStringRef host) {
  if (!is_known_domain(application, user, host) || !is_key(key))
    return nullptr;
  std::optional<PropertyListValue> value = store().value(key);
  if (!value)
    return nullptr;
  if (auto* bytes = std::get_if<std::vector<uint8_t>>(&*value))
    return make<NSData>(std::move(*bytes));
  if (auto* text = std::get_if<std::string>(&*value))
    return make<NSString>(std::move(*text));
  return make<OtherPreference>();
}

void CFPreferencesSetValue(CFStringRef key, const NSObject* value, CFStringRef application, CFStringRef user,
                           CFStringRef host) {
  if (!is_known_domain(application, user, host) || !is_key(key))
    return;
  std::optional<PropertyListValue> stored = value ? storable(*value) : std::nullopt;
  if (value && !stored) {
    NSLog("Preferences: %s: an object of class %.*s that cannot be stored.", key,
          static_cast<int>(value->isa().name.size()), value->isa().name.data());
    return;
  }
  process_store().set_by = getpid();
  store().setValue(key, std::move(stored));
}

bool CFPreferencesSynchronize(CFStringRef application, CFStringRef user, CFStringRef host) {
  return is_known_domain(application, user, host) && store().synchronize(kPatienceInHost);
}

void forget_unwritten_preference(CFStringRef key) {
  if (is_key(key))
    store().forgetUnwritten(key);
}

}  // namespace cocoa
