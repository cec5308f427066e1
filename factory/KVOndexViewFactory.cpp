// SPDX-License-Identifier: MIT
#include "factory/KVOndexViewFactory.h"

#include <utility>

#include "foundation/NSBundle.h"
#include "foundation/NSLog.h"
#include "foundation/available_memory.h"

namespace ondex {

using namespace cocoa;

namespace {

/// For the views, and the fonts of the first ones; in bytes.
constexpr size_t memory_to_open = 16UL << 20U;

constexpr Outlet outlets[] = {
    {"uiFreshlyLoadedView", FieldOutlet<&KVOndexViewFactory::uiFreshlyLoadedView>::set}};

}  // namespace

const Class KVOndexViewFactory::class_ = {.name = "KVOndexViewFactory",
                                          .superclass = &NSObject::class_,
                                          .init = [] { return Ref<NSObject>(make<KVOndexViewFactory>()); },
                                          .outlets = outlets};

Ref<NSString> KVOndexViewFactory::description() const {
  return make<NSString>("Kelvane: Ondex");
}

NSView* KVOndexViewFactory::uiViewForAudioUnit_withSize(AudioUnit unit, NSSize) {
  if (!has_memory(memory_to_open)) {
    NSLog("Ondex: there is no memory for a view.");
    return nullptr;
  }
  const NSBundle* bundle = NSBundle::bundleForClass(class_);
  if (!bundle || !bundle->loadNibNamed_owner("KVOndexView", this) || !uiFreshlyLoadedView) {
    NSLog("Ondex: Unable to load nib for view.");
    return nullptr;
  }
  uiFreshlyLoadedView->setAU(unit);
  // Loading has autoreleased the view already: the outlet owns nothing that would have to be handed over.
  return std::exchange(uiFreshlyLoadedView, nullptr).get();
}

}  // namespace ondex
