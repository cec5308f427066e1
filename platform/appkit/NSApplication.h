// SPDX-License-Identifier: MIT
#pragma once

namespace cocoa {

/// Makes the platform's own view classes known by name to interface files. May be called any number of times;
/// a program that shows views calls it first, a plug-in's host through the plug-in.
void NSApplicationLoad();

}  // namespace cocoa
