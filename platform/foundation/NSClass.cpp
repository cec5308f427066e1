// SPDX-License-Identifier: MIT
#include "foundation/NSClass.h"

#include <map>
#include <mutex>

#include "foundation/NSLog.h"
#include "foundation/NSString.h"

namespace cocoa {

namespace {

struct ClassTable {
  std::mutex mutex;
  std::map<std::string_view, const Class*> classes;

  ClassTable() {
    for (const Class* known : {&NSObject::class_, &NSString::class_})
      classes.emplace(known->name, known);
  }
};

ClassTable& class_table() {
  static ClassTable table;
  return table;
}

}  // namespace

void NSRegisterClasses(std::span<const Class* const> classes) {
  ClassTable& table = class_table();
  const std::scoped_lock lock(table.mutex);
  for (const Class* added : classes) {
    const auto [entry, is_new] = table.classes.emplace(added->name, added);
    if (!is_new && entry->second != added) {
      NSLog("%.*s is the name of two classes: the first one stays", static_cast<int>(added->name.size()),
            added->name.data());
    }
  }
}

const Class* NSClassFromString(std::string_view name) {
  ClassTable& table = class_table();
  const std::scoped_lock lock(table.mutex);
  const auto found = table.classes.find(name);
  return found == table.classes.end() ? nullptr : found->second;
}

}  // namespace cocoa
