// SPDX-License-Identifier: MIT
#include "made_shadings.h"

namespace {

ondex::test::MadeShadings* listening = nullptr;

}  // namespace

namespace cocoa {

#define ONDEX_AXIAL "_ZN5cocoa20CGShadingCreateAxialEPNS_12CGColorSpaceENS_7CGPointES2_PNS_10CGFunctionEbb"
CGShadingRef real_create_axial(CGColorSpaceRef space, CGPoint start, CGPoint end, CGFunctionRef function,
                               bool extend_start, bool extend_end) asm("__real_" ONDEX_AXIAL);
CGShadingRef wrap_create_axial(CGColorSpaceRef space, CGPoint start, CGPoint end, CGFunctionRef function,
                               bool extend_start, bool extend_end) asm("__wrap_" ONDEX_AXIAL);

CGShadingRef wrap_create_axial(CGColorSpaceRef space, CGPoint start, CGPoint end, CGFunctionRef function,
                               bool extend_start, bool extend_end) {
  if (listening)
    listening->functions.push_back(CGFunctionRetain(function));
  return real_create_axial(space, start, end, function, extend_start, extend_end);
}

}  // namespace cocoa

namespace ondex::test {

MadeShadings::MadeShadings() {
  listening = this;
}

MadeShadings::~MadeShadings() {
  listening = nullptr;
  for (cocoa::CGFunctionRef function : functions)
    cocoa::CGFunctionRelease(function);
}

}  // namespace ondex::test
