// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

#include "foundation/NSObject.h"

namespace ondex::test {

/// Receiver of two actions, "edited:" and "selected:", that notes who sent them.
class RecordingHost : public cocoa::NSObject {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  void edited_action(cocoa::NSObject* sender) {
    edited.push_back(sender);
    if (on_edited)
      on_edited();
  }
  void selected_action(cocoa::NSObject* sender) {
    selected.push_back(sender);
    if (on_selected)
      on_selected();
  }

  std::vector<cocoa::NSObject*> edited;
  std::vector<cocoa::NSObject*> selected;
  std::function<void()> on_edited;
  std::function<void()> on_selected;

 private:
  static const cocoa::Action actions_[2];
};

inline constexpr cocoa::SEL edited_selector("edited:");
inline constexpr cocoa::SEL selected_selector("selected:");

inline const cocoa::Action RecordingHost::actions_[2] = {
    {edited_selector, cocoa::MethodAction<&RecordingHost::edited_action>::perform},
    {selected_selector, cocoa::MethodAction<&RecordingHost::selected_action>::perform},
};
inline const cocoa::Class RecordingHost::class_ = {
    .name = "RecordingHost", .superclass = &cocoa::NSObject::class_, .actions = actions_};

}  // namespace ondex::test
