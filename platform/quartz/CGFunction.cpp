// SPDX-License-Identifier: MIT
#include "quartz/CGFunction.h"

#include "quartz/private/shading.h"

namespace cocoa {

namespace {

std::vector<CGFloat> bounds(const CGFloat* pairs, size_t dimension) {
  return pairs ? std::vector<CGFloat>(pairs, pairs + 2 * dimension) : std::vector<CGFloat>();
}

void clamp(CGFloat* value, const std::vector<CGFloat>& pairs) {
  const CGFloat* const end = pairs.data() + pairs.size();
  for (const CGFloat* pair = pairs.data(); pair < end; pair += 2, ++value) {
    if (!(*value >= pair[0])) {
      *value = pair[0];
    } else if (*value > pair[1]) {
      *value = pair[1];
    }
  }
}

}  // namespace

void CGFunction::evaluate(CGFloat* in, CGFloat* out) const {
  clamp(in, domain);
  callbacks.evaluate(info, in, out);
  clamp(out, range);
}

CGFunctionRef CGFunctionCreate(void* info, size_t domainDimension, const CGFloat* domain,
                               size_t rangeDimension, const CGFloat* range,
                               const CGFunctionCallbacks* callbacks) {
  if (!callbacks || callbacks->version != 0 || !callbacks->evaluate || domainDimension == 0 ||
      rangeDimension == 0)
    return nullptr;
  auto* function = new CGFunction;
  function->info = info;
  function->inputs = domainDimension;
  function->outputs = rangeDimension;
  function->domain = bounds(domain, domainDimension);
  function->range = bounds(range, rangeDimension);
  function->callbacks = *callbacks;
  return function;
}

CGFunctionRef CGFunctionRetain(CGFunctionRef function) {
  return retain_counted(function);
}

void CGFunctionRelease(CGFunctionRef function) {
  release_counted(function);
}

}  // namespace cocoa
