// SPDX-License-Identifier: MIT
#include "shading_faults.h"

#include <cstddef>

#include "drawing/shading.h"

namespace {

// Counted down; the one that reaches 0 fails. Negative while nothing is to fail.
int records_to_failure = -1;
size_t record_size = 0;
int shadings_to_failure = -1;

bool fails(int& countdown) {
  return countdown > 0 && --countdown == 0;
}

}  // namespace

extern "C" void* __real_malloc(size_t size);   // NOLINT(bugprone-reserved-identifier): the linker's names
extern "C" void* __wrap_malloc(size_t size) {  // NOLINT(bugprone-reserved-identifier)
  return size == record_size && fails(records_to_failure) ? nullptr : __real_malloc(size);
}

namespace cocoa {

#define ONDEX_AXIAL "_ZN5cocoa20CGShadingCreateAxialEPNS_12CGColorSpaceENS_7CGPointES2_PNS_10CGFunctionEbb"
CGShadingRef real_create_axial(CGColorSpaceRef space, CGPoint start, CGPoint end, CGFunctionRef function,
                               bool extend_start, bool extend_end) asm("__real_" ONDEX_AXIAL);
CGShadingRef wrap_create_axial(CGColorSpaceRef space, CGPoint start, CGPoint end, CGFunctionRef function,
                               bool extend_start, bool extend_end) asm("__wrap_" ONDEX_AXIAL);

CGShadingRef wrap_create_axial(CGColorSpaceRef space, CGPoint start, CGPoint end, CGFunctionRef function,
                               bool extend_start, bool extend_end) {
  return fails(shadings_to_failure)
             ? nullptr
             : real_create_axial(space, start, end, function, extend_start, extend_end);
}

}  // namespace cocoa

namespace ondex::test {

FailingRecord::FailingRecord(int nth) {
  record_size = sizeof(two_color_info);
  records_to_failure = nth;
}
FailingRecord::~FailingRecord() {
  records_to_failure = -1;
}

FailingRgbRecord::FailingRgbRecord() {
  record_size = sizeof(two_color_rgb_info);
  records_to_failure = 1;
}
FailingRgbRecord::~FailingRgbRecord() {
  records_to_failure = -1;
}

FailingShading::FailingShading(int nth) {
  shadings_to_failure = nth;
}
FailingShading::~FailingShading() {
  shadings_to_failure = -1;
}

}  // namespace ondex::test
