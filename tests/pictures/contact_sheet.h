#pragma once

#include "appkit/NSView.h"

namespace ondex::test {

/// Every control in every state, each with a caption under it.
cocoa::Ref<cocoa::NSView> contact_sheet();

}  // namespace ondex::test
