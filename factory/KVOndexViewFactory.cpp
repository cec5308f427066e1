#include "factory/KVOndexViewFactory.h"

#include <utility>

#include "foundation/NSBundle.h"
#include "foundation/NSLog.h"

namespace ondex {

using namespace cocoa;

namespace {

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
  const NSBundle* bundle = NSBundle::bundleForClass(class_);
  if (!bundle || !bundle->loadNibNamed_owner("KVOndexView", this) || !uiFreshlyLoadedView) {
    NSLog("Ondex: Unable to load nib for view.");
    return nullptr;
  }
  uiFreshlyLoadedView->setAU(unit);
  // Loading has autoreleased the view already: the outlet owns nothing that would have to be handed over.
  return std::exchange(uiFreshlyLoadedView, nullptr);
}

}  // namespace ondex
