// SPDX-License-Identifier: MIT
#include "foundation/NSData.h"

namespace cocoa {

const Class NSData::class_ = {.name = "NSData", .superclass = &NSObject::class_};

}  // namespace cocoa
