// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/CFBase.h"
#include "foundation/NSObject.h"

/// The current user's preferences, shared by all applications on this host and kept from one run to the next
/// (where: preferences_location.h).
///
/// There is one domain: (kCFPreferencesAnyApplication, kCFPreferencesCurrentUser, kCFPreferencesCurrentHost).
/// Asking for another is logged and answers null or false. Values are NSData and NSString; others that stand
/// there are read as objects that tell nothing but that they are there. Any thread.
///
/// What is set and not written when the process ends, or the code is unloaded, is written then. Only there is
/// another process waited for longer than a moment: up to three seconds.

namespace cocoa {

inline constexpr CFStringRef kCFPreferencesAnyApplication = "kCFPreferencesAnyApplication";
inline constexpr CFStringRef kCFPreferencesAnyUser = "kCFPreferencesAnyUser";
inline constexpr CFStringRef kCFPreferencesCurrentUser = "kCFPreferencesCurrentUser";
inline constexpr CFStringRef kCFPreferencesAnyHost = "kCFPreferencesAnyHost";
inline constexpr CFStringRef kCFPreferencesCurrentHost = "kCFPreferencesCurrentHost";

/// A new object with the key's value, as last set here or else as last read; null when there is none. One
/// that is neither NSData nor NSString stands for a value of another kind, such as a number, or for data that
/// is damaged.
Ref<NSObject> CFPreferencesCopyValue(CFStringRef key, CFStringRef application, CFStringRef user,
                                     CFStringRef host);

/// Sets the key's value, or removes the key when `value` is null: in memory, until the domain is
/// synchronised. What cannot be stored, because of its class or its characters, is logged and ignored.
void CFPreferencesSetValue(CFStringRef key, const NSObject* value, CFStringRef application, CFStringRef user,
                           CFStringRef host);

/// Writes what has been set since the last time, leaving keys alone that others have written meanwhile. False
/// on failure, which is logged; the changes are then kept for the next time. Called on a host's thread, it
/// waits no longer than 10 ms for another process that is writing: false then too, to be tried again. With
/// nothing to write, makes the next CFPreferencesCopyValue see what others have written.
bool CFPreferencesSynchronize(CFStringRef application, CFStringRef user, CFStringRef host);

/// Takes back what has been set under the key since the last writing, as a value that was meant for what the
/// store held at that moment only.
void forget_unwritten_preference(CFStringRef key);

}  // namespace cocoa
