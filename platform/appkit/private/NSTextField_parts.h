// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSTextField.h"
#include "appkit/private/field_value.h"
#include "appkit/private/text_editing_session.h"
#include "appkit/private/text_field_line.h"

namespace cocoa {

/// What a text field is made of besides its properties: each part has a state of its own.
struct NSTextField::Parts {
  explicit Parts(NSTextField& field) : line(field), session(field) {}

  FieldValue value;
  TextFieldLine line;
  TextEditingSession session;
};

}  // namespace cocoa
