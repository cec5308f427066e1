// SPDX-License-Identifier: MIT
#include "appkit/NSEvent.h"

namespace cocoa {

const Class NSEvent::class_ = {.name = "NSEvent", .superclass = &NSObject::class_};

}  // namespace cocoa
