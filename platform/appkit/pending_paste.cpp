// SPDX-License-Identifier: MIT
#include "appkit/private/pending_paste.h"

#include <utility>

namespace cocoa {

unsigned PendingPaste::begin(const WindowSystem* asked) {
  asked_ = asked;
  return ++begun_;
}

Ref<NSEvent> PendingPaste::next() {
  if (waiting_.empty())
    return {};
  Ref<NSEvent> event = std::move(waiting_.front());
  waiting_.pop_front();
  return event;
}

bool PendingPaste::abandon() {
  asked_ = nullptr;
  const bool any = !waiting_.empty();
  waiting_.clear();
  return any;
}

}  // namespace cocoa
