// SPDX-License-Identifier: MIT
#include "hosting/audio_unit_host.h"

#include "audio_unit/AUCocoaUIBase.h"
#include "editor/parameter_table.h"
#include "foundation/NSLog.h"

namespace ondex {

using namespace cocoa;

std::vector<EffectParameter> effect_parameters() {
  std::vector<EffectParameter> parameters;
  for (const ParameterDescription& row : parameter_table) {
    EffectParameter parameter;
    parameter.id = row.number;
    parameter.name = row.name;
    parameter.minimum = static_cast<float>(row.minimum);
    parameter.maximum = static_cast<float>(row.maximum);
    parameter.default_value = static_cast<float>(row.default_value);
    parameters.push_back(parameter);
  }
  return parameters;
}

Ref<NSView> make_editor(const NSBundle& bundle, AudioUnit unit) {
  const Class* factory_class = bundle.principalClass();
  if (!factory_class || !factory_class->init) {
    NSLog("ondex: no view factory in %s", bundle.bundlePath().c_str());
    return nullptr;
  }
  const Ref<NSObject> factory = factory_class->init();
  auto* view_factory = dynamic_cast<AUCocoaUIBase*>(factory.get());
  if (!view_factory) {
    NSLog("ondex: %.*s makes no editors", static_cast<int>(factory_class->name.size()),
          factory_class->name.data());
    return nullptr;
  }
  return view_factory->uiViewForAudioUnit_withSize(unit, NSSize{});
}

}  // namespace ondex
