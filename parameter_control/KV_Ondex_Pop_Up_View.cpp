#include "parameter_control/KV_Ondex_Pop_Up_View.h"

namespace ondex {

using namespace cocoa;

const Class KV_Ondex_Pop_Up_View::class_ = {.name = "KV_Ondex_Pop_Up_View", .superclass = &NSView::class_};

}  // namespace ondex
