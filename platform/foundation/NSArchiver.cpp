// SPDX-License-Identifier: MIT
#include "foundation/NSArchiver.h"

#include "foundation/NSLog.h"
#include "foundation/private/typedstream_reader.h"
#include "foundation/private/typedstream_writer.h"

namespace cocoa {

Ref<NSData> NSArchiver::archivedDataWithRootObject(const NSObject& root) {
  TypedStreamWriter writer;
  writer.encodeObject(&root);
  if (!writer.failed())
    return make<NSData>(writer.bytes());
  NSLog("NSArchiver: cannot archive an object of class %.*s: %s.", static_cast<int>(root.isa().name.size()),
        root.isa().name.data(), writer.failure());
  return nullptr;
}

Ref<NSObject> NSUnarchiver::unarchiveObjectWithData(const NSData& data,
                                                    std::span<const Class* const> known_classes) {
  TypedStreamReader reader(data.bytes(), [known_classes](std::string_view name) -> const Class* {
    for (const Class* known : known_classes) {
      if (known->name == name)
        return known;
    }
    return nullptr;
  });
  Ref<NSObject> root = reader.decodeObject();
  if (!root)
    reader.fail("no object in it");
  if (!reader.atEnd())
    reader.fail("something follows the object");
  if (!reader.failed())
    return root;
  NSLog("NSUnarchiver: %zu bytes are no archive to read: %s.", data.bytes().size(), reader.failure());
  return nullptr;
}

}  // namespace cocoa
