#include "foundation/CFPreferences.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/NSData.h"
#include "foundation/NSLog.h"
#include "foundation/NSString.h"
#include "foundation/preference_store.h"
#include "foundation/preferences_location.h"

namespace cocoa {

namespace {

/// One for the process, as the file is one: editors in a process see each other's changes at once.
PreferenceStore& store() {
  static PreferenceStore the_store(&preferences_file);
  return the_store;
}

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
  return make<NSString>(std::get<std::string>(*value));
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
  store().setValue(key, std::move(stored));
}

bool CFPreferencesSynchronize(CFStringRef application, CFStringRef user, CFStringRef host) {
  return is_known_domain(application, user, host) && store().synchronize();
}

}  // namespace cocoa
